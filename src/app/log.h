// The three log files: the protocol of scans and deletions for the user, the error reports, and technical
// failures that the user is not told.
//
// Every entry is one opening, writing and closing, so that a crash costs no more than the entry in work. The
// files grow until somebody deletes them. A file that cannot be written disturbs nobody. For the thread of
// the logic.
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

    /// The files lie in `folder`. `files` must outlive the log.
    Log(Files& files, std::string folder, DateFormat dates, Clock clock = now)
        : files_(files), folder_(std::move(folder)), dates_(std::move(dates)), clock_(std::move(clock)) {}

    /// One line. Control characters within the text, a line break for one, are written as visible signs: a
    /// terminal that the log is shown on would obey them.
    void LogProtokoll(std::string_view text) noexcept;
    /// A text of any number of lines, with the time in front of it and an empty line behind it where asked
    /// for.
    void LogError(std::string_view text, bool blankLine, bool stamp) noexcept;
    /// One line: the text, then each detail behind a comma.
    void LogDebug(std::string_view text, const std::vector<SimpleValue>& details = {}) noexcept;

    /// The local time.
    static LocalTime now();

  private:
    void add(std::string_view file, std::string_view entry, bool stamp);

    Files& files_;
    std::string folder_;
    DateFormat dates_;
    Clock clock_;
};

}  // namespace hl
