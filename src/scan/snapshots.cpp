#include "scan/snapshots.h"

#include <algorithm>
#include <utility>

#include "base/text.h"
#include "scan/left_out.h"
#include "scan/not_read.h"
#include "scan/on_disk.h"
#include "scan/records.h"
#include "scan/report_changes.h"
#include "scan/rollup.h"
#include "scan/walker.h"

namespace hl {

namespace {

std::string withoutSeparator(std::string_view path) {
    return std::string(path.substr(0, std::max<std::size_t>(1, path.size() - 1)));
}

bool mayBeLeftOut(const Subvolume& subvolume) {
    return subvolume.readOnly && subvolume.isSnapshot();
}

void noteOrigin(const ScanContext& scan, Row row, const std::string& origin) {
    scan.tvwPL.setRowNote(row, scan.texts.TL(9905, "Snapshot von %1", {visible(origin)}));
}

// Tells whether a snapshot outside of `folder` has lost its origin, or has one now. The note of one whose
// origin is met elsewhere now says so.
bool othersMoved(const ScanContext& scan, Row root, std::string_view folder, const SubvolumesMet& before,
                 const SubvolumesMet& now) {
    for (const auto& [id, each] : before.all()) {
        if (!mayBeLeftOut(each.is) || liesIn(each.path, folder, scan.paths)) continue;
        const std::string* was = before.placeOf(each.is.origin);
        const std::string* is = now.placeOf(each.is.origin);
        if ((was == nullptr) != (is == nullptr)) return true;
        if (was == nullptr || *was == *is) continue;
        const Row row = rowOfFolder(scan.tvwPL, root, each.path, scan.paths);
        if (row != kNoRow && isLeftOut(scan.tvwPL, row)) noteOrigin(scan, row, *is);
    }
    return false;
}

}  // namespace

bool isLeftOut(const Grid& report, Row row) {
    return report.picture(row) == kPictureSnapshot || isLeftOutByRule(report, row);
}

SnapshotReading::SnapshotReading(ScanContext& scan, Row row, std::string_view path)
    : scan_(scan),
      top_(row),
      root_(scan.tvwPL.rootOf(row)),
      folder_(withoutSeparator(path)),
      wanted_(scan.options.CountSnapshots == 0),
      met_(scan.state.snapshots.met[std::string(scan.tvwPL.text(root_))]) {
    if (row == root_) {
        met_ = {};
        return;
    }
    before_ = met_;
    met_.forget(folder_, scan.paths);
}

// A source is read even if it is a snapshot; a folder that is read again may have become one. A snapshot that
// was put off is found by its path, so nobody may have put another folder there.
void SnapshotReading::choose(ReadOptions& options) const {
    options.wantSubvolumes = options.putOffSnapshots = wanted_;
    options.onlySubvolume = reading_.is.id;
    options.putOffSource =
        reading_.row == kNoRow && top_ != root_ && scan_.tvwPL.picture(top_) != kPictureLink;
}

void SnapshotReading::entered(const Listing& block, std::string_view path, Row row) {
    if (!block.subvolume) return;
    if (path != reading_.path) met_.add(*block.subvolume, withoutSeparator(path));
    if (block.putOff) putOff_.push_back({row, std::string(path), *block.subvolume});
}

std::optional<SnapshotReading::PutOff> SnapshotReading::next() {
    while (!putOff_.empty()) {
        PutOff next = std::move(putOff_.front());
        putOff_.pop_front();
        if (const std::string* origin = met_.placeOf(next.is.origin)) {
            leaveOut(next, *origin);
        } else if (scan_.state.CancelState != kCancelStop) {
            reading_ = next;
            return next;
        } else {
            Report_MarkIncomplete(scan_, next.row);
            countNotRead(next.row);
            Report_MarkIncomplete(scan_, top_);
            if (SourceSpace* counting = scan_.state.balance.current) counting->complete = false;
        }
    }
    return std::nullopt;
}

void SnapshotReading::leaveOut(const PutOff& snapshot, const std::string& origin) {
    scan_.tvwPL.setPicture(snapshot.row, kPictureSnapshot);
    noteOrigin(scan_, snapshot.row, origin);
}

// The rows above count the folders that were not read, the row's own and those below it.
void SnapshotReading::countNotRead(Row row) {
    Grid& report = scan_.tvwPL;
    const std::uint32_t notRead = foldersNotRead(report, row);
    while (row != top_) {
        row = report.parent(row);
        report.setMark(row, report.mark(row) + notRead);
    }
}

void SnapshotReading::wasRead(const PutOff& snapshot, const ScanTotals& found, ScanTotals& totals) {
    Grid& report = scan_.tvwPL;
    addTotals(totals, found);
    if (snapshot.row != top_) {
        Report_SetTotals(report, snapshot.row, found);
        Report_AddAbove(report, snapshot.row, top_, found);
        Report_SetTotals(report, top_, totals);
    }
    countNotRead(snapshot.row);
    for (Row row = snapshot.row; row != kNoRow; row = report.parent(row)) {
        Report_ChangePercentValue(scan_, row);
        if (row == top_) break;
    }
    if (report.picture(snapshot.row) == kPictureIncomplete) Report_MarkIncomplete(scan_, top_);
}

void SnapshotReading::finish() {
    if (top_ != root_ && othersMoved(scan_, root_, folder_, before_, met_))
        scan_.state.snapshots.moved = true;
}

bool forgetSubvolumes(ScanContext& scan, Row root, std::string_view folder) {
    const auto of = scan.state.snapshots.met.find(scan.tvwPL.text(root));
    if (of == scan.state.snapshots.met.end()) return false;
    const SubvolumesMet before = of->second;
    of->second.forget(folder, scan.paths);
    return othersMoved(scan, root, folder, before, of->second);
}

void renameSubvolumes(ScanContext& scan, std::string_view from, std::string_view to) {
    Grid& report = scan.tvwPL;
    for (Row root = firstLiveSource(scan); root != kNoRow; root = nextLiveSource(scan, root)) {
        const auto of = scan.state.snapshots.met.find(report.text(root));
        if (of == scan.state.snapshots.met.end()) continue;
        of->second.rename(from, to, scan.paths);
        for (const auto& [id, each] : of->second.all()) {
            const std::string* origin = mayBeLeftOut(each.is) ? of->second.placeOf(each.is.origin) : nullptr;
            const Row row = origin == nullptr ? kNoRow : rowOfFolder(report, root, each.path, scan.paths);
            if (row != kNoRow && isLeftOut(report, row)) noteOrigin(scan, row, *origin);
        }
    }
}

}  // namespace hl
