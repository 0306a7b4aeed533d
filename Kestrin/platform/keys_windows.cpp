#include <windows.h>

#include "platform/keys.h"

namespace platform {

namespace {

bool isDown(int key) noexcept {
    return GetAsyncKeyState(key) < 0;  // the sign bit: down now
}

}  // namespace

ModifierKeys readModifierKeys(const SPBasicSuite*) noexcept {
    return {isDown(VK_SHIFT), isDown(VK_CONTROL)};
}

}  // namespace platform
