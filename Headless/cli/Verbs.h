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

void addImageFolder(CLI::App& verb, std::string& folder);
void addAnimation(CLI::App& verb, std::string& id);
void addResolution(CLI::App& verb, std::string& word);
// A Lottie file, or one animation of an archive: the one with this id, or the only one where none is said.
// Throws Stop and model::ProjectError.
std::unique_ptr<model::Project> openProject(const std::string& file, const std::string& imageFolder,
                                            const std::string& animation = "");
// The ids of an archive's animations; none for a Lottie file, which is a single one. Throws
// model::ProjectError.
std::vector<std::string> animationIds(const std::string& file);
// What `output` is to hold of a project that was opened from `input`. A name that ends in .lottie, or an input
// that is an archive and written over, takes an archive: the input's with this animation replaced, or a new
// one; any other name takes the animation alone. Throws Stop where the animation cannot stand alone, and
// model::ProjectError.
std::string fileContent(const model::Project& project, const std::string& input, const std::string& animation,
                        const std::filesystem::path& output);
// A line on the standard error stream, as the program speaks there.
void say(const std::string& message);

}  // namespace headless::cli
