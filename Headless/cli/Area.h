// Pixels of compositions, before and after a crop.

#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "model/Project.h"

namespace headless::cli {

struct Area {
    std::int64_t before = 0, after = 0;

    // Of one composition; nothing where it does not exist.
    void add(const std::optional<model::Size>& sizeBefore, const std::optional<model::Size>& sizeAfter);
    std::int64_t saved() const { return before - after; }
    double savedPercent() const;  // negative where there are more
    int wholePercent() const { return static_cast<int>(savedPercent()); }
};

// "800 x 800 -> 244 x 244, 580,464 pixels saved (90 %), 5 uses corrected"
std::string cropText(model::Size before, model::Size after, int uses);
model::Json areaJson(const Area& area);

}  // namespace headless::cli
