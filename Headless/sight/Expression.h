// Expressions, as far as can be said without running them.

#pragma once

#include <string_view>

namespace headless::sight {

// Whether it uses nothing but what the renderer is known to answer as players do, inside one composition.
bool isDrawn(std::string_view expression);

}  // namespace headless::sight
