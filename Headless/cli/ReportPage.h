// The page that shows a report: one file that needs no other, with its pictures inside.

#pragma once

#include "cli/CropReport.h"

namespace headless::cli {

// `report` is what reportOf() made of the two projects. Throws render::RenderError.
std::string reportPage(const model::Json& report, ReportedProject& before, ReportedProject& after);

}  // namespace headless::cli
