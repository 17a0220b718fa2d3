// The lines of a report, in its two formats. For one thread.
//
// TXT has size, files, folders and path, with the numbers padded to columns. CSV has path, size, files and
// folders, with texts in double quotes and no escape for a double quote in a name. Lines end in CR LF; all is
// UTF-8.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/number_format.h"
#include "base/size_value.h"
#include "output/report_number.h"

namespace hl {

struct ReportFormat {
    bool IsTextFormat = false;
    bool forTerminal = false;  ///< Control characters in names are replaced by visible ones.
    char delimiter = ',';
    int sizeMode = 0;                     ///< See base/size_text.h.
    int decimals = 0;                     ///< 1 shows decimals.
    std::array<std::string, 4> titles;    ///< The titles for size, files, folders and path.
    std::array<std::size_t, 3> widths{};  ///< The least widths of TXT's columns of numbers, in characters.
};

struct ReportRow {
    SizeValue size;
    std::int64_t files = 0;
    std::int64_t folders = 0;
};

/// Returns how a CSV report writes sizes: without separators of thousands, so that a spreadsheet can read
/// them.
ReportNumber savedSize(int sizeMode, int decimals, const NumberFormat& numbers);

class ReportLines {
  public:
    /// In TXT, titles are padded to the widths, and widths are raised to those of the titles. `numbers` must
    /// outlive it.
    ReportLines(ReportFormat format, const NumberFormat& numbers);

    void appendHeader(std::string& out) const;
    /// `path` consists of what appendName appended.
    void appendRow(std::string& out, std::string_view path, const ReportRow& row) const;
    /// Appends a name, or another part of a path, as the report shows it: a byte that is no UTF-8 becomes
    /// U+FFFD, and so does a line break in TXT. For a terminal, control characters are made visible as in
    /// messages.
    void appendName(std::string& out, std::string_view name) const;

  private:
    ReportFormat format_;
    ReportNumber size_;
    ReportNumber files_;
    ReportNumber folders_;
};

}  // namespace hl
