// Acquiring and releasing suites.

#include <cstdlib>

#include "suites/Gate.h"
#include "suites/Tables.h"

namespace headless {

const void* findSuite(const char* name, std::int32_t number) {
    struct Entry {
        const char* name;
        std::int32_t number;
        const void* table;
    };
#define KESTRIN_ENTRY(label, suiteName, suiteNumber) {suiteName, suiteNumber, &table##label},
    static const Entry entries[] = {AEGP_FOR_EACH_SUITE(KESTRIN_ENTRY){
        kKestrinPlatformSuiteName, kKestrinPlatformSuiteNumber, &tablePlatformSuite1}};
#undef KESTRIN_ENTRY
    for (const Entry& entry : entries) {
        if (std::strcmp(entry.name, name) == 0 && entry.number == number) {
            return entry.table;
        }
    }
    return nullptr;
}

A_Err unsupported() noexcept {
    return gate("(a function that this host does not offer)", [](Session&) {
        throw HostError{A_Err_GENERIC, "this host does not offer the function"};
    });
}

namespace {

SPErr acquire(const char* name, std::int32_t number, const void** suite) {
    if (name == nullptr || suite == nullptr) {
        return A_Err_PARAMETER;
    }
    return Session::current().acquireSuite(name, number, suite);
}

SPErr release(const char* name, std::int32_t number) {
    return name == nullptr ? SPErr{A_Err_PARAMETER} : Session::current().releaseSuite(name, number);
}

SPBoolean isEqual(const char* a, const char* b) {
    return a == b || (a != nullptr && b != nullptr && std::strcmp(a, b) == 0) ? 1 : 0;
}

SPErr allocate(std::size_t size, void** block) {
    if (block == nullptr) {
        return A_Err_PARAMETER;
    }
    *block = std::malloc(size);
    return *block == nullptr ? SPErr{A_Err_ALLOC} : SPErr{A_Err_NONE};
}

SPErr freeBlock(void* block) {
    std::free(block);
    return A_Err_NONE;
}

SPErr reallocate(void* block, std::size_t size, void** newBlock) {
    if (newBlock == nullptr) {
        return A_Err_PARAMETER;
    }
    *newBlock = std::realloc(block, size);
    return *newBlock == nullptr ? SPErr{A_Err_ALLOC} : SPErr{A_Err_NONE};
}

SPErr undefined() {
    return A_Err_GENERIC;
}

}  // namespace

const SPBasicSuite* Session::basicSuite() const {
    static constexpr SPBasicSuite suite = {.AcquireSuite = acquire,
                                           .ReleaseSuite = release,
                                           .IsEqual = isEqual,
                                           .AllocateBlock = allocate,
                                           .FreeBlock = freeBlock,
                                           .ReallocateBlock = reallocate,
                                           .Undefined = undefined};
    return &suite;
}

}  // namespace headless
