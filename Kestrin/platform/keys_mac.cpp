#include <CoreGraphics/CoreGraphics.h>

#include "platform/keys.h"

namespace platform {

ModifierKeys readModifierKeys(const SPBasicSuite*) noexcept {
    const CGEventFlags flags = CGEventSourceFlagsState(kCGEventSourceStateHIDSystemState);
    return {(flags & kCGEventFlagMaskShift) != 0, (flags & kCGEventFlagMaskCommand) != 0};
}

}  // namespace platform
