#include "cli/Output.h"

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

}  // namespace headless::cli
