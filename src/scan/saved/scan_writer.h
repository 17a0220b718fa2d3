// Makes the bytes of a saved scan, folder by folder. For one thread.
#pragma once

#include <string>

#include "base/crc32.h"
#include "scan/saved/scan_format.h"

namespace hl {

/// Returns the first line of a scan, with its line feed. REQUIRES: the options are short enough for
/// kMostHeaderBytes.
std::string scanHeaderLine(const ScanHeader& header);

/// Whoever writes calls begin, then folder for each folder in its order (docs/scan-format.md), then end. Each
/// appends to the text that it is given; all of what is appended goes into the file, in this order.
class ScanWriter {
  public:
    /// `started` is that of the header.
    explicit ScanWriter(std::int64_t started) : started_(started) {}

    void begin(std::string& out, const std::string& headerLine);
    void folder(std::string& out, const ScanRecord& folder);
    void end(std::string& out, const SavedScan& tables);

    /// The sums of the folders so far.
    const ScanSums& sums() const { return sums_; }

  private:
    std::uint64_t before(std::int64_t time) const;

    const std::int64_t started_;
    ScanSums sums_;
    bool first_ = true;
    Crc32 crc_;
};

}  // namespace hl
