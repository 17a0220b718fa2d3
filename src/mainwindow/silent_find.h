// Finds files in a run without a window, and writes them while it finds them. For the thread of the logic
// only.
#pragma once

#include <string>
#include <string_view>

#include "output/found_files.h"
#include "output/report_file.h"
#include "scan/find_walk.h"

namespace hl {

class SilentFind final : public FindHost {
  public:
    /// `to` hears of folders and errors. The arguments must outlive it.
    SilentFind(ScanContext& scan, ScanHost& to, ReportFile& file, const FoundLines& lines);

    /// Finds in the folder. Returns true if its walk came to its end.
    bool run(const std::string& folder, const FindOrder& order);
    /// Tells whether one of the folders was there.
    bool entered() const { return entered_; }

    bool found(const FoundFile& file) override;
    void folderEntered(std::string_view path) override { to_.folderEntered(path); }
    void notRead(std::string_view path, const std::string& reason) override { to_.notRead(path, reason); }

  private:
    ScanContext& scan_;
    ScanHost& to_;
    ReportFile& file_;
    const FoundLines& lines_;
    bool entered_ = false;
};

}  // namespace hl
