// Corrects the report after something that it shows went from the disk: rows, sums, shares and order become
// those of a fresh scan, without reading everything again. The three lists that a scan fills stay as they
// are.
//
// What cannot be computed is read: the files of a folder that lost one, a folder of which a part is left, and
// a whole source where files with several names count once (the counted name may be the one that went) or
// where followed links show a folder twice. A path is in the report once for each source that holds it. For
// the thread of the logic only; the window must be locked meanwhile.
#pragma once

#include <set>
#include <string>
#include <string_view>

#include "scan/scan_context.h"

namespace hl {

/// Returns the folder's row in the source of `root`, or kNoRow if it is not shown there. `path` ends in no
/// separator.
Row rowOfFolder(const Grid& report, Row root, std::string_view path, const PathRules& paths);

/// Tells whether a file in the folder, on any level, has more than one name. If Stop ends the search, the
/// answer is yes.
bool holdsLinkedFiles(ScanContext& scan, const std::string& folder);

class ReportChanges {
  public:
    explicit ReportChanges(ScanContext& scan) : scan_(scan) { scan.host.rowsWillChange(); }

    /// The folder is no longer on the disk.
    void folderWent(std::string_view path);
    /// The folder may be new. Each source that holds it gets the rows that are missing for it and the folders
    /// above it.
    void folderCame(std::string_view path);
    /// The folder has another name now, in the same folder. All that it holds stays. Sources in it have their
    /// new paths then. A link that led nowhere since the scan, and leads to the new name, is not found.
    void folderRenamed(std::string_view from, std::string_view name);
    /// The file has another name now, in the same folder, where no other file had it.
    void fileRenamed(std::string_view from, std::string_view name);
    /// Files that lie directly in the folder came or went.
    void filesChanged(const std::string& folder);
    /// A part of the folder may have gone.
    void folderChanged(std::string_view path);
    /// The sources that hold the folder are to be read again by finish().
    void sourcesChanged(std::string_view path);
    /// Brings shares, order and drives up to date. Stop ends what is read meanwhile, as it ends a rescan.
    /// Returns the links that led to a folder that went: they count as files now.
    std::set<std::string, std::less<>> finish();

  private:
    template <class Do>
    void forEachRowOf(std::string_view path, Do act);
    void takeOut(Row row);
    void takeOutSource(Row root);
    std::set<std::string, std::less<>> loseLinks();
    void findLinksAgain();
    void addFolder(Row above, std::string_view name);
    void addFilesRow(Row row, const ScanTotals& files);
    bool isEntered(Row row) const;
    void readAgain(Row row);
    void readRow(Row row);
    void forgetBelow(Row row);
    bool showsFoldersTwice(Row root) const;
    bool readFiles(Row row, const std::string& folder);
    void markIncomplete(Row row);
    void writeFiles(Row row, const ScanTotals& files);

    ScanContext& scan_;
    bool folderWent_ = false;
    std::set<Row> touched_;  ///< The rows whose children have new shares.
    std::set<Row> sources_;  ///< The sources that are to be read again.
    std::set<Row> drives_;   ///< The sources that something went from.
};

}  // namespace hl
