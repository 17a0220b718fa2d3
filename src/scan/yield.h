// When a long loop lets the window's messages run: once every PumpInterval, and whenever input waits.
#pragma once

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
};

}  // namespace hl
