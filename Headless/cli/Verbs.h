// The program's verbs, one file each.

#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <memory>
#include <string>

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
void addResolution(CLI::App& verb, std::string& word);
// Throws model::ProjectError.
std::unique_ptr<model::Project> openProject(const std::string& file, const std::string& imageFolder);
// A line on the standard error stream, as the program speaks there.
void say(const std::string& message);

}  // namespace headless::cli
