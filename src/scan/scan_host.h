// What a scan tells, and asks of, the window around it. Implemented above this room; a run with no window
// answers with plain data. Thread of the logic only. Calls must not throw.
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
    /// Locks the window but for Stop (with `noStop` for that too). ScanActive is the caller's business.
    virtual void lockControls(bool noStop) = 0;
    virtual void unlockControls() = 0;
    /// The status bar's first panel takes all the width for the running path.
    virtual void statusOfRun() = 0;
    /// Both panels as when idle, the first with `text`.
    virtual void statusAfterRun(const std::string& text) = 0;

    // --- during the walk
    /// Once for each folder that is entered. `path` ends with a separator and is valid during the call.
    virtual void folderEntered(std::string_view path) = 0;
    virtual void firstLevelFolderDone() = 0;
    /// The box of sources has another one selected, which is read now.
    virtual void sourceChosen() {}
    /// A source that is passed over: it does not exist, or, with a `reason`, cannot be asked.
    virtual void sourceMissing(const std::string& source, const std::string& reason) = 0;
    /// A line for whoever wonders what goes on.
    virtual void scanNotice(const std::string& text) = 0;
    /// What could not be read, and why.
    virtual void notRead(std::string_view path, const std::string& reason) = 0;

    // --- neighbours
    /// Names of types will be asked for the files of another source, or of a folder's list: what they may
    /// cost starts anew.
    virtual void typesBegin() {}
    /// The desktop's name for the type of a file; empty where there is none.
    virtual std::string typeName(const std::string& path) = 0;
    virtual void topListTitle(const std::string& title) = 0;
    /// Fits the columns and sets the icons of the three lists that a scan fills.
    virtual void listsFilled() = 0;
    virtual void reportResizeColumns() = 0;
    virtual void selectDriveOf(Row row) = 0;
    virtual void refreshDriveOf(Row row) = 0;
    /// Lists the files of a folder; with an empty path, empties the list.
    virtual void showFilesOf(const std::string& folder) = 0;
    virtual void refreshPreview() = 0;
    /// The statistics line of the list that is shown.
    virtual void showFileStat() = 0;
    virtual void clearStatus() = 0;
};

/// The hourglass for as long as it lives, also where a fault ends a routine: nobody else shows it. `Host` is
/// what shows it.
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
