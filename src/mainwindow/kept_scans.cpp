#include "mainwindow/kept_scans.h"

#include <utility>
#include <vector>

#include "app/product.h"
#include "base/date_format.h"
#include "base/path.h"
#include "base/text.h"
#include "mainwindow/main_form.h"
#include "output/scan_output.h"
#include "robustness/api_error_text.h"
#include "robustness/trap.h"
#include "scan/on_disk.h"
#include "scan/saved/open_scan.h"
#include "scan/saved/scan_format.h"

namespace hl {

namespace {

constexpr std::string_view kFolder = "scans";
constexpr std::string_view kEnding = ".hlscan";
constexpr std::string_view kDay = "yyyy-MM-dd";
constexpr std::size_t kKeyDigits = 16;
constexpr std::uint64_t kLeastFree = 100'000'000;  // Bytes.
constexpr std::uint64_t kLeastShare = 100;         // One part of so many must be free.

std::string dayOf(std::int64_t seconds) {
    return formatDate(localTime(seconds), kDay);
}

/// A name is "KEY-DAY.hlscan".
bool isName(std::string_view name) {
    constexpr std::size_t kLength = kKeyDigits + 1 + 10 + kEnding.size();
    return name.size() == kLength && name[kKeyDigits] == '-' && name.ends_with(kEnding);
}

}  // namespace

std::string KeptScans::folder() const {
    return joinPath(form_.own.programFolder, kFolder, form_.services().paths);
}

std::string KeptScans::keyOf(Row source) const {
    const std::string named =
        hostOf(form_.scan, source) + '\n' + std::string(form_.session.tvwPL.text(source));
    return form_.window->desktop.sha256(named).substr(0, kKeyDigits);
}

// --- keeping

void KeptScans::keep(Row source) {
    const Grid& report = form_.session.tvwPL;
    const SourceFacts* facts = form_.session.facts.sourceOf(source);
    if (form_.session.options.KeepScans == 0 || report.level(source) != 0 || facts == nullptr ||
        facts->stopped || isFromFile(form_.scan, source))
        return;
    guarded(form_.services().diagnostics, {.routine = "keepScan"}, [&] {
        const std::string key = keyOf(source);
        const Result<> made = form_.services().files.makePrivateFolder(folder());
        if (!made) {
            problem_ = ApiErrorText(false, made.error());
        } else if (!hasRoom()) {
            problem_ = form_.services().texts.TL(9119, "zu wenig Platz");
        } else {
            const std::string name = key + "-" + dayOf(facts->started) + std::string(kEnding);
            if (write(source, joinPath(folder(), name, form_.services().paths))) removeOld(key, name);
        }
    });
}

bool KeptScans::hasRoom() const {
    DiskSpace* space = form_.services().diskSpace;
    const Result<UsedSpace> used =
        space == nullptr ? Error{.kind = ErrorKind::kUnsuited} : space->used(folder(), nullptr);
    return used && used->free >= kLeastFree && used->free >= used->total / kLeastShare;
}

bool KeptScans::write(Row source, const std::string& path) {
    // A link there would be followed, and another file replaced.
    if (form_.services().files.exists(path) && !isOurs(path))
        return problem_ = form_.services().texts.TL(9030, "kein gespeicherter Scan"), false;
    const auto target = form_.services().files.replace(path);
    if (!target) return problem_ = ApiErrorText(false, target.error()), false;
    const ReportOutcome outcome = writeScan(form_.scan, source, ScanNames::kAll, **target);
    if (outcome.error) problem_ = ApiErrorText(false, *outcome.error);
    return outcome.written;
}

// The new one, `written`, is whole by now and stays. Names of one key are in the order of their days; those
// of days to come, which a wrong clock has made, go first.
void KeptScans::removeOld(const std::string& key, const std::string& written) {
    std::vector<std::string> earlier, later;
    for (const std::string& name : form_.services().files.namesIn(folder()))
        if (isName(name) && name.starts_with(key) && name != written)
            (name < written ? earlier : later).push_back(name);
    later.insert(later.end(), earlier.begin(), earlier.end());
    for (std::size_t i = 0; i + form_.session.options.KeepScans < later.size(); ++i) {
        const std::string path = joinPath(folder(), later[i], form_.services().paths);
        if (!isOurs(path)) continue;
        const Result<> gone = form_.services().files.remove(path);
        if (!gone) form_.services().log.LogDebug("removeOld", {ApiErrorText(true, gone.error())});
    }
}

bool KeptScans::isOurs(const std::string& path) const {
    const auto begin = form_.services().files.beginning(path, kMostHeaderBytes);
    const std::string program = "{\"program\":\"" + std::string(kProductName) + "\"";
    return begin && begin->starts_with(kScanMagic) && begin->substr(kScanMagic.size()).starts_with(program);
}

std::string KeptScans::takeProblem() {
    return std::exchange(problem_, {});
}

// --- what was kept

std::string KeptScans::lastBefore(Row source) const {
    const SourceFacts* facts = form_.session.facts.sourceOf(source);
    if (facts == nullptr) return {};
    const std::string key = keyOf(source);
    const std::string today = key + "-" + dayOf(facts->started);
    std::string last;
    for (const std::string& name : form_.services().files.namesIn(folder()))
        if (isName(name) && name.starts_with(key) && name < today) last = name;
    return last.empty() ? last : joinPath(folder(), last, form_.services().paths);
}

std::size_t KeptScans::removeAll() {
    std::size_t count = 0;
    for (const std::string& name : form_.services().files.namesIn(folder())) {
        const std::string path = joinPath(folder(), name, form_.services().paths);
        if (isName(name) && isOurs(path) && form_.services().files.remove(path)) ++count;
    }
    return count;
}

}  // namespace hl
