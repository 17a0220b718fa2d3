// The trap for the window's own overrides and slots: no exception leaves them into the toolkit, whose frames
// would not be cleaned up on the way. For the window's thread.
#pragma once

#include <type_traits>
#include <utility>

#include "platform/fault_signals.h"
#include "platform/window.h"

namespace hl {

/// Runs `body` and returns what it returns, or a value-initialised result after an error, which is reported
/// to `events`. `where` names the routine.
template <class Body>
auto qtGuard(WindowEvents& events, const char* where, Body&& body) -> std::invoke_result_t<Body> {
    try {
        GuardedRoutine guard;
        return std::forward<Body>(body)();
    } catch (...) {
        events.windowFault(where);
    }
    return std::invoke_result_t<Body>();
}

}  // namespace hl
