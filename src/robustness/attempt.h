// Asks for something whose failure is not worth an error, above all within an error report.
#pragma once

#include <utility>

#include "platform/fault_signals.h"

namespace hl {

/// Returns what `ask` returns, or a value-initialised result if it throws or runs into a processor fault. The
/// result may be void.
template <class Ask>
auto attempt(Ask&& ask) -> decltype(ask()) {
    try {
        GuardedRoutine guard;
        return std::forward<Ask>(ask)();
    } catch (...) {
        return decltype(ask())();
    }
}

}  // namespace hl
