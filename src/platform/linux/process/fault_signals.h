// Catches processor faults as Linux signals.
//
// Fixed rules, at the top of the implementation, decide what may be thrown out of the signal handler.
#pragma once

#include "platform/fault_signals.h"

namespace hl {

/// Installing prepares the installing thread; other threads prepare themselves. It uses the process's alarm
/// clock.
class LinuxFaultSignals : public FaultSignals {
  public:
    void InstallExceptionFilter(LastWords lastWords) override;
    void RemoveExceptionFilter() override;
    void addOwnModule(const void* inside) override;
    void prepareThread() override;
};

}  // namespace hl
