// Bytes as text, as data URIs have them.

#pragma once

#include <string>
#include <string_view>

namespace headless::model {

std::string base64(std::string_view bytes);

}  // namespace headless::model
