// What the module wants of its surroundings, by the names that it has for them in version 1.0.6.
//
// Errors that are thrown inside it, and jumps of the language that it runs expressions in, pass through
// functions that are called for it from here.

#include <cstdio>
#include <cstring>

#include "Module.h"
#include "names.h"
#include "wasm-rt-impl.h"

namespace {

constexpr std::uint32_t pageBytes = 65536;
constexpr u32 notSeekable = 29;

template <class Type>
constexpr wasm_rt_type_t typeOf = WASM_RT_I32;

// Calls an entry of the module's table. What is thrown meanwhile ends here, and the module is told so. No
// object with a destructor may live in between.
template <class Result, class... Arguments>
Result invoke(Z_a_instance_t* host, u32 entry, Arguments... arguments) {
    static const u32 type = [] {
        if constexpr (std::is_void_v<Result>) {
            return wasm_rt_register_func_type(sizeof...(Arguments), 0, typeOf<Arguments>...);
        } else {
            return wasm_rt_register_func_type(sizeof...(Arguments), 1, typeOf<Arguments>..., typeOf<Result>);
        }
    }();
    const wasm_rt_funcref_table_t& table = host->module->w2c_Me;
    if (entry >= table.size || table.data[entry].func == nullptr || table.data[entry].func_type != type) {
        wasm_rt_trap(WASM_RT_TRAP_CALL_INDIRECT);
    }
    const wasm_rt_funcref_t& function = table.data[entry];
    const u32 stack = module_save_stack(host->module);
    std::jmp_buf* const outer = host->handler;
    std::jmp_buf here;
    if (_setjmp(here) == 0) {
        host->handler = &here;
        const auto call = reinterpret_cast<Result (*)(void*, Arguments...)>(function.func);
        if constexpr (std::is_void_v<Result>) {
            call(function.module_instance, arguments...);
            host->handler = outer;
            return;
        } else {
            const Result result = call(function.module_instance, arguments...);
            host->handler = outer;
            return result;
        }
    }
    host->handler = outer;
    module_restore_stack(host->module, stack);
    module_set_thrown(host->module, 1, 0);
    return Result();
}

[[noreturn]] void toHandler(Z_a_instance_t* host) {
    if (host->handler == nullptr) stopModule(*host, "an error was thrown that nobody catches");
    std::longjmp(*host->handler, 1);
}

const char* textAt(const Z_a_instance_t& host, u32 address) {
    const wasm_rt_memory_t& memory = *module_memory(host.module);
    const std::uint64_t end = std::uint64_t{memory.pages} * pageBytes;
    if (address >= end || std::memchr(memory.data + address, 0, end - address) == nullptr) return "?";
    return reinterpret_cast<const char*>(memory.data + address);
}

}  // namespace

void stopModule(Z_a_instance_t& host, const char* reason) {
    std::snprintf(host.reason, sizeof host.reason, "%s", reason);
    wasm_rt_trap(WASM_RT_TRAP_UNREACHABLE);
}

void widenChecks(Z_thorvg_instance_t& module) {
    module_memory(&module)->size = UINT32_MAX;
}

extern "C" {

void refuse_import(Z_a_instance_t* host, const char* name) {
    char text[64];
    std::snprintf(text, sizeof text, "it called %s, which is not there", name);
    stopModule(*host, text);
}

// ---- Calls that may throw --------------------------------------------------------------------------------

u32 Z_aZ_u(Z_a_instance_t* host, u32 entry, u32 a) {
    return invoke<u32>(host, entry, a);
}
u32 Z_aZ_j(Z_a_instance_t* host, u32 entry, u32 a, u32 b) {
    return invoke<u32>(host, entry, a, b);
}
u32 Z_aZ_g(Z_a_instance_t* host, u32 entry, u32 a, u32 b, u32 c) {
    return invoke<u32>(host, entry, a, b, c);
}
u32 Z_aZ_ya(Z_a_instance_t* host, u32 entry, u32 a, u32 b, u32 c, u32 d, u32 e) {
    return invoke<u32>(host, entry, a, b, c, d, e);
}
void Z_aZ_W(Z_a_instance_t* host, u32 entry) {
    invoke<void>(host, entry);
}
void Z_aZ_b(Z_a_instance_t* host, u32 entry, u32 a) {
    invoke<void>(host, entry, a);
}
void Z_aZ_c(Z_a_instance_t* host, u32 entry, u32 a, u32 b) {
    invoke<void>(host, entry, a, b);
}
void Z_aZ_m(Z_a_instance_t* host, u32 entry, u32 a, u32 b, u32 c) {
    invoke<void>(host, entry, a, b, c);
}
void Z_aZ_B(Z_a_instance_t* host, u32 entry, u32 a, u32 b, u32 c, u32 d) {
    invoke<void>(host, entry, a, b, c, d);
}

// Throwing, throwing again, and the jump of its language.
void Z_aZ_S(Z_a_instance_t* host, u32, u32, u32) {
    toHandler(host);
}
void Z_aZ_wa(Z_a_instance_t* host, u32) {
    toHandler(host);
}
void Z_aZ_sb(Z_a_instance_t* host) {
    toHandler(host);
}
// No handler of the module's own takes what was thrown: only those that pass it on run.
u32 Z_aZ_xa(Z_a_instance_t*) {
    return 0;
}
u32 Z_aZ_qb(Z_a_instance_t*, u32) {
    return 0;
}
u32 Z_aZ_wb(Z_a_instance_t* host, u32) {
    stopModule(*host, "an error was thrown");
}
void Z_aZ_ub(Z_a_instance_t*) {}

// ---- Memory and the end ----------------------------------------------------------------------------------

u32 Z_aZ_xb(Z_a_instance_t* host, u32 wanted) {
    wasm_rt_memory_t& memory = *module_memory(host->module);
    const u32 pages = static_cast<u32>((std::uint64_t{wanted} + pageBytes - 1) / pageBytes);
    if (pages <= memory.pages) return 1;
    if (pages <= host->mostPages && wasm_rt_grow_memory(&memory, pages - memory.pages) != UINT32_MAX) {
        widenChecks(*host->module);
        return 1;
    }
    // It does not look at what it is given, and where nothing is would be its first bytes.
    host->outOfMemory = true;
    stopModule(*host, "it wants more memory than it is given");
}

void Z_aZ_a(Z_a_instance_t* host, u32 condition, u32, u32, u32) {
    stopModule(*host, textAt(*host, condition));
}
void Z_aZ_Bb(Z_a_instance_t* host) {
    stopModule(*host, "it gave up");
}
void Z_aZ_tb(Z_a_instance_t* host, u32) {
    stopModule(*host, "it ended itself");
}

// ---- Files, of which there are none, and timers ------------------------------------------------------------

// What it writes is left out, as if it had been written.
u32 Z_aZ_Ab(Z_a_instance_t* host, u32, u32 parts, u32 count, u32 written) {
    std::uint8_t* const memory = module_memory(host->module)->data;
    u32 total = 0;
    for (u32 i = 0; i < count; ++i) {
        u32 length = 0;
        std::memcpy(&length, memory + std::uint64_t{parts} + 8 * std::uint64_t{i} + 4, sizeof length);
        total += length;
    }
    std::memcpy(memory + written, &total, sizeof total);
    return 0;
}
u32 Z_aZ_zb(Z_a_instance_t*, u32) {
    return 0;
}
u32 Z_aZ_yb(Z_a_instance_t*, u32, u64, u32, u32) {
    return notSeekable;
}
u32 Z_aZ_vb(Z_a_instance_t*, u32, f64) {
    return 0;
}

// ---- What it would register for the page that it lives in elsewhere -----------------------------------------

void Z_aZ_ua(Z_a_instance_t*, u32, u32, u32, u64, u64) {}
void Z_aZ_nb(Z_a_instance_t*, u32, u32, u32, u32) {}
void Z_aZ_mb(Z_a_instance_t*, u32, u32, u32, u32, u32, u32, u32, u32, u32, u32, u32, u32, u32) {}
void Z_aZ_ib(Z_a_instance_t*, u32, u32, u32, u32, u32, u32) {}
void Z_aZ_F(Z_a_instance_t*, u32, u32, u32, u32, u32, u32, u32, u32, u32, u32) {}
void Z_aZ_kb(Z_a_instance_t*, u32) {}
void Z_aZ_ta(Z_a_instance_t*, u32, u32, u32) {}
void Z_aZ_Da(Z_a_instance_t*, u32, u32, u32, u32, u32, u32, u32, u32) {}
void Z_aZ_y(Z_a_instance_t*, u32, u32, u32, u32, u32) {}
void Z_aZ_o(Z_a_instance_t*, u32, u32, u32) {}
void Z_aZ_lb(Z_a_instance_t*, u32, u32) {}
void Z_aZ_V(Z_a_instance_t*, u32, u32, u32) {}
void Z_aZ_Vb(Z_a_instance_t*, u32, u32) {}
void Z_aZ_ob(Z_a_instance_t*, u32, u32) {}
void Z_aZ_Ia(Z_a_instance_t*, u32) {}
void Z_aZ_Ma(Z_a_instance_t*, u32) {}

}  // extern "C"
