// Reads folders ahead of the walk, and returns their blocks in the order of one thread.
//
// The walk holds this object, on the thread of the logic; all that other threads use is in a ReadAheadCore
// (read_ahead_core.h), which outlives it if one of them hangs.
#pragma once

#include <memory>
#include <string>

#include "platform/linux/scan/read_ahead_core.h"

namespace hl {

class ReadAhead final : public FolderReader {
  public:
    /// `wait` (may be null) must outlive the reader.
    ReadAhead(std::shared_ptr<DirectoryCalls> calls, std::string source, const ReadOptions& options,
              const ReadAheadLimits& limits, WaitCallback* wait);
    /// Waits for what the helpers are reading, at most one folder each; on a mount that can hang only for a
    /// moment, after which they are abandoned.
    ~ReadAhead() override;

    std::unique_ptr<Listing> next() override { return core_->next(); }

    /// The largest number of descriptors for folders that were open at once.
    std::size_t mostOpen() const { return core_->mostOpen(); }

  private:
    std::shared_ptr<ReadAheadCore> core_;
};

}  // namespace hl
