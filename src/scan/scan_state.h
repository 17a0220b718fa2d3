// What a scan keeps between its steps. A Session owns it; for the thread of the logic only.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <limits>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "base/collection.h"
#include "base/size_value.h"
#include "grid/grid.h"
#include "platform/folder_id.h"
#include "scan/source_space.h"
#include "scan/subvolumes_met.h"

namespace hl {

/// What a scan leaves out, besides what the options say.
struct Leaving {
    Unshown ofSearch;                ///< What rules left out of the last search; who starts one sets it back.
    Unshown ofLists;                 ///< What rules left out when the three lists were filled.
    std::vector<std::string> rules;  ///< Lines, as scan/rule_text.h reads them.
    bool caches = false;             ///< Folders with a CACHEDIR.TAG.
    /// The folders that are read although a rule leaves them out, by their paths below the source. Sources
    /// are named by the text of their row, without a separator at the end.
    std::map<std::string, std::set<std::string>, std::less<>> readAllTheSame;
};

/// What the walk of a folder found.
struct ScanTotals {
    SizeValue size;
    SizeValue disk;           ///< What the files take on the disk; 0 unless NeedSpace is set.
    std::int64_t newest = 0;  ///< When the last of them was written, in seconds since 1970; 0 is "none".
    std::int32_t files = 0;
    std::int32_t folders = 0;
    std::int32_t errors = 0;
    Unshown leftOut = {};  ///< What rules leave out.
};

/// The values of CancelState. Only kCancelStop stops the scan of folders.
enum CancelValue : std::int32_t {
    kCancelNone = 0,
    kCancelEscape = 1,
    kCancelStop = 3,
};

/// What is kept of subvolumes.
struct SnapshotState {
    /// Those that were met in each source, by the text of the source's row.
    std::map<std::string, SubvolumesMet, std::less<>> met;
    /// A folder was read again, and snapshots elsewhere in its source have lost their origin, or have one
    /// now. Whoever reads the source again resets it.
    bool moved = false;
};

/// What is counted for balances.
struct BalanceCount {
    /// Somebody may ask for the balance of a source: the walk counts for it, and NeedSpace is set.
    bool wanted = false;
    /// What was counted for each source, by the text of the source's row.
    std::map<std::string, SourceSpace, std::less<>> sources;
    SourceSpace* current = nullptr;  ///< The one that the walk fills; null if it counts nothing.
};

/// When the window's messages ran.
struct PumpState {
    std::uint64_t interval = 1500;  ///< Milliseconds.
    std::uint64_t lastTick = 0;
};

/// Files with several names.
struct LinkState {
    bool needCount = false;
    bool met = false;        ///< The walk met some that count once.
    CStringCollection seen;  ///< The keys are bytes: device and inode of such a file.
};

struct FileListState {
    std::string folder;  ///< The one whose files the list shows.
    /// Counts how often the list was filled or emptied: a filling ends when, after messages ran, it finds a
    /// newer one.
    std::uint64_t run = 0;
};

/// How far the list of the largest files is filled.
struct TopListState {
    std::string source;         ///< The one whose files are listed.
    std::int32_t count = 0;     ///< The rows added; cutting the list does not lower it.
    std::int32_t maxCount = 0;  ///< The wanted number of rows.
    SizeValue largest;
    SizeValue smallest;  ///< Once the list is full, a file must be larger than this.
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
    PumpState pump;

    /// A walk makes no rows for folders below this level: what they hold is in the sums above. Only what has
    /// to be told of a single one (RowFacts: it could not be read; a snapshot waits to be read) gets its row,
    /// and so do those above it.
    std::uint32_t deepestRows = std::numeric_limits<std::uint32_t>::max();
    /// The deepest level that holds a row; it returns to 0 only when the report is emptied.
    std::uint32_t DeepestLevel = 0;
    ScanTotals lastTotals;  ///< The totals of the source read last.
    FileListState fileList;

    /// Links that led to a folder until it went or was renamed. They are folders again once they lead to one.
    std::set<std::string, std::less<>> LostLinks;

    /// The folder that each source was when it was read, by the text of the source's row.
    std::map<std::string, FolderId, std::less<>> sourceIds;
    SnapshotState snapshots;
    BalanceCount balance;
    Leaving leaving;

    // The rest is set anew for each source.
    bool RowPicked = false;  ///< The user has picked a row, which stays the current one at the end.
    TopListState top;
    bool ListsIncomplete = false;  ///< The reading that filled the three lists was stopped.
    LinkState links;
    bool NeedSpace = false;    ///< Somebody shows or reckons with what files take on the disk.
    std::int64_t Started = 0;  ///< When the reading began, in seconds since 1970. Files written later do not
                               ///< count for the newest change.
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
    rename(state.snapshots.met);
    rename(state.balance.sources);
    rename(state.leaving.readAllTheSame);
}

}  // namespace hl
