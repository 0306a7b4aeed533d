// What a crop did to a project, as one document: the comparison, and what a page about it has to say and show.

#pragma once

#include "cli/ComparisonJson.h"
#include "session/CompPictures.h"

namespace headless::cli {

// A project that a report is made of.
struct ReportedProject {
    std::string file;  // as the person named it
    const model::Project& project;
    CompPictures pictures{project};
};

// Throws Stop where there are more frames to compare, and render::RenderError.
model::Json reportOf(ReportedProject& before, ReportedProject& after,
                     int mostFrames = std::numeric_limits<int>::max());

}  // namespace headless::cli
