// Text on its way into and out of the engine, which keeps characters beyond 16 bits as two surrogates, each
// encoded by itself, and takes some malformed bytes for marks of its own.

#pragma once

#include <string>
#include <string_view>

namespace headless::script {

// From UTF-8; what is malformed becomes U+FFFD.
std::string toEngine(std::string_view utf8);
// To UTF-8; a surrogate without its other half becomes U+FFFD.
std::string fromEngine(std::string_view text);

}  // namespace headless::script
