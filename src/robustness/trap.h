// The error trap of a routine: no error leaves the routine, and its caller goes on as if it had returned.
//
//     void Form::OptionenLadenMain() {
//         guarded(diagnostics_, [&] { ... });
//     }
//
// Error reports name the routine as it is named here, so that renaming it changes them; a routine that is to
// be reported under another name says so: guarded(diagnostics_, {.routine = "Form_Load"}, [&] { ... }). In a
// lambda the compiler knows no name, and one must be given.
//
// What the routine had done until then stays done; destructors release what it holds. Without a trap of its
// own a routine hands its errors to the trap of its caller.
#pragma once

#include <concepts>
#include <functional>
#include <type_traits>
#include <utility>

#include "platform/fault_signals.h"
#include "robustness/debug.h"

namespace hl {

namespace trap_detail {

/// Hands the exception being handled to `Debug`. REQUIRES: it is called in a catch block.
void reportCurrent(Diagnostics& diagnostics, const TrapPlace& place,
                   const std::function<DebugValues()>& debugValues) noexcept;

}  // namespace trap_detail

/// Runs `body` and returns what it returns, or a value-initialised result after an error. Errors go to
/// `Debug`, as those of `place`.
///
/// `debugValues` gives values that help to understand an error; it is called only when there is one.
template <std::invocable Body, std::invocable Values>
auto guarded(Diagnostics& diagnostics, const TrapPlace& place, Body&& body, Values debugValues)
    -> std::invoke_result_t<Body> {
    try {
        GuardedRoutine guard;
        return std::forward<Body>(body)();
    } catch (...) {
        trap_detail::reportCurrent(diagnostics, place, std::ref(debugValues));
    }
    return std::invoke_result_t<Body>();
}

template <std::invocable Body>
auto guarded(Diagnostics& diagnostics, const TrapPlace& place, Body&& body) -> std::invoke_result_t<Body> {
    return guarded(diagnostics, place, std::forward<Body>(body), [] { return DebugValues(); });
}

/// Guards the routine of the main form that calls it.
template <std::invocable Body>
auto guarded(Diagnostics& diagnostics, Body&& body, const TrapPlace& place = {})
    -> std::invoke_result_t<Body> {
    return guarded(diagnostics, place, std::forward<Body>(body));
}

}  // namespace hl
