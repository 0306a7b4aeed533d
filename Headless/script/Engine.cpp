#include "script/Engine.h"

#include <duktape.h>

#include <charconv>
#include <new>

#include "script/Call.h"
#include "script/EngineText.h"
#include "script/Library.h"

namespace headless::script {
namespace {

constexpr const char* scriptName = "script";  // what traces call the text that is run

std::string textAt(duk_context* context, duk_idx_t index) {
    duk_size_t length = 0;
    const char* bytes = duk_safe_to_lstring(context, index, &length);
    return fromEngine({bytes, length});
}

// The line of the innermost place in the script's own text: the error may have been raised below it.
int lineOf(duk_context* context) {
    if (!duk_is_error(context, -1)) return 0;
    int line = 0;
    // A script may have given its error a stack of another kind, or one that throws.
    duk_dup(context, -1);
    const auto readStack = [](duk_context* inner, void*) -> duk_ret_t {
        duk_get_prop_string(inner, -1, "stack");
        return 1;
    };
    duk_safe_call(context, readStack, nullptr, 1, 1);
    if (duk_is_string(context, -1)) {
        const std::string stack = textAt(context, -1);
        const std::string mark = std::string("(") + scriptName + ":";
        if (const std::size_t at = stack.find("\n    at "); at != std::string::npos) {
            if (const std::size_t place = stack.find(mark, at); place != std::string::npos) {
                std::from_chars(stack.data() + place + mark.size(), stack.data() + stack.size(), line);
            }
        }
    }
    duk_pop(context);
    return line;
}

// Expects the text to compile on the stack; leaves the function or the error there.
bool compile(duk_context* context, const char* name, duk_uint_t kind) {
    duk_push_string(context, name);
    return duk_pcompile(context, kind) == DUK_EXEC_SUCCESS;
}

void pushText(duk_context* context, std::string_view utf8) {
    const std::string text = toEngine(utf8);
    duk_push_lstring(context, text.data(), text.size());
}

}  // namespace

struct Engine::State {
    explicit State(ScriptHost& host) : context(duk_create_heap(nullptr, nullptr, nullptr, &host, nullptr)) {
        if (!context) throw std::bad_alloc();
    }
    ~State() { duk_destroy_heap(context); }
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    [[noreturn]] void fail() {
        const int line = lineOf(context);
        const std::string message = textAt(context, -1);
        duk_set_top(context, 0);
        throw ScriptError(message, line);
    }

    duk_context* context;
};

Engine::Engine(ScriptHost& host) : state_(std::make_unique<State>(host)) {
    duk_context* context = state_->context;
    duk_push_object(context);
    addProjectFunctions(context);
    addPreferenceFunctions(context);
    addFileFunctions(context);
    addDialogFunctions(context);
    for (const LibraryScript& script : library()) {
        pushText(context, script.text);
        if (!compile(context, script.name, DUK_COMPILE_EVAL) || duk_pcall(context, 0) != DUK_EXEC_SUCCESS) {
            state_->fail();
        }
        duk_dup(context, 0);
        duk_push_global_object(context);
        if (duk_pcall(context, 2) != DUK_EXEC_SUCCESS) state_->fail();
        duk_pop(context);
    }
    duk_set_top(context, 0);
}

Engine::~Engine() = default;

std::string Engine::run(std::string_view text) {
    duk_context* context = state_->context;
    pushText(context, text);
    if (!compile(context, scriptName, DUK_COMPILE_EVAL) || duk_pcall(context, 0) != DUK_EXEC_SUCCESS) {
        state_->fail();
    }
    const std::string result = textAt(context, -1);
    duk_pop(context);
    return result;
}

}  // namespace headless::script
