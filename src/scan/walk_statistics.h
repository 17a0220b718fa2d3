// What a walk adds to the statistics of the report's rows. It does nothing if none are kept for the source.
// For the thread of the logic.
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
        if (!started) return;
        kept_ = all_;
        started_ = *started;
        if (kept_->has(row) || scan.tvwPL.level(row) > 0) kept_->orderChanged();
    }

    /// Sets what a reader is asked for besides what it is asked for already.
    void choose(ReadOptions& options) const {
        options.wantOwners = kept_ != nullptr;
        options.wantFileNames |= kept_ != nullptr;
    }
    void rowAdded(Row row) {
        if (all_ != nullptr) all_->forget(row);
    }
    Folder enter() const {
        Folder folder;
        if (kept_ != nullptr) folder.first = kept_->place();
        return folder;
    }
    /// `counts` tells whether the file counts with its size; if not, another name of it does.
    void addFile(Folder& folder, std::string_view name, std::uint64_t size, const EntryDetails& file,
                 bool counts) {
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
    }

  private:
    Statistics* const all_;
    Statistics* kept_ = nullptr;  ///< Null if none are kept for the source.
    std::int64_t started_ = 0;    ///< Against this time ages count.
};

}  // namespace hl
