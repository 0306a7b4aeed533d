// After any command: one undo gives the file again, byte for byte, and redo the result.

#pragma once

#include <gtest/gtest.h>

#include <string>

#include "model/Project.h"

namespace kestrin_test {

// `before`: the text of the file. Leaves the project as it is.
inline void expectUndoAndRedo(headless::model::Project& project, const std::string& before) {
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

}  // namespace kestrin_test
