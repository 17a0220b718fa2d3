// Writes a source as the JSON that the program ncdu reads: each file is written when it is met, so that the
// memory does not grow with their number. There is no report. For the thread of the logic only.
//
// Names are raw bytes. Read-only snapshots are left out if the options do not count snapshots, wherever their
// origin is: what was written cannot be taken back.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "output/report_file.h"
#include "scan/scan_context.h"
#include "scan/yield.h"

namespace hl {

class NcduExport final : public ScanProgress {
  public:
    /// The arguments must outlive it. Errors and folders come through the calls of the context's host.
    NcduExport(ScanContext& scan, ReportFile& file)
        : scan_(scan), file_(file), yield_(scan.state, scan.pump) {}

    /// Reads the source, and writes it. Returns false if Stop ended that.
    bool run(const std::string& source);

    // ScanProgress
    ScanCounts soFar() const override { return counts_; }
    std::size_t showSoFar(bool /*sort*/) const override { return 0; }

  private:
    struct Level {
        std::unique_ptr<Listing> block;
        std::size_t next = 0;  ///< The index of the next entry.
        std::size_t pathLength = 0;
        std::uint64_t device = 0;
        bool told = false;  ///< The user knows that something of the folder could not be read.
    };

    std::string& out() { return file_.block(); }
    void begin(const std::string& source);
    std::unique_ptr<Listing> nextBlock();
    void step();
    void take(Level& level, std::unique_ptr<Listing> block);
    bool folderEntry(const Entry& entry, std::string_view name);
    void openFolder(std::string_view name, std::unique_ptr<Listing> block, std::uint64_t deviceAbove);
    void appendFolder(std::string_view name, const Listing& block, std::uint64_t deviceAbove,
                      std::string_view excluded);
    void appendFile(const Entry& entry, const EntryDetails& details, std::string_view name);
    void appendName(std::string_view name);
    void notRead(Level& level, const std::optional<Error>& error);

    ScanContext& scan_;
    ReportFile& file_;
    Yield yield_;
    std::unique_ptr<FolderReader> reader_;
    std::string path_;  ///< Of the current level, with a separator at the end.
    std::vector<Level> levels_;
    ScanCounts counts_;
    bool stopped_ = false;
};

}  // namespace hl
