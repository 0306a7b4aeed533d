// Slots: a property that has `sid` takes its value from the document's slot of that name, whatever stands in
// the property itself. Players may give the slots other values, so that one file looks different from theme to
// theme.

#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <unordered_map>

namespace headless::model {

using Json = nlohmann::ordered_json;

// What of a layer takes its value from slots.
struct SlottedParts {
    bool any : 1 = false;
    bool anchor : 1 = false;
    bool position : 1 = false;
    bool masks : 1 = false;      // the outline of one
    bool timeRemap : 1 = false;  // which frames of its source are shown
    bool geometry : 1 = false;   // anything but colours: where something is visible
};

SlottedParts slottedParts(const Json& layer);
// Separated dimensions count where one of them does.
bool isSlotted(const Json& property);

class Slots {
 public:
    Slots() = default;
    // Of the document's member `slots`. What no property could take its value from is left out.
    explicit Slots(const Json& slots);

    // Puts the slots' properties in the places of the layer's that take their values from them, and adds their
    // length as text to `added`. Throws ProjectError where that becomes too much.
    void putInto(Json& layer, std::uint64_t& added) const;

 private:
    struct Slot {
        Json property;
        std::uint64_t length = 0;
    };
    std::unordered_map<std::string, Slot> slots_;  // by name
};

}  // namespace headless::model
