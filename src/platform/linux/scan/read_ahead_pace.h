// How many helpers reading ahead is worth: few while folders come from the cache, more while reads wait for a
// disk or a server, and one that hangs is replaced. A part of ReadAheadCore, under its mutex.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/linux/scan/read_ahead_limits.h"

namespace hl {

class ReadAheadPace {
  public:
    explicit ReadAheadPace(const ReadAheadLimits& limits);

    /// Tells whether it matters to judge() which blocks waited.
    bool judges() const { return limits_.helpersCold > limits_.helpersWarm; }
    /// Takes into account whether a block waited for a disk. Returns true if more helpers are wanted now.
    bool judge(bool waited);
    /// Tells whether reads wait for a disk or a server.
    bool isSlow() const;

    void countBlock() { ++blocksRead_; }
    /// Tells whether helpers are worth their start: a smaller tree is read before one would have started.
    bool isWorthHelpers() const;
    /// The number of helpers that are wanted, including those that were abandoned.
    unsigned wanted() const;
    /// The number of helpers that are wanted and may be had.
    unsigned startable() const;
    /// The system refuses further helpers beyond this number.
    void limitTo(std::size_t helpers) { mostHelpers_ = static_cast<unsigned>(helpers); }
    /// A helper was abandoned, which another may replace.
    void countAbandoned() { ++abandoned_; }
    /// Tells whether all helpers that may be had were abandoned.
    bool noneToBeHad() const { return mostHelpers_ <= abandoned_; }

    /// A folder that can hang was met.
    void meetWhatCanHang() { someCanHang_ = true; }
    bool someCanHang() const { return someCanHang_; }
    /// A read hangs. Where one helper hangs others will, so all are wanted at once, and not one after the
    /// other.
    void wantAll();

  private:
    const ReadAheadLimits& limits_;
    int slowness_ = 0;  ///< 0 if all comes from the cache; else the helpers that the reads are worth.
    unsigned wanted_;
    unsigned mostHelpers_ = ~0U;
    unsigned abandoned_ = 0;
    std::uint64_t blocksRead_ = 0;
    bool someCanHang_ = false;
};

}  // namespace hl
