#include "cli/Text.h"

#include <algorithm>
#include <cstdio>

namespace headless::cli {

namespace {

std::string escape(unsigned code) {
    char text[8];
    std::snprintf(text, sizeof text, "\\x%02X", code & 0xFFu);
    return text;
}

// Bytes of the character that the text begins with; 0 where that is no UTF-8, which a terminal may take for
// something else.
std::size_t characterLength(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const std::size_t length = byte(0) < 0x80                      ? 1
                               : byte(0) >= 0xC2 && byte(0) < 0xE0 ? 2
                               : byte(0) >= 0xE0 && byte(0) < 0xF0 ? 3
                               : byte(0) >= 0xF0 && byte(0) < 0xF5 ? 4
                                                                   : 0;
    for (std::size_t i = 1; i < length; ++i) {
        if (i >= text.size() || (byte(i) & 0xC0) != 0x80) {
            return 0;
        }
    }
    return length;
}

}  // namespace

std::string printable(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const auto byte = static_cast<unsigned char>(text.front());
        const std::size_t length = characterLength(text);
        const auto second = length == 2 ? static_cast<unsigned char>(text[1]) : 0xFFu;
        if (byte == '\n') {
            result += "\\n";
        } else if (byte < 0x20 || byte == 0x7F || length == 0) {
            result += escape(byte);
        } else if (byte == 0xC2 && second < 0xA0) {  // the second range of control characters
            result += escape(second);
        } else {
            result += text.substr(0, length);
        }
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return result;
}

std::string inQuotes(std::string_view name) {
    return '"' + printable(name) + '"';
}

std::string indented(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        std::string_view line = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (line.ends_with('\r')) {
            line.remove_suffix(1);
        }
        if (!line.empty()) {
            result += (result.empty() ? "" : "\n    ") + printable(line);
        }
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
