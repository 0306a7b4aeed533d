#include "ui/Printable.h"

#include <cstdint>
#include <cstdio>

namespace headless::ui {

namespace {

struct Character {
    std::uint32_t code = 0;
    std::size_t length = 1;  // in bytes
    bool valid = true;       // false: a byte that is no UTF-8
};

Character firstOf(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const std::size_t length = byte(0) < 0x80   ? 1
                               : byte(0) < 0xC0 ? 0
                               : byte(0) < 0xE0 ? 2
                               : byte(0) < 0xF0 ? 3
                               : byte(0) < 0xF8 ? 4
                                                : 0;
    constexpr std::uint32_t leastOf[] = {0, 0, 0x80, 0x800, 0x10000};
    const Character invalid{byte(0), 1, false};
    std::uint32_t code = length < 2 ? byte(0) : byte(0) & (0xFFu >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if (i >= text.size() || (byte(i) & 0xC0) != 0x80) {
            return invalid;
        }
        code = code << 6 | (byte(i) & 0x3Fu);
    }
    const bool surrogate = code >= 0xD800 && code < 0xE000;
    return length == 0 || code < leastOf[length] || code > 0x10FFFF || surrogate ? invalid
                                                                                 : Character{code, length};
}

bool isControl(std::uint32_t code) {
    return code < 0x20 || (code >= 0x7F && code < 0xA0);
}

// Marks of writing direction, and the two line breaks of Unicode's own.
bool changesOrder(std::uint32_t code) {
    return code == 0x61C || code == 0x200E || code == 0x200F || (code >= 0x2028 && code <= 0x202E) ||
           (code >= 0x2066 && code <= 0x2069);
}

std::string escape(const char* form, std::uint32_t code) {
    char text[16];
    std::snprintf(text, sizeof text, form, static_cast<unsigned>(code));
    return text;
}

// `escaped` gives what a character is replaced by, or nothing for one that stays.
std::string replaced(std::string_view text, std::string (*escaped)(const Character&)) {
    std::string result;
    while (!text.empty()) {
        const Character first = firstOf(text);
        const std::string instead = escaped(first);
        result += instead.empty() ? text.substr(0, first.length) : instead;
        text.remove_prefix(first.length);
    }
    return result;
}

}  // namespace

std::string printable(std::string_view text) {
    return replaced(text, [](const Character& character) -> std::string {
        return character.code == '\n'                          ? "\\n"
               : !character.valid || isControl(character.code) ? escape("\\x%02X", character.code)
               : changesOrder(character.code)                  ? escape("\\u%04X", character.code)
                                                               : "";
    });
}

std::string printableJson(std::string_view json) {
    return replaced(json, [](const Character& character) -> std::string {
        const bool steers = character.valid && (isControl(character.code) || changesOrder(character.code));
        return steers ? escape("\\u%04X", character.code) : "";
    });
}

}  // namespace headless::ui
