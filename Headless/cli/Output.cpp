#include "cli/Output.h"

#include <unistd.h>

#include <cerrno>
#include <string>
#include <system_error>

#include "archive/DotLottie.h"
#include "cli/ExitCode.h"
#include "cli/Print.h"
#include "cli/Supervisor.h"
#include "cli/Text.h"

namespace headless::cli {

namespace fs = std::filesystem;

namespace {

std::string because(int reason) {
    return std::generic_category().message(reason);
}

std::string whyNotReplaceable(const fs::path& file, ReadOnly readOnly) {
    try {
        requireReplaceable(file, readOnly);
        return "";
    } catch (const std::runtime_error& problem) {
        return problem.what();
    }
}

void requireWritable(const fs::path& file, ReadOnly readOnly, bool offersForce) {
    std::error_code error;
    const fs::path folder = file.has_parent_path() ? file.parent_path() : fs::path(".");
    const auto refuse = [&](const std::string& why) {
        throw Stop(ExitCode::BadInput, "cannot write " + file.string() + ": " + why);
    };
    if (!fs::is_directory(folder, error)) {
        refuse("there is no folder " + folder.string() + "; create it first");
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
    if (const std::string problem = whyNotReplaceable(file, readOnly); !problem.empty()) {
        const bool forceHelps = offersForce && whyNotReplaceable(file, ReadOnly::IsReplaced).empty();
        throw Stop(ExitCode::BadInput, problem + (forceHelps ? ", or say --force" : ""));
    }
}

}  // namespace

void addForce(CLI::App& verb, ReadOnly& readOnly) {
    verb.add_flag_callback(
        "--force", [&readOnly] { readOnly = ReadOnly::IsReplaced; }, "Write over a file that is read-only");
}

void requireWritable(const fs::path& file) {
    requireWritable(file, ReadOnly::Stays, false);
}

void requireWritable(const fs::path& file, ReadOnly readOnly) {
    requireWritable(file, readOnly, true);
}

void writeResult(const fs::path& file, std::string_view content, ReadOnly readOnly) {
    const Lost lost = writeWhole(file, content, readOnly);
    if (lost.owner || lost.group) {
        say("note: " + file.string() + " has another " +
            (!lost.group  ? "owner"
             : lost.owner ? "owner and group"
                          : "group") +
            " now; the system does not let you keep what it had");
    }
    if (lost.otherNames > 0) {
        say("note: " + file.string() + " had " +
            counted(static_cast<std::int64_t>(lost.otherNames), "other name") +
            " (hard links), where the old content stays");
    }
}

fs::path outputFile(const fs::path& output, const fs::path& input, bool inPlace, ReadOnly readOnly) {
    if (inPlace) {
        requireWritable(input, readOnly);
        return input;
    }
    requireWritable(output, readOnly);
    std::error_code error;
    if (fs::equivalent(output, input, error)) {
        throw Stop(ExitCode::BadInput, "the output " + output.string() +
                                           " is the input; say --in-place if it is to be overwritten");
    }
    return output;
}

ResultFile::ResultFile(fs::path input, fs::path output, ReadOnly readOnly)
    : input_(std::move(input)), output_(std::move(output)), readOnly_(readOnly), read_(input_) {
    workOn(input_.string());
    std::error_code error;
    fromArchive_ = archive::isArchive(input_);
    toArchive_ = fs::equivalent(input_, output_, error) ? fromArchive_ : output_.extension() == ".lottie";
}

std::vector<std::string> ResultFile::severalAnimations() const {
    if (!fromArchive_) {
        return {};
    }
    const auto archive = archive::openArchive(input_);
    if (archive->animations().size() < 2) {
        return {};
    }
    if (!toArchive_) {
        throw Stop(ExitCode::BadInput, input_.string() +
                                           " holds several animations; name an output that ends in .lottie, "
                                           "which takes them all, or one of them with --animation");
    }
    std::vector<std::string> ids;
    for (const auto& animation : archive->animations()) {
        ids.push_back(animation.id);
    }
    return ids;
}

void ResultFile::put(const model::Project& project, const std::string& animation) {
    if (toArchive_ && !fromArchive_) {
        content_ = archive::newArchive(project);
        return;
    }
    if (!fromArchive_) {
        content_ = project.write();
        return;
    }
    const auto archive =
        content_.empty() ? archive::openArchive(input_) : archive::readArchive(content_, input_.string());
    if (toArchive_) {
        content_ = archive->with(archive->animation(animation), project.write());
        return;
    }
    for (const std::string& picture : project.outerPictures()) {
        if (archive->sizeOf(picture)) {
            throw Stop(ExitCode::BadInput, "the animation shows the picture " + inQuotes(picture) + " of " +
                                               input_.string() +
                                               "; name an output that ends in .lottie, which keeps it");
        }
    }
    content_ = project.write();
}

void ResultFile::write() const {
    const FileLock lock(output_);
    if (Snapshot(input_) != read_) {
        throw Stop(ExitCode::Failed, input_.string() +
                                         " was changed by somebody else in the meantime; nothing was written, "
                                         "crop it again");
    }
    writeResult(output_, content_, readOnly_);
}

}  // namespace headless::cli
