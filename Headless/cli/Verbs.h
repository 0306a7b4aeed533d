// The program's verbs, one file each.

#pragma once

#include <CLI/CLI.hpp>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "cli/ExitCode.h"
#include "model/Project.h"

namespace headless::cli {

// What is left to do once the command line has been read.
using Action = std::function<ExitCode()>;

// Each adds a verb with its options to the program; reading the verb sets `action`.
void addCrop(CLI::App& program, Action& action);
void addInfo(CLI::App& program, Action& action);
void addRender(CLI::App& program, Action& action);
void addCompare(CLI::App& program, Action& action);
void addMenu(CLI::App& program, Action& action);
void addPanel(CLI::App& program, Action& action);
void addPreferences(CLI::App& program, Action& action);
void addReport(CLI::App& program, Action& action);

// ---- What verbs have in common ----------------------------------------------------------------------

constexpr int usualFrames = 500'000;   // that a command may draw
constexpr int usualTimeout = 3'600;    // seconds
constexpr double usualFrameTime = 20;  // seconds of the renderer's processor time

struct ReadingOptions {
    std::string images;     // a folder
    std::string animation;  // id in an archive
    std::string fonts;      // a folder
    double frameTime = usualFrameTime;
};

void addProject(CLI::App& verb, std::string& file);
void addReadingOptions(CLI::App& verb, ReadingOptions& options);
// Two versions of a project, for a verb that tells whether they look the same; `example` ends its help.
struct VersionsOptions {
    std::string before, after;
    ReadingOptions reading;
    int mostFrames = usualFrames;
};
void addVersions(CLI::App& verb, VersionsOptions& options, const std::string& example);
void addMostFrames(CLI::App& verb, int& most);
// Throws Stop.
void requireFrames(std::int64_t frames, int most);
void addTimeout(CLI::App& verb);
void addResolution(CLI::App& verb, std::string& word);
// A Lottie file, or one animation of an archive: the one with this id, or the only one where none is said.
// Throws Stop and model::ProjectError.
std::unique_ptr<model::Project> openProject(const std::string& file, const ReadingOptions& options);
// Both; an animation's id is for those that are archives. Throws as openProject does.
struct Versions {
    std::unique_ptr<model::Project> before, after;
};
Versions openVersions(const VersionsOptions& options);
// What has been thrown, inside a catch block: a wrong project is bad input, anything unexpected a failure.
Stop caught();

}  // namespace headless::cli
