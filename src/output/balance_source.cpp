#include "output/balance_source.h"

#include <set>

#include "base/path.h"
#include "scan/not_read.h"
#include "scan/records.h"
#include "scan/report_changes.h"
#include "scan/rollup.h"
#include "scan/snapshots.h"

namespace hl {

namespace {

std::uint32_t snapshotsLeftOut(const ScanContext& scan, Row source) {
    std::uint32_t count = 0;
    const auto met = scan.state.snapshots.met.find(scan.tvwPL.text(source));
    if (met == scan.state.snapshots.met.end()) return 0;
    for (const auto& [id, subvolume] : met->second.all()) {
        const Row row = rowOfFolder(scan.tvwPL, source, subvolume.path, scan.paths);
        if (row != kNoRow && isLeftOut(scan.tvwPL, row)) ++count;
    }
    return count;
}

BalanceBesides besidesOf(const ScanContext& scan, Row source) {
    double trash = 0;
    for (const Row row : trashRows(scan, source)) trash += scan.tvwPL.number(row, kDisk);
    const Unshown leftOut = scan.tvwPL.unshown(source);
    return {.trash = static_cast<std::uint64_t>(trash),
            .notRead = foldersNotRead(scan.tvwPL, source),
            .snapshots = snapshotsLeftOut(scan, source),
            .leftOutFolders = leftOut.folders,
            .leftOutFiles = leftOut.files};
}

/// Notes whether the wait was given up, which the answer does not tell.
class NotedWait final : public WaitCallback {
  public:
    explicit NotedWait(WaitCallback* wait) : wait_(wait) {}
    bool goOnWaiting() override {
        gaveUp_ = gaveUp_ || (wait_ != nullptr && !wait_->goOnWaiting());
        return !gaveUp_;
    }
    bool gaveUp() const { return gaveUp_; }

  private:
    WaitCallback* wait_;
    bool gaveUp_ = false;
};

}  // namespace

std::vector<Row> trashRows(const ScanContext& scan, Row source) {
    const Grid& report = scan.tvwPL;
    const std::string top = Report_GetFullpathOfNode(report, source, true, scan.paths);
    std::vector<std::string> homes = {scan.bases.home, top + "root"};
    std::vector<Row> rows;
    const auto addHomes = [&](Row above) {
        for (Row row = report.firstChild(above); row != kNoRow; row = report.nextSibling(row))
            homes.push_back(Report_GetFullpathOfNode(report, row, false, scan.paths));
    };
    for (Row row = report.firstChild(source); row != kNoRow; row = report.nextSibling(row)) {
        const std::string_view name = report.text(row);
        if (name == ".Trash" || name.starts_with(".Trash-")) rows.push_back(row);
        if (name == "home") addHomes(row);
    }
    addHomes(source);
    std::set<Row> seen;
    for (const std::string& home : homes) {
        if (!home.starts_with(top)) continue;
        const Row row = rowOfFolder(report, source, home + "/.local/share/Trash", scan.paths);
        if (row != kNoRow && seen.insert(row).second) rows.push_back(row);
    }
    return rows;
}

std::optional<SourceBalance> balanceOfSource(const ScanContext& scan, Row source, WaitCallback* wait) {
    const auto found = scan.state.balance.sources.find(scan.tvwPL.text(source));
    if (found == scan.state.balance.sources.end()) return std::nullopt;
    const SourceSpace space = found->second;  // Messages run, and the next scan may begin.
    SourceBalance balance{.source = Report_GetFullpathOfNode(scan.tvwPL, source, false, scan.paths),
                          .state = balanceState(space),
                          .part = space.before ? space.before->part : DiskPart::kPlain,
                          .ended = space.ended,
                          .changed = space.changed};
    if (balance.state != BalanceState::kThere) return balance;
    const BalanceBesides besides = besidesOf(scan, source);
    NotedWait noted(wait);
    std::optional<SpaceFacts> facts;
    if (scan.diskSpace != nullptr) facts = scan.diskSpace->facts(balance.source, &noted);
    if (noted.gaveUp()) return std::nullopt;
    balance.entries = balanceOf(space, facts, besides);
    return balance;
}

}  // namespace hl
