// The lock of the window while something works. It is implemented above this room. For the thread of the
// logic only. Calls must not throw.
#pragma once

namespace hl {

class Controls {
  public:
    virtual ~Controls() = default;
    virtual void setBusyPointer(bool busy) = 0;
    /// Locks the window except for Stop, and with `noStop` for Stop too. Use DisableControls, which also sets
    /// ScanActive.
    virtual void lockControls(bool noStop) = 0;
    virtual void unlockControls() = 0;
};

/// Shows the hourglass while it lives, even if a fault ends the routine.
class BusyPointer {
  public:
    explicit BusyPointer(Controls& controls) : controls_(controls) { controls_.setBusyPointer(true); }
    ~BusyPointer() { controls_.setBusyPointer(false); }
    BusyPointer(const BusyPointer&) = delete;
    BusyPointer& operator=(const BusyPointer&) = delete;

  private:
    Controls& controls_;
};

}  // namespace hl
