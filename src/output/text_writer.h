// Writes TXT, a table for people: numbers are padded to columns, and each row is one line whatever a name
// holds. A report's path stands last, below a header; a list has no header. Lines end in CR LF.
#pragma once

#include <algorithm>
#include <utility>

#include "base/text.h"
#include "output/report_writer.h"

namespace hl {

class TextWriter final : public ReportWriter {
  public:
    TextWriter(ReportTable table, const NumberFormat& format)
        : ReportWriter(fitted(std::move(table)), format, Numbers::kAligned) {
        const std::size_t first = table_.isTree ? 1 : 0;
        for (std::size_t i = first; i < table_.columns.size(); ++i) order_.push_back(i);
        if (table_.isTree) order_.push_back(0);
    }

    void begin(std::string& out) const override {
        if (!table_.isTree) return;
        for (const std::size_t column : order_) {
            if (column != order_.front()) out += table_.delimiter;
            out.append(table_.columns[column].title);
        }
        out.append(kLineEnd);
    }

    void row(std::string& out, const ReportRow& fields) const override {
        for (const std::size_t column : order_) {
            if (column != order_.front()) out += table_.delimiter;
            if (table_.columns[column].kind == FieldKind::kText)
                appendPadded(out, column, fields[column].text);
            else
                appendNumber(out, column, fields[column].number);
        }
        out.append(kLineEnd);
    }

    void appendText(std::string& out, std::string_view text) const override {
        constexpr std::string_view kReplacement = "\xEF\xBF\xBD";  // U+FFFD
        if (isPlain(text))
            out.append(text);
        else
            out.append(replaceAll(replaceAll(decoded(text), "\r", kReplacement), "\n", kReplacement));
    }

  private:
    void appendPadded(std::string& out, std::size_t column, std::string_view text) const {
        out.append(text);
        if (!table_.isTree || column == order_.back()) return;
        out.append(
            table_.columns[column].width - std::min(table_.columns[column].width, characterCount(text)), ' ');
    }
    // Makes title and numbers of a column equally wide. Nothing stands behind the path, so it needs no width.
    static ReportTable fitted(ReportTable table) {
        for (std::size_t i = 1; i < table.columns.size(); ++i) {
            TableColumn& column = table.columns[i];
            const std::size_t length = characterCount(column.title);
            if (table.isTree) column.width = std::max(column.width, length);
            if (table.isTree) column.title.append(column.width - length, ' ');
        }
        return table;
    }

    std::vector<std::size_t> order_;  ///< The columns from left to right.
};

}  // namespace hl
