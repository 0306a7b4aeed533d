#include "cli/Verbs.h"

#include <iostream>

namespace headless::cli {

void addImageFolder(CLI::App& verb, std::string& folder) {
    verb.add_option("--images", folder, "Folder that pictures outside the project file may be read from")
        ->type_name("DIR");
}

void addResolution(CLI::App& verb, std::string& word) {
    verb.add_option("--resolution", word, "Resolution that compositions are shown at (full)")
        ->check(CLI::IsMember({"full", "half", "third", "quarter"}).description(""))
        ->type_name("full|half|third|quarter");
}

std::unique_ptr<model::Project> openProject(const std::string& file, const std::string& imageFolder) {
    model::ReadOptions options;
    if (!imageFolder.empty()) {
        if (!std::filesystem::is_directory(imageFolder)) {
            throw Stop(ExitCode::BadInput, "there is no folder " + imageFolder + " to read pictures from");
        }
        options.imageFolder = imageFolder;
    }
    return model::Project::open(file, options);
}

void say(const std::string& message) {
    std::cout << std::flush;
    std::cerr << "kestrin: " << message << '\n';
}

}  // namespace headless::cli
