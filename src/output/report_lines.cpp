#include "output/report_lines.h"

#include <algorithm>

#include "base/size_text.h"
#include "base/text.h"

namespace hl {

namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kReplacement = "\xEF\xBF\xBD";  // U+FFFD

ReportFormat fitted(ReportFormat format) {
    if (!format.IsTextFormat) return format;
    for (std::size_t i = 0; i < format.widths.size(); ++i) {
        const std::size_t length = characterCount(format.titles[i]);
        format.widths[i] = std::max(format.widths[i], length);
        format.titles[i].append(format.widths[i] - length, ' ');
    }
    return format;
}

// Bytes never show decimals.
Picture sizePicture(bool grouped, int sizeMode, int decimals) {
    return {.grouped = grouped, .decimals = decimals == 1 && sizeMode != kModeBytes ? 2 : 0};
}

ReportNumber sizeColumn(const ReportFormat& format, const NumberFormat& numbers) {
    if (!format.IsTextFormat) return savedSize(format.sizeMode, format.decimals, numbers);
    return {divisorOf(format.sizeMode), sizePicture(true, format.sizeMode, format.decimals), numbers,
            format.widths[0]};
}

ReportNumber countColumn(const ReportFormat& format, const NumberFormat& numbers, std::size_t column) {
    if (!format.IsTextFormat) return {1, {.grouped = false}, numbers};
    return {1, {.grouped = true}, numbers, format.widths[column]};
}

bool isPlain(std::string_view name) {
    return std::all_of(name.begin(), name.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

}  // namespace

ReportNumber savedSize(int sizeMode, int decimals, const NumberFormat& numbers) {
    return {divisorOf(sizeMode), sizePicture(false, sizeMode, decimals), numbers};
}

ReportLines::ReportLines(ReportFormat format, const NumberFormat& numbers)
    : format_(fitted(std::move(format))),
      size_(sizeColumn(format_, numbers)),
      files_(countColumn(format_, numbers, 1)),
      folders_(countColumn(format_, numbers, 2)) {}

void ReportLines::appendHeader(std::string& out) const {
    const auto& [size, files, folders, path] = format_.titles;
    const auto order = format_.IsTextFormat ? std::array{&size, &files, &folders, &path}
                                            : std::array{&path, &size, &files, &folders};
    const std::string_view quote = format_.IsTextFormat ? "" : "\"";
    for (const std::string* title : order) {
        if (title != order.front()) out += format_.delimiter;
        out.append(quote).append(*title).append(quote);
    }
    out.append(kLineEnd);
}

void ReportLines::appendRow(std::string& out, std::string_view path, const ReportRow& row) const {
    if (!format_.IsTextFormat) {
        out += '"';
        out.append(path).append("\"");
        out += format_.delimiter;
        out += '"';
    }
    size_.append(out, row.size.bytes());
    if (!format_.IsTextFormat) out += '"';
    out += format_.delimiter;
    files_.append(out, row.files);
    out += format_.delimiter;
    folders_.append(out, row.folders);
    if (format_.IsTextFormat) {
        out += format_.delimiter;
        out.append(path);
    }
    out.append(kLineEnd);
}

void ReportLines::appendName(std::string& out, std::string_view name) const {
    if (isPlain(name)) {
        out.append(name);
        return;
    }
    std::string text = format_.forTerminal ? visible(name) : decodable(name);
    if (format_.IsTextFormat) text = replaceAll(replaceAll(text, "\r", kReplacement), "\n", kReplacement);
    out.append(text);
}

}  // namespace hl
