// Writes CSV for spreadsheets and programs: a header, numbers without separators of thousands, and all but
// counts in double quotes, with no escape for a double quote in a name. Lines end in CR LF; a line break in a
// name stays, within the quotes.
#pragma once

#include <utility>

#include "output/report_writer.h"

namespace hl {

class CsvWriter final : public ReportWriter {
  public:
    CsvWriter(ReportTable table, const NumberFormat& format)
        : ReportWriter(std::move(table), format, Numbers::kBare) {}

    void begin(std::string& out) const override {
        for (std::size_t column = 0; column < table_.columns.size(); ++column) {
            if (column != 0) out += table_.delimiter;
            out += '"';
            out.append(table_.columns[column].title) += '"';
        }
        out.append(kLineEnd);
    }

    void row(std::string& out, const ReportRow& fields) const override {
        for (std::size_t column = 0; column < table_.columns.size(); ++column) {
            const FieldKind kind = table_.columns[column].kind;
            if (column != 0) out += table_.delimiter;
            if (kind != FieldKind::kCount) out += '"';
            if (kind == FieldKind::kText)
                out.append(fields[column].text);
            else
                appendNumber(out, column, fields[column].number);
            if (kind != FieldKind::kCount) out += '"';
        }
        out.append(kLineEnd);
    }

    // An office program takes a text that begins like a formula for one, quoted or not. A ' in front of it
    // makes it a text.
    void appendText(std::string& out, std::string_view text) const override {
        constexpr std::string_view kFormulaStarts = "=+-@\t\r";
        if (table_.formulasAsText && !text.empty() && kFormulaStarts.find(text[0]) != std::string_view::npos)
            out += '\'';
        if (isPlain(text))
            out.append(text);
        else
            out.append(decoded(text));
    }
};

}  // namespace hl
