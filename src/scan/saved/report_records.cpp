#include "scan/saved/report_records.h"

#include <algorithm>
#include <tuple>

#include "scan/not_read.h"
#include "scan/on_disk.h"
#include "scan/records.h"

namespace hl {

namespace {

std::uint64_t wholeOf(const Grid& report, Row row, CellId cell) {
    return static_cast<std::uint64_t>(report.number(row, cell));
}

FileSums sumsOf(const Grid& report, Row row) {
    return {wholeOf(report, row, kFiles), wholeOf(report, row, kSize),
            wholeOf(report, row, kDisk) / kBlockBytes};
}

bool isSmaller(const FileSums& a, const FileSums& b) {
    return a.files < b.files || a.bytes < b.bytes || a.blocks < b.blocks;
}

bool isLargerFile(const LargestRecord& a, const LargestRecord& b) {
    return std::tie(b.bytes, a.record, a.name) < std::tie(a.bytes, b.record, b.name);
}

FileSums without(const FileSums& whole, const FileSums& part) {
    if (isSmaller(whole, part)) return {};
    return {whole.files - part.files, whole.bytes - part.bytes, whole.blocks - part.blocks};
}

}  // namespace

ReportRecords::ReportRecords(const ScanContext& scan, Row source, SavedScan* tables, RecordOrder order)
    : scan_(scan), tables_(tables), order_(order), rows_{source}, levels_{{0, 1}} {
    if (tables == nullptr) return;
    if (scan.largest != nullptr && tables->largest.empty()) largest_ = scan.largest->of(scan.tvwPL, source);
    if (largest_ != nullptr) tables->largest.reserve(largest_->count());
    for (std::uint32_t i = 0; i < tables->owners.size(); ++i) owners_.emplace(tables->owners[i].first, i);
    if (scan.statistics == nullptr) return;
    EndingNumbers& numbers = scan.statistics->endings();
    for (std::uint32_t i = 0; i < tables->endings.size(); ++i)
        endings_.emplace(numbers.ofEnding(tables->endings[i]), kFirstEnding + i);
}

bool ReportRecords::next(ScanRecord& record) {
    while (!levels_.empty() && levels_.back().next == levels_.back().end) {
        levels_.pop_back();
        rows_.resize(levels_.empty() ? 0 : levels_.back().end);
    }
    if (levels_.empty()) {
        if (largest_ != nullptr) std::ranges::sort(tables_->largest, isLargerFile);
        return false;
    }
    row_ = rows_[levels_.back().next++];
    level_ = levels_.size() - 1;
    record.name = level_ == 0 ? std::string_view() : scan_.tvwPL.text(row_);
    fillFlags(record);
    openChildren(row_, record);
    fillCells(record);
    if (largest_ != nullptr) addLargest();
    ++count_;
    return true;
}

void ReportRecords::openChildren(Row row, ScanRecord& record) {
    const Grid& report = scan_.tvwPL;
    const std::size_t first = rows_.size();
    Row filesRow = kNoRow;
    for (Row child = report.firstChild(row); child != kNoRow; child = report.nextSibling(child)) {
        if (isGone(report, child)) continue;
        if (report.number(child, kIsFolder) == 1)
            rows_.push_back(child);
        else
            filesRow = child;
    }
    const auto before = [&](Row a, Row b) {
        if (order_ == RecordOrder::kBySize) {
            const double left = report.number(a, kSize), right = report.number(b, kSize);
            if (left != right) return left > right;
        }
        return report.text(a) < report.text(b);
    };
    const auto from = rows_.begin() + static_cast<std::ptrdiff_t>(first);
    if (!std::is_sorted(from, rows_.end(), before)) std::sort(from, rows_.end(), before);
    record.children = rows_.size() - first;
    levels_.push_back({first, rows_.size()});
    fillOwn(record, first);
    const Row own = rows_.size() > first || filesRow != kNoRow ? filesRow : row;
    const bool none = record.own.files == 0 || own == kNoRow;
    record.newest = none ? 0 : static_cast<std::int64_t>(report.number(own, kNewest));
}

void ReportRecords::fillOwn(ScanRecord& record, std::size_t firstChild) {
    FileSums below;
    for (std::size_t i = firstChild; i < rows_.size(); ++i) below.add(sumsOf(scan_.tvwPL, rows_[i]));
    record.own = without(sumsOf(scan_.tvwPL, row_), below);
    if (record.own.files == 0) record.own = {};
}

void ReportRecords::fillFlags(ScanRecord& record) const {
    const int picture = scan_.tvwPL.picture(row_);
    const RareFacts* rare = scan_.facts->rareOf(row_);
    const RareFacts facts = rare != nullptr ? *rare : RareFacts();
    record.flags = 0;
    record.error = 0;
    if (picture == kPictureLink) record.flags |= kScanLink;
    if (picture == kPictureMountPoint) record.flags |= kScanMount;
    if (picture == kPictureSnapshot) record.flags |= kScanSnapshot;
    if (picture == kPictureAccessError || facts.error) record.flags |= kScanError;
    if (facts.error) record.error = static_cast<std::uint32_t>(std::max(0, facts.error->number));
    if (picture == kPictureIncomplete || facts.stopped) record.flags |= kScanStopped;
    if (picture == kPictureLeftOut) {
        record.flags |= kScanLeftOut;
        record.rule = facts.rule < 0 ? 0 : static_cast<std::uint64_t>(facts.rule) + 1;
    }
    if (facts.device != 0) record.flags |= kScanOtherDevice;
    record.device = facts.device;
    const RowIdentity identity = scan_.facts->identity(row_);
    record.inode = identity.inode;
    record.created = identity.created;
    if (identity.created != RowIdentity::kNoTime) record.flags |= kScanCreated;
}

// Cells are told only if they are the folder's files, neither more nor fewer.
void ReportRecords::fillCells(ScanRecord& record) {
    record.cells.clear();
    if (tables_ == nullptr || scan_.statistics == nullptr || record.own.files == 0) return;
    scan_.statistics->ownCells(row_, own_);
    FileSums sum;
    for (const OwnCell& cell : own_) sum.add(cell.sums);
    if (sum != record.own) return;
    for (const OwnCell& cell : own_)
        record.cells.push_back({placeOfEnding(cell.ending), cell.age, placeOfOwner(cell.owner), cell.sums});
}

// A name that is longer than a saved scan may hold comes from another program's file; it is left out.
void ReportRecords::addLargest() {
    const LargestFiles::Range range = largest_->of(row_);
    for (std::size_t i = range.first; i < range.end; ++i) {
        const LargestFile& file = largest_->at(i);
        const std::string_view name = largest_->nameOf(file);
        if (name.size() > kMostNameBytes) continue;
        tables_->largest.push_back({.record = count_,
                                    .name = std::string(name),
                                    .bytes = file.size,
                                    .blocks = file.blocks,
                                    .written = file.written,
                                    .owner = placeOfOwner(file.owner)});
    }
}

std::uint32_t ReportRecords::placeOfEnding(std::uint32_t ending) {
    if (ending < kFirstEnding) return ending;
    const auto next = static_cast<std::uint32_t>(kFirstEnding + tables_->endings.size());
    const auto [place, isNew] = endings_.emplace(ending, next);
    if (isNew) tables_->endings.emplace_back(scan_.statistics->endings().text(ending));
    return place->second;
}

std::uint32_t ReportRecords::placeOfOwner(std::uint32_t owner) {
    const auto [place, isNew] = owners_.emplace(owner, static_cast<std::uint32_t>(tables_->owners.size()));
    if (isNew) tables_->owners.emplace_back(owner, "");
    return place->second;
}

}  // namespace hl
