// Processor faults by way of Linux signals.
//
// What may be thrown out of the signal handler is decided by fixed rules; the implementation opens with them.
#pragma once

#include "platform/fault_signals.h"

namespace hl {

/// The thread that installs is prepared by that; others prepare themselves. Uses the process's alarm clock.
class LinuxFaultSignals : public FaultSignals {
  public:
    void InstallExceptionFilter(LastWords lastWords) override;
    void RemoveExceptionFilter() override;
    void addOwnModule(const void* inside) override;
    void prepareThread() override;
};

}  // namespace hl
