#include "script/EngineText.h"

namespace headless::script {
namespace {

constexpr char32_t replacement = 0xFFFD;

bool isSurrogate(char32_t c) {
    return c >= 0xD800 && c < 0xE000;
}

// Takes one encoded character off the front; surrogates count as characters.
char32_t take(std::string_view& text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(0);
    const std::size_t length = lead < 0x80   ? 1
                               : lead < 0xC0 ? 0
                               : lead < 0xE0 ? 2
                               : lead < 0xF0 ? 3
                               : lead < 0xF8 ? 4
                                             : 0;
    constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    char32_t c = length == 1 ? lead : lead & (0x7Fu >> length);
    bool good = length != 0 && length <= text.size();
    for (std::size_t i = 1; good && i < length; ++i) {
        good = (byte(i) & 0xC0) == 0x80;
        c = c << 6 | (byte(i) & 0x3Fu);
    }
    if (!good || c < smallest[length] || c > 0x10FFFF) {
        text.remove_prefix(1);
        return replacement;
    }
    text.remove_prefix(length);
    return c;
}

void put(std::string& out, char32_t c) {
    const auto add = [&](char32_t byte) { out += static_cast<char>(byte); };
    if (c < 0x80) {
        add(c);
        return;
    }
    if (c >= 0x10000) {
        add(0xF0 | c >> 18);
        add(0x80 | (c >> 12 & 0x3F));
    } else if (c >= 0x800) {
        add(0xE0 | c >> 12);
    } else {
        add(0xC0 | c >> 6);
    }
    if (c >= 0x800) add(0x80 | (c >> 6 & 0x3F));
    add(0x80 | (c & 0x3F));
}

}  // namespace

std::string toEngine(std::string_view utf8) {
    std::string result;
    while (!utf8.empty()) {
        const char32_t c = take(utf8);
        if (c >= 0x10000) {
            put(result, 0xD800 + ((c - 0x10000) >> 10));
            put(result, 0xDC00 + ((c - 0x10000) & 0x3FF));
        } else {
            put(result, isSurrogate(c) ? replacement : c);
        }
    }
    return result;
}

std::string fromEngine(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const char32_t c = take(text);
        std::string_view rest = text;
        const char32_t next = c >= 0xD800 && c < 0xDC00 && !rest.empty() ? take(rest) : 0;
        if (next >= 0xDC00 && next < 0xE000) {
            put(result, 0x10000 + ((c - 0xD800) << 10) + (next - 0xDC00));
            text = rest;
        } else {
            put(result, isSurrogate(c) ? replacement : c);
        }
    }
    return result;
}

}  // namespace headless::script
