// What a scan tells of what happens. It is implemented above this room, which decides what to show. Each
// routine does nothing unless it is overridden. For the thread of the logic only. Calls must not throw.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "grid/row_tree.h"

namespace hl {

struct ScanCounts {
    std::int64_t files = 0;
    std::int64_t folders = 0;
    double bytes = 0;
};

/// A walk that is under way.
class ScanProgress {
  public:
    virtual ~ScanProgress() = default;
    /// Returns what was found up to now. The cost is a sum over the levels of the current folder.
    virtual ScanCounts soFar() const = 0;
    /// Writes what was found up to now into the row that is read into and into its direct children, with
    /// their shares, and sorts these if `sort` is set. Returns how many children there are; they
    /// make the cost.
    virtual std::size_t showSoFar(bool sort) const = 0;
};

/// How a run ended.
enum class RunEnd : std::uint8_t {
    kDone,
    kStopped,    ///< By the user, so the last source is incomplete.
    kBrokenOff,  ///< By an error of the program.
};

class ScanHost {
  public:
    virtual ~ScanHost() = default;

    // --- a run: several sources, or a folder that is read again
    /// A run begins: from now on rows come by the thousand.
    virtual void runBegan() {}
    /// The run is over, and the controls are unlocked.
    virtual void runEnded(RunEnd /*end*/) {}
    /// What was selected is gone or is about to be read again.
    virtual void selectionGone() {}
    /// The run made this folder the current one. `folder` ends with a separator.
    virtual void folderShown(const std::string& /*folder*/) {}

    // --- a source
    /// A source is skipped, because it does not exist or, if there is a `reason`, cannot be asked.
    virtual void sourceMissing(const std::string& /*source*/, const std::string& /*reason*/) {}
    /// A source is read now; the box of sources has selected it.
    virtual void sourceBegan() {}
    /// The row that a source, or a folder that is read again, is read into is the current row now. It has no
    /// rows below it yet.
    virtual void readingInto(Row /*row*/) {}
    /// The lists of the largest files, hardlinks and junctions have all rows of the source or folder.
    virtual void listsFilled() {}
    /// All rows of a source, or of a folder that is read again, are there. `row` is its row.
    virtual void sourceDone(Row /*row*/) {}
    /// What lies below the source of this row takes other space than before.
    virtual void sourceChanged(Row /*row*/) {}

    // --- the rows of what was read before
    /// Rows are about to be read again, renamed or removed, one by one.
    virtual void rowsWillChange() {}
    /// That is done, and the rows are what a fresh scan would show; or sources were removed.
    virtual void rowsChanged() {}

    // --- the walk
    /// A folder is entered. `path` ends with a separator and is valid during the call.
    virtual void folderEntered(std::string_view /*path*/) {}
    virtual void firstLevelFolderDone() {}
    /// More entries are there: of a folder that was just entered, or of a large one.
    virtual void entriesCame(const ScanProgress& /*progress*/) {}
    /// Something could not be read, for the reason given.
    virtual void notRead(std::string_view /*path*/, const std::string& /*reason*/) {}
    /// A disk lets the walk wait, or is given up; the text says which.
    virtual void diskSilent(const std::string& /*text*/) {}
};

}  // namespace hl
