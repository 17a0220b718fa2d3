#include "scan/yield.h"

namespace hl {

void Yield::now() {
    const std::uint64_t tick = pump_.GetTickCount();
    if (tick > state_.pump.lastTick + state_.pump.interval) {
        pump_.PumpMessages();
        state_.pump.lastTick = tick;
    } else if (pump_.GetInputState()) {
        pump_.PumpMessages();
    }
}

// The reader calls this every 15 milliseconds while it waits; a longer gap means that it got something
// meanwhile.
bool Yield::goOnWaiting() {
    constexpr std::uint64_t kGap = 200, kSilent = 1000;
    state_.DiskSilent = waitedTill_ - waitsSince_ >= kSilent;
    pump_.PumpMessages();
    state_.DiskSilent = false;
    const std::uint64_t now = pump_.GetTickCount();
    if (now > waitedTill_ + kGap) waitsSince_ = now;
    waitedTill_ = state_.pump.lastTick = now;
    return state_.CancelState != kCancelStop;
}

}  // namespace hl
