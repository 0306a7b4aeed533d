#include "cli/Output.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <system_error>

#include "cli/ExitCode.h"
#include "cli/Text.h"

namespace headless::cli {

namespace fs = std::filesystem;

namespace {

std::string because(int reason) {
    return std::generic_category().message(reason);
}

// What open() would give a new file, or what the file has that is replaced.
mode_t modeFor(const fs::path& file) {
    struct stat old {};
    if (::stat(file.c_str(), &old) == 0) {
        return old.st_mode & 07777;
    }
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

bool writeAll(int descriptor, std::string_view content) {
    while (!content.empty()) {
        const ssize_t written = ::write(descriptor, content.data(), content.size());
        if (written < 0 && errno != EINTR) {
            return false;
        }
        content.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
    }
    return true;
}

}  // namespace

void requireWritable(const fs::path& file) {
    std::error_code error;
    const fs::path folder = file.has_parent_path() ? file.parent_path() : fs::path(".");
    const auto refuse = [&](const std::string& why) {
        throw Stop(ExitCode::BadInput, "cannot write " + printable(file.string()) + ": " + why);
    };
    if (!fs::is_directory(folder, error)) {
        refuse("there is no folder " + printable(folder.string()) + "; create it first");
    }
    if (fs::is_directory(file, error)) {
        refuse("this is a folder; name a file in it");
    }
    if (fs::exists(file, error) && !fs::is_regular_file(file, error)) {
        refuse("this is no ordinary file");
    }
    if (::access(folder.c_str(), W_OK) != 0) {
        refuse(because(errno));
    }
}

fs::path outputFile(const fs::path& output, const fs::path& input, bool inPlace) {
    if (inPlace) {
        requireWritable(input);
        return input;
    }
    requireWritable(output);
    std::error_code error;
    if (fs::equivalent(output, input, error)) {
        throw Stop(ExitCode::BadInput, "the output " + printable(output.string()) +
                                           " is the input; say --in-place if it is to be overwritten");
    }
    return output;
}

void writeWhole(const fs::path& file, std::string_view content) {
    std::error_code error;
    const fs::path linked = fs::canonical(file, error);
    const fs::path target = error ? file : linked;  // a link stays, and what it leads to is replaced
    std::string unfinished = target.string() + ".XXXXXX";
    const int descriptor = ::mkstemp(unfinished.data());
    int reason = descriptor < 0 ? errno : 0;
    if (descriptor >= 0) {
        if (!writeAll(descriptor, content) || ::fchmod(descriptor, modeFor(target)) != 0 ||
            ::fsync(descriptor) != 0) {
            reason = errno;
        }
        if (::close(descriptor) != 0 && reason == 0) {
            reason = errno;
        }
        if (reason == 0 && ::rename(unfinished.c_str(), target.c_str()) != 0) {
            reason = errno;
        }
        if (reason != 0) {
            ::unlink(unfinished.c_str());
        }
    }
    if (reason != 0) {
        throw Stop(ExitCode::Failed, "cannot write " + printable(file.string()) + ": " + because(reason));
    }
}

}  // namespace headless::cli
