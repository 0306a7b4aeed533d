#include "cli/Verbs.h"

#include <cmath>
#include <filesystem>

#include "archive/DotLottie.h"
#include "cli/Supervisor.h"
#include "cli/Text.h"
#include "render/Renderer.h"

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
    verb.add_option(
            "--fonts", options.fonts,
            "Folder of the fonts that text is drawn in: \"Arial-Bold.ttf\" is the one that the file calls "
            "\"Arial-Bold\"")
        ->type_name("DIR");
    verb.add_option("--frame-time", options.frameTime,
                    "Processor time that one frame may take to draw (" + shortNumber(options.frameTime) + ")")
        ->check(CLI::Range(0.1, 86'400.0).description(""))
        ->type_name("SECONDS");
}

namespace {

void setLimits(const ReadingOptions& options) {
    render::Limits& limits = render::usualLimits();
    limits.frameTime = std::chrono::milliseconds(std::llround(options.frameTime * 1000));
    if (options.fonts.empty() || !limits.fonts.empty()) {
        return;
    }
    constexpr std::uintmax_t largestFont = 64 << 20;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(options.fonts, error)) {
        const std::string ending = entry.path().extension().string();
        if ((ending == ".ttf" || ending == ".otf") && entry.is_regular_file(error) &&
            entry.file_size(error) <= largestFont) {
            limits.fonts[entry.path().stem().string()] = model::bytesOf(entry.path());
        }
    }
    if (limits.fonts.empty()) {
        throw Stop(ExitCode::BadInput, "there is no font (.ttf, .otf) in the folder " + options.fonts);
    }
}

}  // namespace

void addVersions(CLI::App& verb, VersionsOptions& options, const std::string& example) {
    verb.add_option("BEFORE", options.before, "Lottie file or .lottie archive")->required()->type_name("");
    verb.add_option("AFTER", options.after, "The file made of it")->required()->type_name("");
    addReadingOptions(verb, options.reading);
    addMostFrames(verb, options.mostFrames);
    addTimeout(verb);
    verb.footer(
        "Exits with 0 when the pictures are equal but for thin rests along an edge, with 1 when they "
        "differ.\n" +
        example);
}

void addMostFrames(CLI::App& verb, int& most) {
    verb.add_option(
            "--most-frames", most,
            "Frames beyond which the command does not begin to draw (" + std::to_string(usualFrames) + ")")
        ->check(CLI::Range(1, 1'000'000'000).description(""))
        ->type_name("N");
}

void requireFrames(std::int64_t frames, int most) {
    if (frames > most) {
        const std::string file = workedOn();
        throw Stop(ExitCode::BadInput, (file.empty() ? "" : file + ": ") + "there are " + grouped(frames) +
                                           " frames to draw, and a command draws at most " + grouped(most) +
                                           "; --most-frames " + std::to_string(frames) + " allows it");
    }
}

void addTimeout(CLI::App& verb) {
    const std::string description =
        "Seconds after which the command is ended (" + std::to_string(usualTimeout) + "); 0: never";
    verb.add_option("--timeout", description)
        ->check(CLI::Range(0.0, 1e9).description(""))
        ->type_name("SECONDS");
}

void addResolution(CLI::App& verb, std::string& word) {
    verb.add_option("--resolution", word, "Resolution that compositions are shown at (full)")
        ->check(CLI::IsMember({"full", "half", "third", "quarter"}).description(""))
        ->type_name("full|half|third|quarter");
}

std::unique_ptr<model::Project> openProject(const std::string& file, const ReadingOptions& options) {
    setLimits(options);
    workOn(file);
    model::ReadOptions reading;
    if (!options.images.empty()) {
        if (!std::filesystem::is_directory(options.images)) {
            throw Stop(ExitCode::BadInput, "there is no folder " + options.images + " to read pictures from");
        }
        reading.imageFolder = options.images;
    }
    if (archive::isArchive(file)) {
        return archive::openAnimation(archive::openArchive(file), options.animation, reading);
    }
    auto project = model::Project::open(file, reading);
    if (!options.animation.empty()) {
        throw Stop(ExitCode::BadInput,
                   file + " is one animation and no archive of several; leave --animation out");
    }
    return project;
}

Versions openVersions(const VersionsOptions& options) {
    ReadingOptions ofBefore = options.reading;
    ReadingOptions ofAfter = options.reading;
    // One that was taken out of its archive stands beside it.
    if (archive::isArchive(options.before) && !archive::isArchive(options.after)) {
        ofAfter.animation.clear();
    } else if (!archive::isArchive(options.before) && archive::isArchive(options.after)) {
        ofBefore.animation.clear();
    }
    return {openProject(options.before, ofBefore), openProject(options.after, ofAfter)};
}

Stop caught() {
    try {
        throw;
    } catch (const Stop& stop) {
        return stop;
    } catch (const model::ProjectError& error) {
        return {ExitCode::BadInput, error.what()};
    } catch (const std::bad_alloc&) {
        const std::string file = workedOn();
        return {ExitCode::Failed, (file.empty() ? "" : file + ": ") + "there is not enough memory"};
    } catch (const std::exception& error) {
        return {ExitCode::Failed, error.what()};
    }
}

}  // namespace headless::cli
