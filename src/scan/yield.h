// When a long loop lets the window's messages run: once every PumpInterval, and whenever input waits.
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

    /// To be called for each entry or row. Asks the clock only every kStride calls, some tenths of a
    /// millisecond.
    void perEntry() {
        if (++calls_ % kStride == 0) now();
    }
    void now();
    /// A pause of a reader: always lets messages run. False once Stop was pressed.
    bool goOnWaiting() override;

  private:
    static constexpr unsigned kStride = 64;
    ScanState& state_;
    MessagePump& pump_;
    unsigned calls_ = 0;
    std::uint64_t waitsSince_ = 0;  ///< Ticks of the first pause of a wait,
    std::uint64_t waitedTill_ = 0;  ///< and of the last one.
};

/// Messages run while the reader waits. That it waits long is told once for each block.
class ReaderWait final : public WaitCallback {
  public:
    ReaderWait(Yield& yield, MessagePump& pump, std::function<void()> tell)
        : yield_(yield), pump_(pump), tell_(std::move(tell)) {}

    void begins() { since_.reset(); }
    bool goOnWaiting() override {
        constexpr std::uint64_t kLong = 3000;  // Milliseconds; a disk that has to start up needs some.
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
