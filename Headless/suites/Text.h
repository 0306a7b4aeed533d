// Text at the host's border: UTF-8 inside, UTF-16 units or short 8-bit buffers outside.

#pragma once

#include <string>

#include "AEGP_Host.h"

namespace headless {

// NUL-terminated UTF-16; a lone surrogate becomes U+FFFD.
std::string utf8Of(const A_UTF16Char* text);
// With its terminating NUL.
std::u16string utf16Of(const std::string& text);
// Into a caller's buffer of `size` bytes, cut at a character's end, NUL-terminated.
void copyText(const std::string& text, A_char* buffer, std::size_t size);

}  // namespace headless
