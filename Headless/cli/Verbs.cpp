#include "cli/Verbs.h"

#include "archive/DotLottie.h"

namespace headless::cli {

void addProject(CLI::App& verb, std::string& file) {
    verb.add_option("PROJECT", file, "Lottie file or .lottie archive")->required()->type_name("");
}

void addReadingOptions(CLI::App& verb, ReadingOptions& options) {
    verb.add_option("--images", options.images,
                    "Folder that pictures outside the project file may be read from")
        ->type_name("DIR");
    verb.add_option("--animation", options.animation, "Animation of a .lottie archive that holds several")
        ->type_name("ID");
}

void addVersions(CLI::App& verb, VersionsOptions& options, const std::string& example) {
    verb.add_option("BEFORE", options.before, "Lottie file or .lottie archive")->required()->type_name("");
    verb.add_option("AFTER", options.after, "The file made of it")->required()->type_name("");
    addReadingOptions(verb, options.reading);
    verb.footer(
        "Exits with 0 when the pictures are equal but for thin rests along an edge, with 1 when they "
        "differ.\n" +
        example);
}

void addResolution(CLI::App& verb, std::string& word) {
    verb.add_option("--resolution", word, "Resolution that compositions are shown at (full)")
        ->check(CLI::IsMember({"full", "half", "third", "quarter"}).description(""))
        ->type_name("full|half|third|quarter");
}

std::unique_ptr<model::Project> openProject(const std::string& file, const ReadingOptions& options) {
    model::ReadOptions reading;
    if (!options.images.empty()) {
        if (!std::filesystem::is_directory(options.images)) {
            throw Stop(ExitCode::BadInput, "there is no folder " + options.images + " to read pictures from");
        }
        reading.imageFolder = options.images;
    }
    return archive::isArchive(file)
               ? archive::openAnimation(archive::openArchive(file), options.animation, reading)
               : model::Project::open(file, reading);
}

Stop caught() {
    try {
        throw;
    } catch (const Stop& stop) {
        return stop;
    } catch (const model::ProjectError& error) {
        return {ExitCode::BadInput, error.what()};
    } catch (const std::exception& error) {
        return {ExitCode::Failed, error.what()};
    }
}

}  // namespace headless::cli
