// Reads the files of one folder again into what is kept of files besides the sums of rows: the statistics,
// and the largest files. It does nothing about what is not kept for the folder's source. For the thread of
// the logic.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "scan/scan_context.h"
#include "scan/statistics.h"

namespace hl {

class FilesOfFolder {
  public:
    FilesOfFolder(ScanContext& scan, Row row) : statistics_(scan.statistics), row_(row) {
        if (statistics_ != nullptr) started_ = statistics_->startOf(scan.tvwPL, row);
        if (scan.largest != nullptr) largest_ = scan.largest->of(scan.tvwPL, row);
    }

    bool wanted() const { return started_ || largest_ != nullptr; }
    void add(std::string_view name, std::uint64_t size, const EntryDetails& known) {
        if (started_) statistics_->addFile(cells_, name, known, *started_, {1, size, known.blocks});
        if (largest_ != nullptr && largest_->mayTake(size))
            large_.emplace_back(largeFile(row_, size, known), name);
    }
    /// The folder has been read: puts them in the place of those of before.
    void write() {
        if (started_) statistics_->replaceOwn(row_, cells_);
        if (largest_ == nullptr) return;
        largest_->forgetOwn(row_);
        for (const auto& [file, name] : large_)
            if (largest_->takes(file.size)) largest_->add(file, name);
    }

  private:
    Statistics* const statistics_;
    LargestFiles* largest_ = nullptr;
    const Row row_;
    std::optional<std::int64_t> started_;
    FolderCells cells_;
    std::vector<std::pair<LargestFile, std::string>> large_;
};

}  // namespace hl
