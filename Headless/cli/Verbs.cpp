#include "cli/Verbs.h"

#include <iostream>

#include "archive/DotLottie.h"
#include "cli/Text.h"

namespace headless::cli {

void addImageFolder(CLI::App& verb, std::string& folder) {
    verb.add_option("--images", folder, "Folder that pictures outside the project file may be read from")
        ->type_name("DIR");
}

void addAnimation(CLI::App& verb, std::string& id) {
    verb.add_option("--animation", id, "Animation of a .lottie archive that holds several")->type_name("ID");
}

void addResolution(CLI::App& verb, std::string& word) {
    verb.add_option("--resolution", word, "Resolution that compositions are shown at (full)")
        ->check(CLI::IsMember({"full", "half", "third", "quarter"}).description(""))
        ->type_name("full|half|third|quarter");
}

std::unique_ptr<model::Project> openProject(const std::string& file, const std::string& imageFolder,
                                            const std::string& animation) {
    model::ReadOptions options;
    if (!imageFolder.empty()) {
        if (!std::filesystem::is_directory(imageFolder)) {
            throw Stop(ExitCode::BadInput,
                       "there is no folder " + printable(imageFolder) + " to read pictures from");
        }
        options.imageFolder = imageFolder;
    }
    return archive::isArchive(file) ? archive::openAnimation(archive::openArchive(file), animation, options)
                                    : model::Project::open(file, options);
}

std::vector<std::string> animationIds(const std::string& file) {
    std::vector<std::string> ids;
    if (archive::isArchive(file)) {
        for (const auto& animation : archive::openArchive(file)->animations()) {
            ids.push_back(animation.id);
        }
    }
    return ids;
}

std::string fileContent(const model::Project& project, const std::string& input, const std::string& animation,
                        const std::filesystem::path& output) {
    std::error_code error;
    const bool fromArchive = archive::isArchive(input);
    const bool toArchive =
        std::filesystem::equivalent(input, output, error) ? fromArchive : output.extension() == ".lottie";
    if (toArchive && !fromArchive) {
        return archive::newArchive(project);
    }
    if (!fromArchive) {
        return project.write();
    }
    const auto archive = archive::openArchive(input);
    if (toArchive) {
        return archive->with(archive->animation(animation), project.write());
    }
    for (const std::string& picture : project.outerPictures()) {
        if (archive->sizeOf(picture)) {
            throw Stop(ExitCode::BadInput, "the animation shows the picture " + inQuotes(picture) + " of " +
                                               printable(input) +
                                               "; name an output that ends in .lottie, which keeps it");
        }
    }
    return project.write();
}

void say(const std::string& message) {
    std::cout << std::flush;
    std::cerr << "kestrin: " << message << '\n';
}

}  // namespace headless::cli
