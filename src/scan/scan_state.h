// What a scan keeps between its steps. A Session owns it; for the thread of the logic only.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <utility>

#include "base/collection.h"
#include "base/size_value.h"
#include "platform/folder_id.h"
#include "scan/source_space.h"
#include "scan/subvolumes_met.h"

namespace hl {

/// What the walk of a folder found.
struct ScanTotals {
    SizeValue size;
    SizeValue disk;           ///< What the files take on the disk; 0 unless NeedSpace is set.
    std::int64_t newest = 0;  ///< When the last of them was written, in seconds since 1970; 0 is "none".
    std::int32_t files = 0;
    std::int32_t folders = 0;
    std::int32_t errors = 0;
};

/// The values of CancelState. Only kCancelStop stops the scan of folders.
enum CancelValue : std::int32_t {
    kCancelNone = 0,
    kCancelEscape = 1,
    kCancelStop = 3,
};

struct ScanState {
    std::deque<std::string> SourceQueue;  ///< First in, first out; the head stays in it until it is done.
    std::int32_t CancelState = kCancelNone;
    /// The window is locked: a scan, a delete, the reading of a list, folding or a wait is under way.
    /// Handlers that run in a pause of it test this.
    bool ScanActive = false;
    /// The walk fills no lists: there is no window, or Report_ReadAgain reads a folder.
    bool SilentRun = false;
    /// The current work waits for a disk that does not answer. It may be abandoned, so the window can be
    /// closed.
    bool DiskSilent = false;
    std::uint64_t PumpInterval = 1500;  ///< Milliseconds.
    std::uint64_t LastPumpTick = 0;

    /// The deepest level that holds a row; it returns to 0 only when the report is emptied.
    std::uint32_t DeepestLevel = 0;
    ScanTotals lastTotals;      ///< The totals of the source read last.
    std::string currentFolder;  ///< The folder whose files the file list shows.
    /// Counts how often the file list was filled or emptied: a filling ends when, after messages ran, it
    /// finds a newer one.
    std::uint64_t FileListRun = 0;

    /// Links that led to a folder until it went or was renamed. They are folders again once they lead to one.
    std::set<std::string, std::less<>> LostLinks;

    /// The folder that each source was when it was read, by the text of the source's row.
    std::map<std::string, FolderId, std::less<>> sourceIds;
    /// The subvolumes that were met in each source, by the text of the source's row.
    std::map<std::string, SubvolumesMet, std::less<>> subvolumes;
    /// A folder was read again, and snapshots elsewhere in its source have lost their origin, or have one
    /// now. Whoever reads the source again resets it.
    bool SnapshotsMoved = false;

    /// Somebody may ask for the balance of a source: the walk counts for it, and NeedSpace is set.
    bool WantBalance = false;
    /// What was counted for the balance of each source, by the text of the source's row.
    std::map<std::string, SourceSpace, std::less<>> sourceSpace;
    SourceSpace* counting = nullptr;  ///< The one that the walk fills; null if it counts nothing.

    // The rest is set anew for each source.
    bool RowPicked = false;        ///< The user has picked a row, which stays the current one at the end.
    std::string TopSource;         ///< The source whose largest files are listed.
    std::int32_t TopCount = 0;     ///< The rows added to the largest files; cutting the list does not lower
                                   ///< it.
    std::int32_t TopMaxCount = 0;  ///< The wanted number of rows.
    bool ListsIncomplete = false;  ///< The reading that filled the three lists was stopped.
    SizeValue TopLargest;
    SizeValue TopSmallest;  ///< Once the list is full, a file must be larger than this.
    bool NeedLinkCount = false;
    bool NeedSpace = false;    ///< Somebody shows or reckons with what files take on the disk.
    std::int64_t Started = 0;  ///< When the reading began, in seconds since 1970. Files written later do not
                               ///< count for the newest change.
    bool LinksMet = false;     ///< The walk met files with several names that count once.
    CStringCollection SeenLinkIds;  ///< The keys are bytes: device and inode of a file with several names.
};

/// Moves what is kept for a source from the old text of its row to the new one.
inline void renameSource(ScanState& state, const std::string& from, const std::string& to) {
    const auto rename = [&](auto& kept) {
        auto entry = kept.extract(from);
        if (entry.empty()) return;
        entry.key() = to;
        kept.insert(std::move(entry));
    };
    rename(state.sourceIds);
    rename(state.subvolumes);
    rename(state.sourceSpace);
}

}  // namespace hl
