// What a run has read, how far it is, and how long it took, as the status bar tells it. Ticks are
// milliseconds of the message pump's clock. For the thread of the logic only.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "app/texts.h"
#include "base/number_format.h"
#include "scan/scan_host.h"

namespace hl {

class RunProgress {
  public:
    /// A run begins.
    void begin(std::uint64_t tick);
    /// A source begins. What was read of it counts for nothing until found() tells it.
    void beginSource(std::uint64_t tick);
    /// The source is a whole drive: it holds so many files and folders, and so many bytes. 0 means unknown.
    void expect(std::uint64_t entries, std::uint64_t bytes);
    /// What was found in the source up to now.
    void found(const ScanCounts& counts, std::uint64_t tick);
    /// The source is read to its end.
    void endSource(const ScanCounts& counts);

    /// Returns how much of the source is read, in whole percent. It never falls, and is 99 at most. Nothing
    /// if it is not known how much there is.
    std::optional<int> percent() const;
    /// Returns the seconds that the source probably still takes. Nothing in the first five seconds, and while
    /// the estimate still changes by a third within a second.
    std::optional<std::uint64_t> secondsLeft(std::uint64_t tick) const;

    /// Returns such as "412,330 files, 48.20 GB, 6 s, 43 %".
    std::string running(std::uint64_t tick, const Texts& texts, const NumberFormat& numbers) const;
    /// Returns such as "OK. 155,648 files in 1.0 s".
    std::string ended(std::uint64_t tick, bool stopped, const Texts& texts,
                      const NumberFormat& numbers) const;

  private:
    struct Estimate {
        std::uint64_t tick = 0;
        double left = 0;  ///< In milliseconds.
    };

    double share() const;

    std::uint64_t began_ = 0;
    std::uint64_t sourceBegan_ = 0;
    ScanCounts before_;  ///< The sources of the run that are read already.
    ScanCounts now_;
    std::uint64_t allEntries_ = 0;
    std::uint64_t allBytes_ = 0;
    double largestShare_ = 0;
    std::optional<Estimate> former_, latest_;  ///< At least a second lies between them.
};

}  // namespace hl
