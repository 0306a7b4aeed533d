// How an operation makes its host calls: each one only while nothing has failed, the first failure kept.

#pragma once

#include "AEGP_SuiteHandler.h"

// The first failure of an operation and the step that met it.
class Result {
 public:
    bool ok() const noexcept { return error_ == A_Err_NONE; }
    A_Err error() const noexcept { return error_; }
    const char* failedStep() const noexcept { return failedStep_; }

    // Keeps `error` unless there is none or an earlier one is kept already. `name` is a literal.
    void note(const char* name, A_Err error) noexcept {
        if (ok() && error != A_Err_NONE) {
            error_ = error;
            failedStep_ = name;
        }
    }

 private:
    A_Err error_ = A_Err_NONE;
    const char* failedStep_ = "";
};

// Makes the call only while nothing has failed; after a failure its arguments are not even evaluated.
template <class Call>
void step(Result& result, const char* name, Call&& call) {
    if (result.ok()) {
        result.note(name, call());
    }
}

// Runs `body(suites, result)` with a suite handler of its own and returns the first failure. A missing suite
// ends the body and counts as a failure; any other exception passes through once the suites are released.
template <class Body>
A_Err operation(const SPBasicSuite* basic, Body&& body) {
    Result result;
    try {
        AEGP_SuiteHandler suites(basic);
        body(suites, result);
    } catch (A_Err missingSuite) {
        result.note("acquire a suite", missingSuite);
    }
    return result.error();
}

// An operation that the host calls: no exception crosses the boundary.
template <class Body>
A_Err hostCallback(const SPBasicSuite* basic, Body&& body) noexcept {
    try {
        return operation(basic, body);
    } catch (...) {
        return A_Err_GENERIC;
    }
}
