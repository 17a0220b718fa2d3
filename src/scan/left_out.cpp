#include "scan/left_out.h"

#include <algorithm>
#include <utility>

#include "base/number_format.h"
#include "base/text.h"
#include "scan/records.h"
#include "scan/rollup.h"
#include "scan/statistics.h"

namespace hl {

namespace {

std::string_view withoutSeparatorAtEnd(std::string_view path, char separator) {
    while (path.size() > 1 && path.ends_with(separator)) path.remove_suffix(1);
    return path;
}

std::string sourceOf(const ScanContext& scan, Row row) {
    const Grid& report = scan.tvwPL;
    return std::string(withoutSeparatorAtEnd(report.text(report.rootOf(row)), scan.paths.separator));
}

// Returns the path below the source; empty for the source itself.
std::string pathInSource(const ScanContext& scan, Row row, const std::string& source) {
    if (scan.tvwPL.level(row) == 0) return {};
    const std::string path = Report_GetFullpathOfNode(scan.tvwPL, row, false, scan.paths);
    return path.substr(source.size() + (source.ends_with(scan.paths.separator) ? 0 : 1));
}

std::shared_ptr<Rules> rulesOfSource(const ScanContext& scan, const std::string& source) {
    auto rules = std::make_shared<Rules>();
    const std::vector<std::string>* const both[] = {&scan.options.Exclude, &scan.state.leaving.rules};
    for (const auto* lines : both)
        for (const std::string& line : *lines)
            if (RuleReading reading = readRule(line); reading.rule) rules->add(std::move(*reading.rule));
    if (scan.state.leaving.caches) rules->leaveCachesOut();
    const auto all = scan.state.leaving.readAllTheSame.find(source);
    if (all != scan.state.leaving.readAllTheSame.end())
        for (const std::string& path : all->second) rules->takeBack(path);
    return rules;
}

}  // namespace

// --- the rules

bool leavesOut(const ScanContext& scan) {
    return !scan.options.Exclude.empty() || !scan.state.leaving.rules.empty() || scan.state.leaving.caches;
}

RowRules rulesOfRow(const ScanContext& scan, Row row) {
    if (!leavesOut(scan)) return {};
    const std::string source = sourceOf(scan, row);
    const std::shared_ptr<Rules> rules = rulesOfSource(scan, source);
    if (rules->isEmpty()) return {};
    RowRules result{.rules = rules};
    if (const std::string path = pathInSource(scan, row, source); !path.empty())
        result.own = rules->startAt(path, true);
    // A link that has a row is read if the user asks for it.
    if (scan.tvwPL.picture(row) == kPictureLink) result.own = LeaveOut::kNone;
    return result;
}

std::shared_ptr<const Rules> rulesOfFolder(const ScanContext& scan, const std::string& source,
                                           const std::string& folder) {
    if (!leavesOut(scan)) return nullptr;
    const char separator = scan.paths.separator;
    auto rules = rulesOfSource(scan, std::string(withoutSeparatorAtEnd(source, separator)));
    if (rules->isEmpty()) return nullptr;
    if (folder.size() > source.size())
        rules->startAt(withoutSeparatorAtEnd(std::string_view(folder).substr(source.size()), separator),
                       true);
    return rules;
}

void readAllTheSame(ScanContext& scan, Row row) {
    const std::string source = sourceOf(scan, row);
    scan.state.leaving.readAllTheSame[source].insert(pathInSource(scan, row, source));
}

void forgetReadAllTheSame(ScanState& state, std::string_view source) {
    const auto all = state.leaving.readAllTheSame.find(source);
    if (all != state.leaving.readAllTheSame.end()) state.leaving.readAllTheSame.erase(all);
}

// --- rows

void Report_MarkLeftOut(ScanContext& scan, Row row, const Rules& rules, std::int32_t rule) {
    const std::string text = rule == LeaveOut::kCacheTag ? "CACHEDIR.TAG" : visible(rules.text(rule));
    scan.tvwPL.setPicture(row, kPictureLeftOut);
    scan.tvwPL.setRowNote(row, scan.texts.TL(9925, "ausgelassen: %1", {text}));
}

bool Report_LeaveOut(ScanContext& scan, Row row, const RowRules& rules) {
    if (rules.own == LeaveOut::kNone) return false;
    Report_MarkLeftOut(scan, row, *rules.rules, rules.own);
    if (scan.facts != nullptr) {
        scan.facts->begin(row, scan.facts->identity(row));
        scan.facts->rare(row).rule = rules.own;
    }
    if (scan.statistics == nullptr) return true;
    scan.statistics->forget(row);
    scan.statistics->orderChanged();
    return true;
}

bool isLeftOutByRule(const Grid& report, Row row) {
    return report.picture(row) == kPictureLeftOut;
}

// --- counts

Unshown leftOutWith(const Grid& report, Row row) {
    Unshown sum = report.unshown(row);
    if (isLeftOutByRule(report, row)) ++sum.folders;
    return sum;
}

Unshown leftOutOf(const Grid& report) {
    Unshown sum;
    for (Row root = report.firstRoot(); root != kNoRow; root = report.nextSibling(root)) {
        sum.folders += report.unshown(root).folders;
        sum.files += report.unshown(root).files;
    }
    return sum;
}

std::uint32_t ownFilesLeftOut(const Grid& report, Row row) {
    std::uint32_t files = report.unshown(row).files;
    for (Row child = report.firstChild(row); child != kNoRow && files > 0; child = report.nextSibling(child))
        if (report.number(child, kIsFolder) == 1) files -= report.unshown(child).files;
    return files;
}

void changeLeftOut(Grid& report, Row row, Unshown before, Unshown now) {
    if (before == now) return;
    Unshown sum = report.unshown(row);
    sum.folders += now.folders - before.folders;
    sum.files += now.files - before.files;
    report.setUnshown(row, sum);
}

// --- texts

std::string ruleProblemText(const Texts& texts, const std::string& rule, RuleProblem problem) {
    const std::string why = problem == RuleProblem::kOpenSet ? texts.TL(9931, "zu einem [ fehlt das ]")
                            : problem == RuleProblem::kUnknownClass
                                ? texts.TL(9932, "zwischen [: und :] steht keine Klasse")
                                : texts.TL(9933, "hinter dem letzten \\ steht nichts");
    return texts.TL(9930, "Die Regel %1 kann nicht gelesen werden: %2.", {visible(rule), why});
}

std::string leftOutText(const Texts& texts, const NumberFormat& numbers, Unshown leftOut) {
    if (leftOut == Unshown()) return {};
    return texts.TL(9926, "durch Regeln ausgelassen: %1 Ordner, %2 Dateien",
                    {formatCount(leftOut.folders, numbers), formatCount(leftOut.files, numbers)});
}

std::string titleWithLeftOut(const Services& services, const std::string& title, Unshown leftOut) {
    const std::string text = leftOutText(services.texts, services.numbers, leftOut);
    return text.empty() || title.empty() ? title : title + " (" + text + ")";
}

}  // namespace hl
