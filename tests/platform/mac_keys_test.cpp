#include <CoreGraphics/CoreGraphics.h>
#include <gtest/gtest.h>

#include "platform/keys.h"

namespace {
CGEventFlags held = 0;
}

CGEventFlags CGEventSourceFlagsState(CGEventSourceStateID state) {
    return state == kCGEventSourceStateHIDSystemState ? held : 0;
}

namespace {

TEST(MacKeys, ShiftAndCommandAreToldApartFromEachOtherAndTheRest) {
    const CGEventFlags others = ~(CGEventFlags{1} << 17 | CGEventFlags{1} << 20);
    for (const bool shift : {false, true}) {
        for (const bool command : {false, true}) {
            held = others | (shift ? 1U << 17 : 0U) | (command ? 1U << 20 : 0U);
            const platform::ModifierKeys keys = platform::readModifierKeys(nullptr);
            EXPECT_EQ(keys.shift, shift);
            EXPECT_EQ(keys.command, command);
        }
    }
}

}  // namespace
