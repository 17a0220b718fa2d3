// The error trap of a routine: no error leaves the routine, and its caller goes on as if it had returned.
//
//     void Form::OptionenLadenMain() {
//         guarded(diagnostics_, "OptionenLadenMain", "frmMain", [&] { ... });
//     }
//
// What the routine had done until then stays done; destructors release what it holds. Without a trap of its
// own a routine hands its errors to the trap of its caller.
#pragma once

#include <concepts>
#include <cstdint>
#include <functional>
#include <type_traits>
#include <utility>

#include "platform/fault_signals.h"
#include "robustness/debug.h"

namespace hl {

namespace trap_detail {

/// Hands the exception being handled to `Debug`. REQUIRES: it is called in a catch block.
void reportCurrent(Diagnostics& diagnostics, const char* func, const char* modul, std::uint_least32_t line,
                   const std::function<DebugValues()>& debugValues) noexcept;

}  // namespace trap_detail

/// Runs `body` and returns what it returns, or a value-initialised result after an error. Errors go to
/// `Debug`, with the line of this call. `func` and `modul` name the routine.
///
/// (The line comes from a builtin, since clang 14 has no std::source_location.)
///
/// `debugValues` gives values that help to understand an error; it is called only when there is one.
template <class Body, std::invocable Values>
auto guarded(Diagnostics& diagnostics, const char* func, const char* modul, Body&& body, Values debugValues,
             std::uint_least32_t line = __builtin_LINE()) -> std::invoke_result_t<Body> {
    try {
        GuardedRoutine guard;
        return std::forward<Body>(body)();
    } catch (...) {
        trap_detail::reportCurrent(diagnostics, func, modul, line, std::ref(debugValues));
    }
    return std::invoke_result_t<Body>();
}

template <class Body>
auto guarded(Diagnostics& diagnostics, const char* func, const char* modul, Body&& body,
             std::uint_least32_t line = __builtin_LINE()) -> std::invoke_result_t<Body> {
    return guarded(
        diagnostics, func, modul, std::forward<Body>(body), [] { return DebugValues(); }, line);
}

}  // namespace hl
