// The lines of a report, in its two formats.
//
// TXT: size, files, folders, path, the numbers padded to columns. CSV: path, size, files, folders, texts in
// double quotes, with no escape for a double quote in a name. Lines end in CR LF; all is UTF-8.
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
    bool forTerminal = false;  ///< Names with stand-ins for control characters.
    char delimiter = ',';
    int sizeMode = 0;                     ///< See base/size_text.h.
    int decimals = 0;                     ///< On when 1.
    std::array<std::string, 4> titles;    ///< Size, files, folders, path.
    std::array<std::size_t, 3> widths{};  ///< Least widths of the columns of numbers in TXT, in characters.
};

struct ReportRow {
    SizeValue size;
    std::int64_t files = 0;
    std::int64_t folders = 0;
};

/// How a CSV report writes sizes: with no separators of thousands, so that a spreadsheet can read them.
ReportNumber savedSize(int sizeMode, int decimals, const NumberFormat& numbers);

class ReportLines {
  public:
    /// Titles in TXT are padded to the widths, and widths are raised to the titles. `numbers` must outlive
    /// it.
    ReportLines(ReportFormat format, const NumberFormat& numbers);

    void appendHeader(std::string& out) const;
    /// `path` is made of what appendName gave.
    void appendRow(std::string& out, std::string_view path, const ReportRow& row) const;
    /// A name, or another part of a path, as the report holds it: a byte that is no UTF-8 as U+FFFD, in TXT a
    /// line break too; as messages show it for a terminal.
    void appendName(std::string& out, std::string_view name) const;

  private:
    ReportFormat format_;
    ReportNumber size_;
    ReportNumber files_;
    ReportNumber folders_;
};

}  // namespace hl
