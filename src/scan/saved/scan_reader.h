// Reads a saved scan. All that a file says is checked before anything of it is used, so whoever takes the
// folders afterwards meets no error. What is kept in memory depends on the bytes of the file, never on a
// count in it. For one thread.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "scan/saved/scan_format.h"

namespace hl {

/// Tells whether a file that begins with these bytes is a saved scan, or one of a later version.
bool beginsLikeScan(std::string_view bytes);

/// A file that was read, and checked.
struct ScanFile {
    std::string bytes;
    std::size_t records = 0;  ///< Where the folders begin.
    std::uint64_t count = 0;  ///< The number of folders, with the source.
    std::shared_ptr<const SavedScan> scan;
};

struct ScanReading {
    ScanProblem problem = ScanProblem::kNone;
    ScanFile file = {};  ///< If there is no problem.
};
ScanReading readScan(std::string bytes);

/// Hands out the folders of a file, in their order. The file must outlive it.
class ScanRecords {
  public:
    explicit ScanRecords(const ScanFile& file)
        : rest_(std::string_view(file.bytes).substr(file.records)),
          left_(file.count),
          started_(file.scan->header.started) {}

    /// Returns false at the end. The record's name holds as long as the file.
    bool next(ScanRecord& record);

  private:
    std::string_view rest_;
    std::uint64_t left_;
    const std::int64_t started_;
};

}  // namespace hl
