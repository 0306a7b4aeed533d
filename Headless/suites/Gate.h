// The one way into the host: every slot of every table goes through gate().
//
// It counts and records the call, lets a test make it fail, refuses other threads, and turns whatever goes
// wrong into an error code. Nothing is ever thrown into the plug-in.

#pragma once

#include <cmath>
#include <new>

#include "model/Edit.h"
#include "session/Session.h"

namespace headless {

template <class Body>
A_Err gate(const char* name, Body&& body) noexcept {
    Session& session = Session::current();
    if (const A_Err refused = session.enterCall(name)) {
        return refused;
    }
    try {
        body(session);
        return A_Err_NONE;
    } catch (const HostError& error) {
        return session.failedCall(name, error.code, error.text);
    } catch (const model::EditError& error) {
        return session.failedCall(name, A_Err_GENERIC, error.what());
    } catch (const std::bad_alloc&) {
        return session.failedCall(name, A_Err_ALLOC, "there is not enough memory");
    } catch (const std::exception& error) {
        return session.failedCall(name, A_Err_GENERIC, error.what());
    } catch (...) {  // a command's hook may let out anything
        return session.failedCall(name, A_Err_GENERIC, "an exception came out of it");
    }
}

// What a pointer argument refers to. Throws HostError (parameter) when it is null.
template <class T>
T& need(T* pointer) {
    if (pointer == nullptr) {
        throw HostError{A_Err_PARAMETER, "an argument is a null pointer"};
    }
    return *pointer;
}

// A result that is a handle: null until the call has succeeded.
template <class Handle>
Handle& needHandle(Handle* pointer) {
    return need(pointer) = nullptr;
}

template <class Handle>
std::uintptr_t bits(Handle handle) {
    return reinterpret_cast<std::uintptr_t>(handle);
}

// Numbers that the file can hold and that can be read again.
inline double needNumber(double number) {
    constexpr double largest = 1e12;
    if (!(std::abs(number) <= largest)) {
        throw HostError{A_Err_PARAMETER, "the number " + std::to_string(number) + " is out of range"};
    }
    return number;
}

inline void requireIndex(A_long index, std::size_t count, const char* what) {
    if (index < 0 || static_cast<std::size_t>(index) >= count) {
        throw HostError{PF_Err_INVALID_INDEX, std::string("there is no ") + what + " " + std::to_string(index)};
    }
}

}  // namespace headless
