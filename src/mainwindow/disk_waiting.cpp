#include "mainwindow/disk_waiting.h"

#include <utility>

#include "base/text.h"
#include "mainwindow/main_form.h"
#include "scan/driver.h"

namespace hl {

// Nothing else may begin meanwhile, so the window is locked as for a run, unless a run has locked it.
void DiskWaiting::waitBegins(const std::string& path) {
    if (waits_++ > 0) return;
    began_ = form_.services().pump.GetTickCount();
    statusBefore_ = form_.status.first();
    work_.emplace(form_.sources);
    form_.status.setFirst(form_.services().texts.TL(
        9656, "Warten auf den Datenträger von '%1' ... (Abbruch: ESC-Taste)", {visible(path)}));
    locked_ = !form_.session.state.ScanActive;
    if (!locked_) return;
    form_.session.state.CancelState = kCancelNone;
    form_.session.state.DiskSilent = true;  // Messages run here, too.
    DisableControls(form_.scan, false);
    form_.session.state.DiskSilent = false;
    form_.run.setBusyPointer(true);
}

// While the window loads, its sources are looked for; if some are on a disk that is gone, the wait for them
// is short.
bool DiskWaiting::goesOnWaiting() {
    constexpr std::uint64_t kLongestAtStart = 1000;  // Milliseconds.
    form_.session.state.DiskSilent = true;
    form_.services().pump.PumpMessages();
    form_.session.state.DiskSilent = false;
    if (!form_.sources.loaded() && form_.services().pump.GetTickCount() - began_ >= kLongestAtStart)
        return false;
    return !form_.closed && (locked_ ? form_.session.state.CancelState == kCancelNone
                                     : form_.session.state.CancelState != kCancelStop);
}

void DiskWaiting::waitEnds() {
    if (--waits_ > 0) return;
    work_.reset();
    form_.status.setFirst(statusBefore_);
    if (!std::exchange(locked_, false)) return;
    if (!form_.closed) form_.session.state.CancelState = kCancelNone;
    EnableControls(form_.scan);
    form_.run.setBusyPointer(false);
}

}  // namespace hl
