// One call from script text into the program: its arguments, its result, its failure.
//
// The engine unwinds by longjmp, which skips destructors. A native function's body therefore only uses what
// cannot raise a script error (the library has already brought its arguments to the right types), reports
// failure by an exception, and the error is raised when the body's frame is gone.

#pragma once

#include <duktape.h>

#include <exception>
#include <string>
#include <string_view>

#include "script/EngineText.h"
#include "script/ScriptHost.h"

namespace headless::script {

class Call {
 public:
    explicit Call(duk_context* context) : context_(context) {}

    ScriptHost& host() const {
        duk_memory_functions functions;
        duk_get_memory_functions(context_, &functions);
        return *static_cast<ScriptHost*>(functions.udata);
    }

    bool isGiven(duk_idx_t index) const { return !duk_is_null_or_undefined(context_, index); }
    std::string text(duk_idx_t index) const {
        duk_size_t length = 0;
        const char* bytes = duk_get_lstring(context_, index, &length);
        return bytes ? fromEngine({bytes, length}) : std::string();
    }
    double number(duk_idx_t index) const { return duk_get_number(context_, index); }
    int integer(duk_idx_t index) const { return duk_get_int(context_, index); }
    bool flag(duk_idx_t index) const { return duk_get_boolean(context_, index) != 0; }

    void result(std::string_view utf8) const {
        const std::string text = toEngine(utf8);
        duk_push_lstring(context_, text.data(), text.size());
    }
    void result(double number) const { duk_push_number(context_, number); }
    void result(bool flag) const { duk_push_boolean(context_, flag); }
    void result(const char*) const = delete;  // would become a bool

    // For results of many values: what is pushed last is the result.
    duk_context* context() const { return context_; }
    void member(const char* name, const auto& value) const {
        result(value);
        duk_put_prop_string(context_, -2, name);
    }

 private:
    duk_context* context_;
};

// Wraps a body for the engine. A body that pushes nothing gives undefined.
template <void (*Body)(const Call&)>
duk_ret_t native(duk_context* context) {
    const duk_idx_t top = duk_get_top(context);
    bool failed = false;
    try {
        Body(Call(context));
    } catch (const std::exception& error) {
        Call(context).result(std::string_view(error.what()));
        failed = true;
    } catch (...) {
        Call(context).result(std::string_view("unknown failure of the host"));
        failed = true;
    }
    if (failed) return duk_error(context, DUK_ERR_ERROR, "%s", duk_get_string(context, -1));
    return duk_get_top(context) > top ? 1 : 0;
}

// What each native_*.cpp adds to the object through which the library reaches the program (top of the stack).
void addProjectFunctions(duk_context* context);
void addPreferenceFunctions(duk_context* context);
void addFileFunctions(duk_context* context);
void addDialogFunctions(duk_context* context);

}  // namespace headless::script
