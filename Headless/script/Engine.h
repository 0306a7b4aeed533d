// The host's script engine: one global object for the whole session, so that a script finds what an
// earlier one left behind.

#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

#include "script/ScriptHost.h"

namespace headless::script {

// A script that does not parse, or that threw. `line` counts from 1; 0 where the engine does not know it.
struct ScriptError : std::runtime_error {
    ScriptError(const std::string& message, int atLine) : std::runtime_error(message), line(atLine) {}
    int line;
};

class Engine {
 public:
    // `host` must outlive the engine.
    explicit Engine(ScriptHost& host);
    ~Engine();
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    // Runs UTF-8 text and returns its completion value as text ("undefined" when there is none). `$.sleep`
    // takes no time. Dialogs block here until the host's answerer has closed them. Nothing limits how long a
    // script runs.
    // Throws ScriptError.
    std::string run(std::string_view text);

 private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace headless::script
