// Compares a source of the report with an earlier scan of it. For the thread of the logic only.
//
// One source is compared at a time. The earlier scan is kept as a list of folders, so that the changes can be
// shown anew whenever rows of the report have changed.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "scan/saved/folder_list.h"
#include "scan/saved/report_comparison.h"
#include "views/changes_view.h"

namespace hl {

struct MainForm;

class ComparisonControl {
  public:
    explicit ComparisonControl(MainForm& form) : form_(form) {}

    /// Compares the source of the current row with the last scan of it that was kept before, or, if there is
    /// none, with a saved scan that the user is asked for; or ends the comparison that shows.
    void toggle();
    /// Asks for a saved scan in any case. A comparison that shows ends.
    void chooseFile();
    bool isShown() const { return earlier_.has_value(); }
    /// Returns the folder's row in the source that is compared; kNoRow if there is none.
    Row rowOf(const std::string& path) const;

    // --- what becomes of the rows meanwhile (ScanHost)
    void rowsWillChange();
    void rowsChanged();

  private:
    struct Earlier {
        FolderList folders;
        ScanHeader header;
    };

    void compareWith(const std::string& path);
    std::string ask();
    Row source() const;
    std::string doubts(const ScanHeader& header, Row source) const;
    void begin(const ScanFile& file, Row source);
    void show();
    std::vector<ShownChange> listed(const ReportComparison& shown) const;
    void showColumns(bool on);
    void sortAsUsual();
    std::string title() const;
    void end();

    MainForm& form_;
    std::optional<Earlier> earlier_;
    Row source_ = kNoRow;     ///< The one that is compared.
    std::string sourceText_;  ///< The text of its row, since another source may get its number.
};

}  // namespace hl
