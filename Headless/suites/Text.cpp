#include "suites/Text.h"

#include <iconv.h>

#include <cstring>
#include <stdexcept>

namespace headless {

namespace {

std::string converted(const char* to, const char* from, std::string bytes, const std::string& replacement) {
    const iconv_t conversion = iconv_open(to, from);
    if (conversion == reinterpret_cast<iconv_t>(-1)) {
        throw std::runtime_error("this system cannot convert text");
    }
    std::string result(bytes.size() * 3 + 8, '\0');
    char* in = bytes.data();
    std::size_t inLeft = bytes.size();
    char* out = result.data();
    std::size_t outLeft = result.size();
    while (iconv(conversion, &in, &inLeft, &out, &outLeft) == static_cast<std::size_t>(-1) && inLeft > 0) {
        const std::size_t step = std::min<std::size_t>(inLeft, std::strcmp(from, "UTF-8") == 0 ? 1 : 2);
        in += step;
        inLeft -= step;
        std::memcpy(out, replacement.data(), replacement.size());
        out += replacement.size();
        outLeft -= replacement.size();
    }
    iconv_close(conversion);
    result.resize(result.size() - outLeft);
    return result;
}

}  // namespace

std::string utf8Of(const A_UTF16Char* text) {
    std::size_t length = 0;
    while (text[length] != 0) {
        ++length;
    }
    return converted("UTF-8", "UTF-16LE", {reinterpret_cast<const char*>(text), length * 2}, "\xEF\xBF\xBD");
}

std::u16string utf16Of(const std::string& text) {
    const std::string bytes = converted("UTF-16LE", "UTF-8", text, "\xFD\xFF");
    std::u16string result(bytes.size() / 2 + 1, u'\0');
    std::memcpy(result.data(), bytes.data(), bytes.size());
    return result;
}

void copyText(const std::string& text, A_char* buffer, std::size_t size) {
    std::size_t length = std::min(text.size(), size - 1);
    while (length > 0 && length < text.size() && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80) {
        --length;
    }
    std::memcpy(buffer, text.data(), length);
    buffer[length] = '\0';
}

}  // namespace headless
