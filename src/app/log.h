// Writes the three log files: scans and deletions for the user, error reports, and technical failures that
// the user is not told of.
//
// For each entry the file is opened, written and closed, so that a crash loses only the entry being written.
// The files grow until somebody deletes them. A file that cannot be written is ignored. For the thread of the
// logic.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "app/simple_value.h"
#include "base/date_format.h"
#include "platform/files.h"

namespace hl {

class Log {
  public:
    using Clock = std::function<LocalTime()>;

    /// The files are written in `folder`. `files` must outlive the log.
    Log(Files& files, std::string folder, DateFormat dates, Clock clock = now)
        : files_(files), folder_(std::move(folder)), dates_(std::move(dates)), clock_(std::move(clock)) {}

    /// Writes one line. Control characters in the text, line breaks included, are written as visible signs,
    /// because a terminal that shows the log would obey them.
    void LogProtokoll(std::string_view text) noexcept;
    /// Writes a text of any number of lines: with `stamp` the time precedes it, with `blankLine` an empty
    /// line follows it.
    void LogError(std::string_view text, bool blankLine, bool stamp) noexcept;
    /// Writes one line: the text, then each detail behind a comma.
    void LogDebug(std::string_view text, const std::vector<SimpleValue>& details = {}) noexcept;

    /// Returns the local time.
    static LocalTime now();

  private:
    void add(std::string_view file, std::string_view entry, bool stamp);

    Files& files_;
    std::string folder_;
    DateFormat dates_;
    Clock clock_;
};

}  // namespace hl
