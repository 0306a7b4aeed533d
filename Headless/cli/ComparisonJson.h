// A comparison as other programs read it.
//
// Names stand as the files have them; whoever prints them escapes them. A member that does not apply is null,
// so that each entry has the same members.

#pragma once

#include "cli/Comparison.h"

namespace headless::cli {

// "equal", "edge noise", "shifted".
const char* word(Verdict verdict);
// On one line, for a person: "nothing on screen has shifted". That is said only where all that differs was
// drawn; else what was not follows, the first of it where it is much.
std::string conclusion(const Comparison& comparison);

model::Json sizeJson(const std::optional<model::Size>& size);
// What became of one composition: "verdict", "frames", "worst" and so on.
model::Json comparedJson(const ComparedComp& comp);
// The members "verdict", "conclusion", "changed", "compared" and "notDrawn".
model::Json comparisonJson(const Comparison& comparison);
// A whole document of this program, `kind` being the verb that made it: its first members, to be added to.
model::Json documentJson(const char* kind, const std::string& before, const std::string& after);
// On one line. What is no UTF-8 in it, such as the name of a file, is replaced.
std::string jsonText(const model::Json& json);

}  // namespace headless::cli
