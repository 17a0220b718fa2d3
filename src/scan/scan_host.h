// What a scan tells the window around it, and asks of it. It is implemented above this room; a run without a
// window has an implementation that only keeps data. For the thread of the logic only. Calls must not throw.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "grid/row_tree.h"

namespace hl {

class ScanHost {
  public:
    virtual ~ScanHost() = default;

    // --- frame of a run
    virtual void setBusyPointer(bool busy) = 0;
    /// Locks the window except for Stop, and with `noStop` for Stop too. The caller sets ScanActive.
    virtual void lockControls(bool noStop) = 0;
    virtual void unlockControls() = 0;
    /// Gives the status bar's first panel all the width, for the path being read.
    virtual void statusOfRun() = 0;
    /// Shows both panels as in an idle window, the first with `text`.
    virtual void statusAfterRun(const std::string& text) = 0;

    // --- during the walk
    /// Is called for each folder that is entered. `path` ends with a separator and is valid during the call.
    virtual void folderEntered(std::string_view path) = 0;
    virtual void firstLevelFolderDone() = 0;
    /// The box of sources has selected another one, which is read now.
    virtual void sourceChosen() {}
    /// A source is skipped, because it does not exist or, if there is a `reason`, cannot be asked.
    virtual void sourceMissing(const std::string& source, const std::string& reason) = 0;
    /// Shows a line that explains what is going on.
    virtual void scanNotice(const std::string& text) = 0;
    /// Something could not be read, for the reason given.
    virtual void notRead(std::string_view path, const std::string& reason) = 0;

    // --- neighbours
    /// Tells that typeName will be called for the files of another source or of a folder's list: the time
    /// that it may take starts anew.
    virtual void typesBegin() {}
    /// Returns the desktop's name for the type of a file; empty if there is none.
    virtual std::string typeName(const std::string& path) = 0;
    virtual void topListTitle(const std::string& title) = 0;
    /// Fits the columns and sets the icons of the three lists that a scan fills.
    virtual void listsFilled() = 0;
    virtual void reportResizeColumns() = 0;
    virtual void selectDriveOf(Row row) = 0;
    virtual void refreshDriveOf(Row row) = 0;
    /// Lists the files of a folder; an empty path empties the list.
    virtual void showFilesOf(const std::string& folder) = 0;
    virtual void refreshPreview() = 0;
    /// Shows the statistics line of the visible list.
    virtual void showFileStat() = 0;
    virtual void clearStatus() = 0;
};

/// Shows the hourglass while it lives, even if a fault ends the routine. `Host` is what shows it.
template <class Host>
class BusyPointer {
  public:
    explicit BusyPointer(Host& host) : host_(host) { host_.setBusyPointer(true); }
    ~BusyPointer() { host_.setBusyPointer(false); }
    BusyPointer(const BusyPointer&) = delete;
    BusyPointer& operator=(const BusyPointer&) = delete;

  private:
    Host& host_;
};

}  // namespace hl
