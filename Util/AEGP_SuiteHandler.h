// Scoped access to the host's suites: acquired on first use, released together when the handler goes.

#pragma once

#include <array>

#include "AEGP_Suites.h"
#include "MissingSuiteError.h"

// One accessor for each suite of AEGP_FOR_EACH_SUITE, such as `handler.ItemSuite8()->AEGP_GetItemID(...)`.
// An accessor throws the integer 516 when the host cannot supply its suite. A returned table belongs to
// the host and is valid while the handler lives. Main thread only.
class AEGP_SuiteHandler {
 public:
    explicit AEGP_SuiteHandler(const SPBasicSuite* basic) noexcept : basic_(basic) {}
    ~AEGP_SuiteHandler();
    AEGP_SuiteHandler(const AEGP_SuiteHandler&) = delete;
    AEGP_SuiteHandler& operator=(const AEGP_SuiteHandler&) = delete;

#define KESTRIN_ACCESSOR(label, name, number)                           \
    const AEGP_##label* label() {                                       \
        return static_cast<const AEGP_##label*>(acquire(Index::label)); \
    }
    AEGP_FOR_EACH_SUITE(KESTRIN_ACCESSOR)
#undef KESTRIN_ACCESSOR

 private:
#define KESTRIN_INDEX(label, name, number) label,
    enum class Index : std::size_t { AEGP_FOR_EACH_SUITE(KESTRIN_INDEX) count };
#undef KESTRIN_INDEX

    const void* acquire(Index index);

    const SPBasicSuite* basic_;
    std::array<const void*, static_cast<std::size_t>(Index::count)> acquired_{};
};
