// What a crop may get wrong, told before it runs: things that the renderer does not draw, so that the bounds
// may miss them, and things that do not follow when a composition's content moves.

#pragma once

#include <string>
#include <vector>

#include "model/Project.h"

namespace headless::cli {

struct Warning {
    enum class Kind {
        NotDrawn,    // the bounds may miss it
        Expression,  // overrides what the crop changes
        ThreeD,      // a camera, or layers that a camera would show
        Effect,      // depends on the bounds of the layer that has it
        UseSizes,    // uses state different sizes for one composition
    };
    Kind kind;
    std::string comp;
    std::string layer;
    std::string text;  // what about the layer, and what it may lead to
};

// For a crop of these compositions: about what they show at any depth, the layers that show them, and those
// layers' children. Each layer is named once for each kind.
std::vector<Warning> warningsFor(const model::Project& project, const std::vector<const model::Item*>& targets);

const char* word(Warning::Kind kind);
// On standard error; of very many the first.
void print(const std::vector<Warning>& warnings);

}  // namespace headless::cli
