// Whether this is built with the address sanitizer, which reserves far more memory than it uses and reads files
// when it finds something.

#pragma once

#if defined(__SANITIZE_ADDRESS__)
#define KESTRIN_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define KESTRIN_ADDRESS_SANITIZER 1
#endif
#endif

namespace headless::render {

#ifdef KESTRIN_ADDRESS_SANITIZER
inline constexpr bool underAddressSanitizer = true;
#else
inline constexpr bool underAddressSanitizer = false;
#endif

}  // namespace headless::render
