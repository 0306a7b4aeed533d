// kestrin crop --all: whole animations, one file after the other.

#pragma once

#include <string>
#include <vector>

#include "cli/CropAll.h"
#include "files/WholeFile.h"

namespace headless::cli {

struct BatchRequest {
    WorkplaceOptions workplace;         // for each of the projects
    std::vector<std::string> projects;  // files
    std::string output;                 // a file for one project, else a folder
    bool inPlace = false;
    ReadOnly readOnly = ReadOnly::Stays;
    bool json = false;  // one document on standard output instead of lines
    CropAllRequest crop;
};

// Of an archive each animation, unless one is named. Goes on after a file that is no project or fails. Throws
// Stop before the first when an output cannot be written.
ExitCode cropFiles(const BatchRequest& request);

}  // namespace headless::cli
