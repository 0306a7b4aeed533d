// The keyboard's modifier keys as they are held at this moment, whatever window is in front.

#pragma once

#include "AEGP_Host.h"

namespace platform {

struct ModifierKeys {
    bool shift = false;
    bool command = false;  // the system's primary command modifier
};

// Never fails: keys that cannot be read count as not held. Main thread.
ModifierKeys readModifierKeys(const SPBasicSuite* basic) noexcept;

}  // namespace platform
