// The host's function tables. A suite file fills those of its suite; findSuite() hands them out.

#pragma once

#include <array>
#include <cstring>

#include "AEGP_Suites.h"

namespace headless {

#define KESTRIN_TABLE(label, name, number) extern const AEGP_##label table##label;
AEGP_FOR_EACH_SUITE(KESTRIN_TABLE)
#undef KESTRIN_TABLE
extern const Kestrin_PlatformSuite1 tablePlatformSuite1;

// The table that is published under exactly this name and number, or null.
const void* findSuite(const char* name, std::int32_t number);

// Answers "unsupported": what stands in every slot that this host does not offer.
A_Err unsupported() noexcept;

// A table with `unsupported` in every slot, then given its functions by `fill`.
template <class Table, class Fill>
Table makeTable(Fill&& fill) {
    std::array<AEGP_UnusedSlot, sizeof(Table) / sizeof(AEGP_UnusedSlot)> slots;
    slots.fill(unsupported);
    Table table;
    static_assert(sizeof(table) == sizeof(slots));
    std::memcpy(&table, slots.data(), sizeof(table));
    fill(table);
    return table;
}

}  // namespace headless
