// Keeps the report true after something that it shows went from the disk: rows, sums, shares and order are
// those of a fresh scan, without reading the rest again. The three lists that a scan fills stay as they are.
//
// What the numbers cannot tell is read: the files of a folder of which one went, a folder of which a part is
// left, and a whole source where files of several names count once (the name that counts may be the one that
// went) or where followed links show a folder twice. A path stands in the report once for each source that
// holds it. Thread of the logic only; the window is locked meanwhile.
#pragma once

#include <set>
#include <string>
#include <string_view>

#include "scan/scan_context.h"

namespace hl {

/// The folder's row in the source of `root`; kNoRow if that does not show it. `path` ends in no separator.
Row rowOfFolder(const Grid& report, Row root, std::string_view path, const PathRules& paths);

/// Whether a file in the folder, on any level, has more than one name; also if Stop ended the search.
bool holdsLinkedFiles(ScanContext& scan, const std::string& folder);

class ReportChanges {
  public:
    explicit ReportChanges(ScanContext& scan) : scan_(scan) {}

    /// It is not on the disk any more.
    void folderWent(std::string_view path);
    /// It may be new. Where a source holds it and has no row for it, or for folders above it, they are made.
    void folderCame(std::string_view path);
    /// Files that lie directly in the folder came or went.
    void filesChanged(const std::string& folder);
    /// A part of it may have gone.
    void folderChanged(std::string_view path);
    /// The sources that hold the folder are read again when all else is done.
    void sourcesChanged(std::string_view path);
    /// Shares, order and drives. A Stop ends what is read meanwhile, as it ends a rescan. Returns the links
    /// that led to a folder that went: they count as files now.
    std::set<std::string, std::less<>> finish();

  private:
    template <class Do>
    void forEachRowOf(std::string_view path, Do act);
    void takeOut(Row row);
    void takeOutSource(Row root);
    std::set<std::string, std::less<>> loseLinks();
    void addFolder(Row above, std::string_view name);
    void addFilesRow(Row row, double size, double files);
    bool isEntered(Row row) const;
    void readAgain(Row row);
    void forgetBelow(Row row);
    bool showsFoldersTwice(Row root) const;
    bool readFiles(Row row, const std::string& folder);
    void writeFiles(Row row, double size, double files);

    ScanContext& scan_;
    bool folderWent_ = false;
    std::set<Row> touched_;  ///< Rows whose children have new shares.
    std::set<Row> sources_;  ///< To be read again.
    std::set<Row> drives_;   ///< Sources of which something went.
};

}  // namespace hl
