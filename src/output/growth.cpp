#include "output/growth.h"

#include <algorithm>

#include "base/json_text.h"
#include "base/text.h"
#include "output/report_writer.h"

namespace hl {

namespace {

std::string pathOf(const std::string& source, const FolderList& list, std::uint32_t place) {
    const std::string below = list.path(place);
    if (below.empty()) return source;
    return source + (source.ends_with('/') ? "" : "/") + below;
}

std::string quoted(std::string_view text) {
    return '"' + replaceAll(decodable(text), "\"", "\"\"") + '"';
}

void appendCsv(std::string& out, const GrowthRow& row) {
    out.append(quoted(row.path)).append(",\"").append(row.state).append("\",");
    out.append(std::to_string(row.before)).append(",").append(std::to_string(row.now)).append(",");
    out.append(std::to_string(row.change())).append(",").append(quoted(row.was)).append(kLineEnd);
}

std::string padded(const std::string& number) {
    constexpr std::size_t kWidth = 20;
    return std::string(kWidth - std::min(kWidth, number.size()), ' ') + number;
}

void appendText(std::string& out, const GrowthRow& row) {
    out.append(padded(std::to_string(row.change()))).append(padded(std::to_string(row.before)));
    out.append(padded(std::to_string(row.now))).append("  ").append(row.state);
    out.append(9 - row.state.size(), ' ').append(visible(row.path));
    if (!row.was.empty()) out.append(" (").append(visible(row.was)).append(")");
    out.append(kLineEnd);
}

void appendJson(std::string& out, const GrowthRow& row, bool isSource, bool complete) {
    out.append(isSource ? "{\"k\":\"t\"," : "{\"k\":\"g\",");
    appendJsonPath(out, "path", row.path);
    if (!isSource) out.append(",\"state\":\"").append(row.state).append("\"");
    if (!row.was.empty()) appendJsonPath(out += ',', "was", row.was);
    out.append(",\"before\":").append(std::to_string(row.before));
    out.append(",\"now\":").append(std::to_string(row.now));
    out.append(",\"change\":").append(std::to_string(row.change()));
    if (isSource) out.append(",\"complete\":").append(complete ? "true" : "false");
    out += "}\n";
}

}  // namespace

GrowthFormat growthFormatOf(std::string_view format, std::string_view file) {
    const std::string name = lowerCase(file);
    const auto is = [&](std::string_view each) {
        return format.empty() ? name.ends_with("." + std::string(each)) : format == each;
    };
    if (is("jsonl")) return GrowthFormat::kJsonLines;
    return is("txt") ? GrowthFormat::kText : GrowthFormat::kCsv;
}

std::vector<GrowthRow> growthRows(const ScanChanges& changes, const FolderList& before,
                                  const FolderList& after, const std::string& source) {
    std::vector<GrowthRow> rows = {
        {.state = "source", .path = source, .was = {}, .before = changes.was.bytes, .now = changes.is.bytes}};
    for (const FolderChange& change : changes.folders) {
        if (change.bytes() <= 0 || change.kind == FolderChange::Kind::kGone) continue;
        GrowthRow& row = rows.emplace_back();
        const bool renamed = change.kind == FolderChange::Kind::kRenamed;
        row.state = renamed ? "renamed" : change.kind == FolderChange::Kind::kNew ? "new" : "grown";
        row.path = pathOf(source, after, change.after);
        if (renamed) row.was = pathOf(source, before, change.before);
        row.before = change.was.bytes;
        row.now = change.is.bytes;
    }
    std::sort(rows.begin() + 1, rows.end(), [](const GrowthRow& a, const GrowthRow& b) {
        return a.change() != b.change() ? a.change() > b.change() : a.path < b.path;
    });
    return rows;
}

// In JSON the end of the source comes last, so that a file without it is known to be a part.
std::string growthText(const std::vector<GrowthRow>& rows, GrowthFormat format, bool complete) {
    std::string out;
    if (format == GrowthFormat::kJsonLines) {
        for (std::size_t i = 1; i < rows.size(); ++i) appendJson(out, rows[i], false, complete);
        appendJson(out, rows.front(), true, complete);
        return out;
    }
    if (format == GrowthFormat::kCsv)
        out.append(
               "\"Path\",\"State\",\"Before (Bytes)\",\"Now (Bytes)\",\"Change (Bytes)\",\"Earlier path\"")
            .append(kLineEnd);
    else
        out.append(padded("Change"))
            .append(padded("Before"))
            .append(padded("Now"))
            .append("  State    Path")
            .append(kLineEnd);
    for (const GrowthRow& row : rows)
        format == GrowthFormat::kCsv ? appendCsv(out, row) : appendText(out, row);
    return out;
}

}  // namespace hl
