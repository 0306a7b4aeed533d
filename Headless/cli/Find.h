// What a person's words mean in a project. Where they mean nothing, or more than one thing, the error lists
// what there is to choose from.

#pragma once

#include <string>

#include "model/Project.h"

namespace headless::cli {

// By name, or else by asset id; the root where `name` is empty.
model::Comp& findComp(const model::Project& project, const std::string& name);

// By name; "#3" is the third from the top.
model::Layer& findLayer(const model::Project& project, const model::Comp& comp, const std::string& name);

// Frames that the composition has, numbered from 0.
int frameCount(const model::Comp& comp);
// Checks that the composition has the frame.
int findFrame(const model::Comp& comp, int frame);
// The frame that is shown at a time in seconds.
int frameAt(const model::Project& project, const model::Comp& comp, double seconds);

// 1 for full, 2 for half, 3 for third, 4 for quarter.
int resolutionFactor(const std::string& word);

}  // namespace headless::cli
