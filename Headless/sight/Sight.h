// What the renderer draws as players do, and what not.
//
// An allow-list: whatever a document holds that is not known to be drawn exactly counts as not seen, members
// and types that nobody here knows included. Nobody can say of it whether it has shifted.

#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "model/Project.h"

namespace headless::sight {

// What the person can choose to crop all the same (`--crop-unseen`).
enum class Kind { Text, Expressions, Effects, Styles, ThreeD, Masks, Mattes, Shapes, Images, Time, Other };

// As options and JSON name it: "text", "3d".
std::string_view nameOf(Kind kind);

struct Unseen {
    Kind kind = Kind::Other;
    std::string code;          // stable, for programs: "effect-25", "text-without-font"
    model::LayerId layer = 0;  // that has it
    std::string what;          // for people, to follow "has " or "not drawn: ": "a drop shadow (effect)"
};

// Of the composition's own layers, not of what they show. One entry for each layer and code. `fonts` are the
// names of those that the renderer is given.
std::vector<Unseen> unseenIn(const model::Project& project, const model::Comp& comp,
                             const std::set<std::string>& fonts = {});

}  // namespace headless::sight
