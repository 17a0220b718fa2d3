#include "platform/linux/read_ahead.h"

#include <system_error>
#include <thread>
#include <utility>

namespace hl {

ReadAhead::ReadAhead(std::shared_ptr<DirectoryCalls> calls, std::string source, const ReadOptions& options,
                     const ReadAheadLimits& limits, WaitCallback* wait, void (*prepareThread)())
    : core_(std::make_shared<ReadAheadCore>(std::move(calls), std::move(source), options, limits, wait,
                                            prepareThread)) {}

ReadAhead::~ReadAhead() {
    core_->leave();
    if (!core_->mayHangWhenClosed()) return;
    try {
        std::thread([core = core_] {}).detach();
    } catch (const std::system_error&) {
        return;  // Without a thread it is closed here.
    }
}

}  // namespace hl
