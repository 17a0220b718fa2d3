// Asking for something whose failure is not worth an error, within an error report above all.
#pragma once

#include <utility>

#include "platform/fault_signals.h"

namespace hl {

/// What `ask` returns, or its result type's value-initialised value where it throws or runs into a processor
/// fault. The result may be void.
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
