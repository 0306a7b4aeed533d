// The compiled module, and what it finds around it.

#pragma once

#include <csetjmp>
#include <cstdint>
#include <string>

extern "C" {
#include "module.h"
}

// The type that the module knows its surroundings by.
struct Z_a_instance_t {
    Z_thorvg_instance_t* module;
    std::jmp_buf* handler;    // innermost place that a throw in the module goes to
    std::uint32_t mostPages;  // of its memory
    bool outOfMemory;         // it asked for more
    char reason[256];         // for which it stopped
};

extern "C" [[noreturn]] void refuse_import(Z_a_instance_t* host, const char* name);
// Ends the call into the module that is going on.
[[noreturn]] void stopModule(Z_a_instance_t& host, const char* reason);
// From now on the module may touch addresses beyond its own memory; which exist is for the processor to say.
void widenChecks(Z_thorvg_instance_t& module);
