// One use of a composition in a published animation, cropped as a person would.

#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include "cli/Cropping.h"

namespace kestrin_test {

using namespace headless;
using namespace headless::cli;

constexpr int padding = 2;

// After any command: one undo gives the file again, byte for byte, and redo the result.
inline void expectUndoAndRedo(model::Project& project, const std::string& before) {
    const std::string result = project.write();
    int undone = 0;
    while (project.history.undo()) {
        ++undone;
    }
    EXPECT_EQ(project.write() == before, true) << "undo does not give the file again";
    EXPECT_LE(undone, 1);
    while (project.history.redo()) {
    }
    EXPECT_EQ(project.write() == result, true) << "redo does not give the result again";
}

// The text after the crop; empty where there was nothing to crop. `comp`: by name or asset id; `layer`: from 1.
inline std::string cropped(const std::string& file, const std::string& comp, std::size_t layer, Command command,
                           int frame = 0) {
    WorkplaceOptions options;
    options.project = file;
    options.plugin = KESTRIN_PLUGIN;
    Workplace workplace(options);
    model::Project& project = workplace.session().project();
    const std::string before = project.write();
    SelectionOptions selection;
    selection.comp = comp;
    selection.layers = {"#" + std::to_string(layer)};
    selection.frame = frame;
    CropRequest request;
    request.command = command;
    request.padding = padding;
    bool done = true;
    try {
        crop(workplace, workplace.open(selection), request);
    } catch (const Stop& stop) {
        EXPECT_EQ(stop.code, ExitCode::NothingToDo) << stop.what();
        done = false;
    }
    expectUndoAndRedo(project, before);
    return done ? project.write() : "";
}

// For the name of a test.
inline std::string wordOf(const std::string& file) {
    std::string word = std::filesystem::path(file).filename();
    std::replace_if(
        word.begin(), word.end(), [](char c) { return !std::isalnum(c); }, '_');
    return word;
}

}  // namespace kestrin_test
