// Lets the window's messages run during a long loop: once every PumpState::interval, and whenever input
// waits. For the thread of the logic.
#pragma once

#include <functional>
#include <optional>
#include <utility>

#include "platform/folder_reader.h"
#include "platform/message_pump.h"
#include "scan/scan_state.h"

namespace hl {

class Yield final : public WaitCallback {
  public:
    Yield(ScanState& state, MessagePump& pump) : state_(state), pump_(pump) {}

    /// Must be called for each entry or row. It reads the clock only every kStride calls, which is some
    /// tenths of a millisecond.
    void perEntry() {
        if (++calls_ % kStride == 0) now();
    }
    void now();
    /// Lets messages run while a reader waits. Returns false once Stop was pressed.
    bool goOnWaiting() override;

  private:
    static constexpr unsigned kStride = 64;
    ScanState& state_;
    MessagePump& pump_;
    unsigned calls_ = 0;
    std::uint64_t waitsSince_ = 0;  ///< The tick count of the first pause of a wait.
    std::uint64_t waitedTill_ = 0;  ///< The tick count of the last pause of a wait.
};

/// Lets messages run while the reader waits, and tells once for each block that the wait is long.
class ReaderWait final : public WaitCallback {
  public:
    ReaderWait(Yield& yield, MessagePump& pump, std::function<void()> tell)
        : yield_(yield), pump_(pump), tell_(std::move(tell)) {}

    void begins() { since_.reset(); }
    bool goOnWaiting() override {
        constexpr std::uint64_t kLong = 3000;  // In milliseconds; a disk that has to start up needs some.
        const std::uint64_t tick = pump_.GetTickCount();
        if (!since_) since_ = Wait{tick, false};
        if (tick >= since_->start + kLong && !std::exchange(since_->told, true)) tell_();
        return yield_.goOnWaiting();
    }

  private:
    struct Wait {
        std::uint64_t start;
        bool told;
    };
    Yield& yield_;
    MessagePump& pump_;
    std::function<void()> tell_;
    std::optional<Wait> since_;
};

}  // namespace hl
