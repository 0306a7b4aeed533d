// Scoped access to the suite that the headless host answers in place of the system.

#pragma once

#include "AEGP_Suites.h"

namespace platform {

class HeadlessSuite {
 public:
    explicit HeadlessSuite(const SPBasicSuite* basic) noexcept : basic_(basic) {
        const void* table = nullptr;
        if (basic_->AcquireSuite(kKestrinPlatformSuiteName, kKestrinPlatformSuiteNumber, &table) == 0) {
            table_ = static_cast<const Kestrin_PlatformSuite1*>(table);
        }
    }
    ~HeadlessSuite() {
        if (table_ != nullptr) {
            basic_->ReleaseSuite(kKestrinPlatformSuiteName, kKestrinPlatformSuiteNumber);
        }
    }
    HeadlessSuite(const HeadlessSuite&) = delete;
    HeadlessSuite& operator=(const HeadlessSuite&) = delete;

    // Null where the host has no such suite.
    const Kestrin_PlatformSuite1* get() const noexcept { return table_; }

 private:
    const SPBasicSuite* basic_;
    const Kestrin_PlatformSuite1* table_ = nullptr;
};

}  // namespace platform
