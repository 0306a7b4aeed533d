// Why a composition must not be cropped: what the crop would have to change, or cannot know, since the file
// gives it to others to say.

#pragma once

#include <string>

#include "model/Project.h"

namespace headless::cli {

// Empty where nothing is in the way. Otherwise what is, as a reason that stands behind "left:".
std::string whyNotToCrop(const model::Project& project, const model::Item& item);

}  // namespace headless::cli
