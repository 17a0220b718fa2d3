// A report writer turns the rows of a table into the bytes of one format: the folders of a report, or the
// rows of a list. For one thread.
//
// Whoever writes a file calls begin, then row for each row, then end; each appends to the text that it is
// given. All is UTF-8.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/number_format.h"
#include "output/report_number.h"

namespace hl {

enum class FieldKind {
    kText,   ///< What a writer's appendText appended, once or several times.
    kSize,   ///< Bytes; people read them in the table's unit.
    kCount,  ///< A whole number.
    kValue,  ///< A number as a list holds it, with as many decimals as it has; NaN stands for none.
};

struct TableColumn {
    std::string title;
    FieldKind kind = FieldKind::kText;
    std::size_t width = 0;  ///< The least width in characters, where columns stand below each other.
};

/// What is written, and what the user wants of it.
struct ReportTable {
    std::vector<TableColumn> columns = {};
    bool isTree = false;  ///< The rows are folders, and the first column is their path; else they are a list.
    char delimiter = ',';
    bool forTerminal = false;     ///< Control characters in texts are replaced by visible ones.
    bool formulasAsText = false;  ///< No text may be taken for a formula by an office program.
    int sizeMode = 0;             ///< See base/size_text.h.
    int decimals = 0;             ///< 1 shows decimals of sizes.
};

/// A field of a row. The kind of its column decides which of the two counts.
struct ReportField {
    std::string_view text = {};
    double number = 0;
};

/// One field for each column.
using ReportRow = std::vector<ReportField>;

class ReportWriter {
  public:
    virtual ~ReportWriter() = default;
    ReportWriter(const ReportWriter&) = delete;
    ReportWriter& operator=(const ReportWriter&) = delete;

    virtual void begin(std::string& out) const = 0;
    virtual void row(std::string& out, const ReportRow& fields) const = 0;
    virtual void end(std::string& /*out*/) const {}
    /// Appends a name, a part of a path or another text of the disk as the format shows it. A byte that is no
    /// UTF-8 becomes U+FFFD.
    virtual void appendText(std::string& out, std::string_view text) const = 0;

  protected:
    /// How a format writes numbers.
    enum class Numbers {
        kAligned,  ///< With separators of thousands, and blanks in front up to the column's width.
        kBare,     ///< With neither, so that a spreadsheet can read them.
    };
    /// `format` must outlive the writer.
    ReportWriter(ReportTable table, const NumberFormat& format, Numbers numbers);

    /// Appends the field of a column that is no text.
    void appendNumber(std::string& out, std::size_t column, double number) const {
        if (table_.columns[column].kind == FieldKind::kValue) return appendValue(out, number);
        numbers_[column].append(out, static_cast<std::int64_t>(number));
    }
    /// Returns the text in valid UTF-8, for a terminal also without control characters.
    std::string decoded(std::string_view text) const;
    /// Tells whether the text is what `decoded` makes of it.
    static bool isPlain(std::string_view text);

    const ReportTable table_;

  private:
    void appendValue(std::string& out, double number) const;

    const NumberFormat& format_;
    std::vector<ReportNumber> numbers_;  ///< One for each column.
};

/// Returns how a report writes sizes with neither separators of thousands nor blanks.
ReportNumber FormatFileSizeSave(int sizeMode, int decimals, const NumberFormat& format);

inline constexpr std::string_view kLineEnd = "\r\n";

}  // namespace hl
