#include "robustness/trap.h"

#include <new>
#include <system_error>

#include "robustness/attempt.h"

namespace hl::trap_detail {

namespace {

Fault outOfMemory() {
    return {static_cast<int>(std::errc::not_enough_memory), "", "Out of memory"};
}  // Short enough to need no memory itself.

Fault currentFault() {
    try {
        throw;
    } catch (const Fault& fault) {
        return fault;
    } catch (const std::bad_alloc&) {
        return outOfMemory();
    } catch (const std::system_error& error) {
        return {error.code().value(), "", error.what()};
    } catch (const std::exception& error) {
        return {kFaultInvalidCall, "", error.what()};
    } catch (...) {
        return {kFaultInvalidCall, "", "Unknown exception"};
    }
}

Fault currentFaultOrNoMemory() noexcept {
    try {
        return currentFault();
    } catch (...) {
        return outOfMemory();
    }
}

}  // namespace

void reportCurrent(Diagnostics& diagnostics, const TrapPlace& place,
                   const std::function<DebugValues()>& debugValues) noexcept {
    diagnostics.Debug(place, currentFaultOrNoMemory(), attempt(debugValues));
}

}  // namespace hl::trap_detail
