// Words for the terminal. Names come from other people's files and are never printed as they are.

#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "model/Project.h"

namespace headless::cli {

// Control characters as escapes, so that no text can steer the terminal. Line breaks too.
std::string printable(std::string_view text);
// The same in quotation marks.
std::string inQuotes(std::string_view name);
// Line breaks stay; what follows one is indented.
std::string indented(std::string_view text);

std::string sizeText(model::Size size);    // 960 x 540
std::string grouped(std::int64_t number);  // 1,234,567
// "1 frame", "2 frames".
std::string counted(std::int64_t count, const std::string& noun);
// Without trailing zeros.
std::string shortNumber(double number);

}  // namespace headless::cli
