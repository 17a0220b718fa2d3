#include "output/report_formats.h"

#include <algorithm>
#include <utility>

#include "base/text.h"
#include "output/csv_writer.h"
#include "output/text_writer.h"

namespace hl {

namespace {

template <class Writer>
std::unique_ptr<ReportWriter> make(ReportTable table, const NumberFormat& numbers) {
    return std::make_unique<Writer>(std::move(table), numbers);
}

constexpr ReportFormat kFormats[] = {{"txt", "TXT", kDelimiterTab, false, make<TextWriter>},
                                     {"csv", "CSV", kDelimiterSemicolon, true, make<CsvWriter>}};

}  // namespace

std::string formatHelp(const Texts& texts) {
    return texts.TL(9613, "txt, csv, jsonl, ncdu oder scan, wie auch immer der Name endet");
}

std::string formatByNameHelp(const Texts& texts) {
    return texts.TL(9008, "Nach der Endung: .txt .jsonl .ncdu.json .hlscan, sonst CSV; -: Standardausgabe");
}

std::string unknownFormatText(const Texts& texts, const std::string& argument) {
    return texts.TL(9614,
                    "Unbekanntes Format %1. Es gibt --format=txt, --format=csv, --format=jsonl, "
                    "--format=ncdu und --format=scan.",
                    {argument});
}

std::span<const ReportFormat> reportFormats() {
    return kFormats;
}

std::vector<std::string_view> formatNames() {
    std::vector<std::string_view> names;
    for (const ReportFormat& format : kFormats) names.push_back(format.name);
    return names;
}

const ReportFormat* formatNamed(std::string_view name) {
    const auto* found = std::ranges::find(kFormats, name, &ReportFormat::name);
    return found == std::end(kFormats) ? nullptr : found;
}

const ReportFormat& formatOfFile(std::string_view path) {
    const std::string lower = lowerCase(path);
    for (const ReportFormat& format : kFormats)
        if (lower.ends_with("." + std::string(format.name))) return format;
    return kFormats[kFormatCsv];
}

}  // namespace hl
