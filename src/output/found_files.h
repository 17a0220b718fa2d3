// The lines of files that were found, for programs: the same in every language. CSV has a header, texts in
// double quotes with a double quote written twice, numbers bare, and lines that end in CR LF. The other
// format is the bare paths, each with a NUL behind it. For the thread of the logic only.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/owner_names.h"
#include "scan/file_columns.h"

namespace hl {

enum class FoundFormat : std::uint8_t { kCsv, kNul };

/// Returns the format with this name of kFindFormats (app/command_line.h); CSV for an empty one.
FoundFormat foundFormatNamed(std::string_view name);

class FoundLines {
  public:
    /// `owners` may be null. With `forTerminal`, CSV has no control characters.
    FoundLines(FoundFormat format, OwnerNames* owners, bool forTerminal)
        : format_(format), owners_(owners), forTerminal_(forTerminal) {}

    void appendHeader(std::string& out) const;
    /// REQUIRES: for CSV, the file's details are known.
    void append(std::string& out, const FoundFile& file) const;

  private:
    void appendText(std::string& out, std::string_view text) const;

    const FoundFormat format_;
    OwnerNames* const owners_;
    const bool forTerminal_;
};

/// Returns a moment in ISO 8601, in UTC: "2026-11-27T04:00:00Z".
std::string isoTime(std::int64_t secondsSinceEpoch);

}  // namespace hl
