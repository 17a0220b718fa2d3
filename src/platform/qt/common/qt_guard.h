// The trap for the window's own overrides and slots: no exception leaves them into the toolkit, whose frames
// would not be cleaned up on the way. For the window's thread.
#pragma once

#include <array>
#include <concepts>
#include <cstdio>
#include <type_traits>
#include <utility>

#include "platform/fault_signals.h"
#include "platform/window.h"

namespace hl {

/// Guards the routines of one class. Errors are told as those of "Class::routine".
struct QtGuard {
    const char* owner = "";  ///< The class; empty where a routine's name says enough.

    /// Runs `body` and returns what it returns, or a value-initialised result after an error, which is
    /// reported to `events` as one of `routine`.
    template <std::invocable Body>
    auto operator()(WindowEvents& events, const char* routine, Body&& body) const
        -> std::invoke_result_t<Body> {
        try {
            GuardedRoutine guard;
            return std::forward<Body>(body)();
        } catch (...) {
            std::array<char, 100> where{};
            const char* between = *owner == 0 ? "" : "::";
            std::snprintf(where.data(), where.size(), "%s%s%s", owner, between, routine);
            events.windowFault(where.data());
        }
        return std::invoke_result_t<Body>();
    }
    /// Does the same for the routine that calls it. (In a lambda the compiler knows no name: give one.)
    template <std::invocable Body>
    auto operator()(WindowEvents& events, Body&& body, const char* routine = __builtin_FUNCTION()) const
        -> std::invoke_result_t<Body> {
        return (*this)(events, routine, std::forward<Body>(body));
    }
};

}  // namespace hl
