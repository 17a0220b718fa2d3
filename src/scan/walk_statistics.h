// What a walk keeps of files besides the sums of rows: the statistics of the report's rows, and the largest
// files of its source. It does nothing about what is not kept for the source. For the thread of the logic.
#pragma once

#include "scan/scan_context.h"
#include "scan/statistics.h"

namespace hl {

class WalkStatistics {
  public:
    /// Of a folder that is being walked.
    struct Folder {
        FolderCells cells;
        std::uint32_t first = 0;  ///< Statistics::place() before it.
    };

    /// `row` is what is read. A folder that is read again, or was put off, gets its cells behind those of all
    /// others until they are put in order.
    WalkStatistics(ScanContext& scan, Row row) : all_(scan.statistics) {
        const auto started = all_ != nullptr ? all_->startOf(scan.tvwPL, row) : std::nullopt;
        started_ = started.value_or(scan.state.Started);
        if (scan.largest != nullptr)
            largest_ = scan.largest->startReading(
                scan.tvwPL, row, static_cast<std::size_t>(scan.options.LargestKept), started_);
        if (!started) return;
        kept_ = all_;
        if (kept_->has(row) || scan.tvwPL.level(row) > 0) kept_->orderChanged();
    }

    /// Sets what a reader is asked for besides what it is asked for already.
    void choose(ReadOptions& options) const {
        const bool keepsFiles = kept_ != nullptr || largest_ != nullptr;
        options.wantOwners = keepsFiles;
        options.wantFileNames |= keepsFiles;
        options.wantSpace |= keepsFiles;
    }
    void rowAdded(Row row) {
        if (all_ != nullptr) all_->forget(row);
    }
    Folder enter() const {
        Folder folder;
        if (kept_ != nullptr) folder.first = kept_->place();
        return folder;
    }
    /// `row` is that of the folder. `counts` tells whether the file counts with its size; if not, another
    /// name of it does.
    void addFile(Folder& folder, Row row, std::string_view name, std::uint64_t size, const EntryDetails& file,
                 bool counts) {
        if (counts && largest_ != nullptr && largest_->takes(size))
            largest_->add(largeFile(row, size, file), name);
        if (kept_ == nullptr) return;
        kept_->addFile(folder.cells, name, file, started_,
                       counts ? FileSums{1, size, file.blocks} : FileSums{1});
    }
    /// Everything below the row was read, and so were its files.
    void leave(Row row, const Folder& folder) {
        if (kept_ != nullptr && row != kNoRow) kept_->leave(row, folder.first, folder.cells);
    }
    /// The reading is over.
    void finish() {
        if (kept_ != nullptr) kept_->pack();
        if (largest_ != nullptr) largest_->finish();
    }

  private:
    Statistics* const all_;
    Statistics* kept_ = nullptr;       ///< Null if none are kept for the source.
    std::int64_t started_ = 0;         ///< Against this time ages count.
    LargestFiles* largest_ = nullptr;  ///< Null if none are kept for the source.
};

}  // namespace hl
