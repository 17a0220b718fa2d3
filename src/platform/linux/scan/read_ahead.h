// Reads folders ahead of the walk, and hands their blocks over in the order of one thread.
//
// What the walk holds is this; all that threads touch is a ReadAheadCore (read_ahead_core.h), which outlives
// it where one of them hangs.
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
    /// Waits for what the helpers have in hand, at most one folder each; on a mount that can hang only for a
    /// moment, after which they are left behind.
    ~ReadAhead() override;

    std::unique_ptr<Listing> next() override { return core_->next(); }

    /// The most descriptors for folders that were open at once.
    std::size_t mostOpen() const { return core_->mostOpen(); }

  private:
    std::shared_ptr<ReadAheadCore> core_;
};

}  // namespace hl
