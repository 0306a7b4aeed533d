#include "cli/Text.h"

#include <cstdio>

namespace headless::cli {

std::string inQuotes(std::string_view name) {
    return '"' + std::string(name) + '"';
}

std::vector<std::string> linesOf(std::string_view text) {
    std::vector<std::string> lines;
    while (!text.empty()) {
        const std::size_t end = text.find_first_of("\r\n");
        if (end > 0) {
            lines.emplace_back(text.substr(0, end));
        }
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return lines;
}

std::string inOneLine(std::string_view text) {
    std::string result;
    for (const std::string& line : linesOf(text)) {
        result += (result.empty() ? "" : " ") + line;
    }
    return result;
}

std::string sizeText(model::Size size) {
    return std::to_string(size.width) + " x " + std::to_string(size.height);
}

std::string grouped(std::int64_t number) {
    std::string digits = std::to_string(number);
    const std::size_t first = number < 0 ? 1 : 0;
    for (std::size_t place = digits.size(); place > first + 3;) {
        place -= 3;
        digits.insert(place, ",");
    }
    return digits;
}

std::string counted(std::int64_t count, const std::string& noun) {
    return grouped(count) + " " + noun + (count == 1 ? "" : "s");
}

std::string shortNumber(double number) {
    char text[32];
    std::snprintf(text, sizeof text, "%.6g", number);
    return text;
}

}  // namespace headless::cli
