// What of the difference between two versions of a project is not drawn: nobody can look whether it has
// shifted.

#pragma once

#include <string>
#include <vector>

#include "cli/Unseen.h"

namespace headless::cli {

// `compared`: asset ids of the compositions whose pictures were compared. What lies in what has changed, moved
// or got another frame counts, and what the picture of something changed goes through.
std::vector<Named> notDrawnBetween(const model::Project& before, const model::Project& after,
                                   const std::vector<std::string>& compared);

// Whether the layer says the same in both.
bool sameLayer(const model::Project& before, const model::Layer& a, const model::Project& after,
               const model::Layer& b);

}  // namespace headless::cli
