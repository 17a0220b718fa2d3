// Compares a source of the report with an earlier scan of it. For the thread of the logic only.
//
// One source is compared at a time. The earlier scan is kept as a list of folders, so that the changes can be
// shown anew whenever rows of the report have changed.
#pragma once

#include <optional>
#include <string>

#include "scan/saved/folder_list.h"
#include "scan/saved/report_comparison.h"

namespace hl {

struct MainForm;

class ComparisonControl {
  public:
    explicit ComparisonControl(MainForm& form) : form_(form) {}

    /// Asks for a saved scan and compares the source of the current row with it; or ends the comparison that
    /// shows.
    void toggle();
    bool isShown() const { return earlier_.has_value(); }

    // --- what becomes of the rows meanwhile (ScanHost)
    void rowsWillChange();
    void rowsChanged();

  private:
    struct Earlier {
        FolderList folders;
        ScanHeader header;
    };

    void compareWith(const std::string& path);
    std::string doubts(const ScanHeader& header, Row source) const;
    void begin(const ScanFile& file, Row source);
    void show();
    void showColumns(bool on);
    void sortAsUsual();
    std::string title() const;
    void end();

    MainForm& form_;
    std::optional<Earlier> earlier_;
    Row source_ = kNoRow;  ///< The one that is compared.
};

}  // namespace hl
