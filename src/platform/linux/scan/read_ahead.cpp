#include "platform/linux/scan/read_ahead.h"

#include <new>
#include <utility>

#include "platform/linux/process/helper.h"

namespace hl {

ReadAhead::ReadAhead(std::shared_ptr<DirectoryCalls> calls, std::string source, const ReadOptions& options,
                     const ReadAheadLimits& limits, WaitCallback* wait)
    : core_(std::make_shared<ReadAheadCore>(std::move(calls), std::move(source), options, limits, wait)) {}

// Closing a folder may hang like any other call. If no helper may be started any more, open folders stay
// open.
ReadAhead::~ReadAhead() {
    core_->leave();
    if (!core_->mayHangWhenClosed()) return;
    try {
        auto held = std::make_unique<std::shared_ptr<ReadAheadCore>>();
        auto* const last = held.get();
        const auto close = [last](Whereabouts&) { delete last; };
        *last = std::move(core_);
        static_cast<void>(held.release());
        Helper::start(close, true);
    } catch (const std::bad_alloc&) {
        return;
    }
}

}  // namespace hl
