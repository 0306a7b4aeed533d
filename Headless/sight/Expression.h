// Expressions, as far as can be said without running them.

#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "model/Json.h"

namespace headless::sight {

// What an expression can reach. Layers as their objects.
struct Reach {
    const model::Json& layer;             // that has it
    std::span<const model::Json> layers;  // of its composition
    std::string_view root;                // name of the document
    std::span<const model::Json> ofRoot;  // its layers
    bool hasOwnTime;                      // the renderer tells another time there
};

// Whether the answer is what stands in the property anyway: `value`, or nothing where the property changes.
bool keepsValue(const std::string& expression, std::optional<double> value, const Reach& reach);

// Whether the renderer answers as players do.
bool isDrawn(const std::string& expression, const Reach& reach);

}  // namespace headless::sight
