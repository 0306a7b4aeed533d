// JSON whose objects keep the order of their members.

#pragma once

#include <nlohmann/json.hpp>

namespace headless::model {

using Json = nlohmann::ordered_json;

}  // namespace headless::model
