// Script text: formatting, running, and the host's UTF-16 names.

#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cwchar>

#include "cropUtil.h"

A_Err cropUtil::RunScript(AEGP_SuiteHandler& suites, int pluginId, const char* text, AEGP_MemHandle* answer) {
    constexpr A_Boolean utf8 = 0;
    return suites.UtilitySuite5()->AEGP_ExecuteScript(pluginId, text, utf8, answer, nullptr);
}

int cropUtil::SprintOS(char* dst, int, const char* fmt, ...) {
    std::va_list values;
    va_start(values, fmt);
    const int written = std::vsnprintf(dst, INT_MAX, fmt, values);
    va_end(values);
    return written;
}

void cropUtil::copyConvertStringLiteralIntoUTF16(const wchar_t* src, A_UTF16Char* dst) {
    constexpr char32_t lastCodePoint = 0x10FFFF;
    const std::size_t length = std::wcslen(src);
    std::size_t written = 0;
    const auto put = [&](char32_t unit) {
        if (written < length) {
            dst[written++] = static_cast<A_UTF16Char>(unit);
        }
    };
    for (std::size_t i = 0; i < length; ++i) {
        const auto character = static_cast<char32_t>(src[i]);
        if (character > lastCodePoint) {
            break;
        }
        if (character < 0x10000) {
            put(character);
        } else {
            put(0xD800 + ((character - 0x10000) >> 10));
            put(0xDC00 + ((character - 0x10000) & 0x3FF));
        }
    }
    while (written <= length) {
        dst[written++] = 0;
    }
}
