// A plug-in that does not come back: KESTRIN_FAULT says what it does instead, and where.

#include <dlfcn.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <string_view>

#include "AEGP_Host.h"

namespace {

void misbehave(std::string_view place) {
    const std::string_view fault = std::getenv("KESTRIN_FAULT");
    if (!fault.ends_with(place)) {
        return;
    }
    if (fault.starts_with("crash")) {
        std::signal(SIGSEGV, SIG_DFL);  // not the sanitizer's
        std::raise(SIGSEGV);
    } else if (fault.starts_with("leave")) {
        ::_exit(0);
    } else {
        while (true) {
            ::usleep(1000);
        }
    }
}

A_Err onMenu(AEGP_GlobalRefcon, AEGP_UpdateMenuRefcon, AEGP_WindowType) {
    misbehave("menu");
    return A_Err_NONE;
}

// When the library is unloaded.
struct Unloaded {
    ~Unloaded() { misbehave("end"); }
} unloaded;

}  // namespace

// Otherwise it is the plug-in that KESTRIN_GOOD_PLUGIN names.
extern "C" __attribute__((visibility("default"))) A_Err EntryPointFunc(SPBasicSuite* basic, A_long major,
                                                                       A_long minor, AEGP_PluginID id,
                                                                       AEGP_GlobalRefcon* refcon) {
    misbehave("start");
    const void* suite = nullptr;
    if (basic->AcquireSuite("AEGP Register Suite", 6, &suite) != 0) {
        return A_Err_GENERIC;
    }
    static_cast<const AEGP_RegisterSuite5*>(suite)->AEGP_RegisterUpdateMenuHook(id, onMenu, nullptr);
    basic->ReleaseSuite("AEGP Register Suite", 6);
    void* const library = ::dlopen(std::getenv("KESTRIN_GOOD_PLUGIN"), RTLD_NOW | RTLD_LOCAL);
    const auto good = library != nullptr ? ::dlsym(library, "EntryPointFunc") : nullptr;
    return good != nullptr ? reinterpret_cast<AEGP_PluginEntryPoint>(good)(basic, major, minor, id, refcon)
                           : A_Err_GENERIC;
}
