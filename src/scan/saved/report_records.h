// Hands out the folders of a source of the report as records, in the order of a saved scan: each folder
// before what lies in it, the largest first, folders of one size by the bytes of their names. The report
// itself may be sorted in another way. For the thread of the logic; the report must not change meanwhile.
#pragma once

#include <memory>
#include <unordered_map>
#include <vector>

#include "scan/saved/scan_format.h"
#include "scan/scan_context.h"

namespace hl {

/// The order in which folders that lie in one folder are handed out.
enum class RecordOrder : std::uint8_t { kBySize, kByName };

class ReportRecords {
  public:
    /// `tables` receives the endings and owners that the records refer to, and unless it has largest files
    /// already, those that are kept (ScanContext); what is in it keeps its place. If it is null, records have
    /// no cells. REQUIRES: the report's facts are kept (ScanContext).
    ReportRecords(const ScanContext& scan, Row source, SavedScan* tables,
                  RecordOrder order = RecordOrder::kBySize);

    /// Returns false at the end; then the largest files are in order: the largest first. The record's name
    /// holds until the report changes.
    bool next(ScanRecord& record);
    /// The row of the record, and how many levels it lies below the source.
    Row row() const { return row_; }
    std::size_t level() const { return level_; }

  private:
    /// The folders that lie in one folder, as far as they are still to come.
    struct Level {
        std::size_t next, end;  ///< Places in rows_.
    };

    void openChildren(Row row, ScanRecord& record);
    void fillOwn(ScanRecord& record, std::size_t firstChild);
    void fillFlags(ScanRecord& record) const;
    void fillCells(ScanRecord& record);
    void addLargest();
    std::uint32_t placeOfEnding(std::uint32_t ending);
    std::uint32_t placeOfOwner(std::uint32_t owner);

    const ScanContext& scan_;
    SavedScan* const tables_;
    const RecordOrder order_;
    LargestFiles* largest_ = nullptr;  ///< Null if nobody wants them, or none are kept.
    std::uint64_t count_ = 0;          ///< Of the records before the current one.
    Row row_ = kNoRow;
    std::size_t level_ = 0;
    std::vector<Row> rows_;
    std::vector<Level> levels_;
    std::unordered_map<std::uint32_t, std::uint32_t> endings_;  ///< Places by the numbers of the statistics.
    std::unordered_map<std::uint32_t, std::uint32_t> owners_;   ///< Places by uids.
    std::vector<OwnCell> own_;
};

}  // namespace hl
