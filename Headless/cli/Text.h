// Words for messages and facts. Names in them are as they are; what is printed goes through Print.h.

#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "model/Project.h"

namespace headless::cli {

std::string inQuotes(std::string_view name);
// Without empty ones.
std::vector<std::string> linesOf(std::string_view text);
// A blank for each line break.
std::string inOneLine(std::string_view text);

std::string sizeText(model::Size size);    // 960 x 540
std::string grouped(std::int64_t number);  // 1,234,567
// "1 frame", "2 frames".
std::string counted(std::int64_t count, const std::string& noun);
// Without trailing zeros.
std::string shortNumber(double number);

}  // namespace headless::cli
