#include "output/report_writer.h"

#include <algorithm>
#include <cmath>

#include "app/simple_value.h"
#include "base/size_text.h"
#include "base/text.h"

namespace hl {

namespace {

// Bytes never show decimals.
Picture sizePicture(bool grouped, int sizeMode, int decimals) {
    return {.grouped = grouped, .decimals = decimals == 1 && sizeUnit(sizeMode).decimals ? 2 : 0};
}

}  // namespace

ReportNumber FormatFileSizeSave(int sizeMode, int decimals, const NumberFormat& format) {
    return {sizeUnit(sizeMode).divisor, sizePicture(false, sizeMode, decimals), format};
}

ReportWriter::ReportWriter(ReportTable table, const NumberFormat& format, Numbers numbers)
    : table_(std::move(table)), format_(format) {
    const bool aligned = numbers == Numbers::kAligned;
    for (const TableColumn& column : table_.columns) {
        const std::size_t width = aligned ? column.width : 0;
        if (column.kind == FieldKind::kSize)
            numbers_.emplace_back(sizeUnit(table_.sizeMode).divisor,
                                  sizePicture(aligned, table_.sizeMode, table_.decimals), format, width);
        else
            numbers_.emplace_back(1, Picture{.grouped = aligned}, format, width);
    }
}

void ReportWriter::appendValue(std::string& out, double number) const {
    if (!std::isnan(number)) out.append(replaceAll(SimpleValue(number).text(), ".", format_.decimal));
}

std::string ReportWriter::decoded(std::string_view text) const {
    return table_.forTerminal ? visible(text) : decodable(text);
}

bool ReportWriter::isPlain(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

}  // namespace hl
