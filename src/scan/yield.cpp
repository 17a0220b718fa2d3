#include "scan/yield.h"

namespace hl {

void Yield::now() {
    const std::uint64_t tick = pump_.GetTickCount();
    if (tick > state_.LastPumpTick + state_.PumpInterval) {
        pump_.PumpMessages();
        state_.LastPumpTick = tick;
    } else if (pump_.GetInputState()) {
        pump_.PumpMessages();
    }
}

bool Yield::goOnWaiting() {
    pump_.PumpMessages();
    state_.LastPumpTick = pump_.GetTickCount();
    return state_.CancelState != kCancelStop;
}

}  // namespace hl
