#include "platform/keys.h"

#include "platform/headless_suite.h"

namespace platform {

ModifierKeys readModifierKeys(const SPBasicSuite* basic) noexcept {
    constexpr A_u_longlong shiftBit = 1U << 17;
    constexpr A_u_longlong commandBit = 1U << 20;

    const HeadlessSuite suite(basic);
    A_u_longlong flags = 0;
    if (suite.get() == nullptr || suite.get()->GetModifierKeys(&flags) != A_Err_NONE) {
        return {};
    }
    return {(flags & shiftBit) != 0, (flags & commandBit) != 0};
}

}  // namespace platform
