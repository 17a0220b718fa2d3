// What a scan keeps between its steps. Owned by the main form; thread of the logic only.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <string>

#include "base/size_value.h"
#include "platform/folder_id.h"
#include "scan/collection/collection.h"

namespace hl {

/// What the walk of a folder gives back.
struct ScanTotals {
    SizeValue size;
    std::int32_t files = 0;
    std::int32_t folders = 0;
    std::int32_t errors = 0;
};

/// Values of CancelState. Only kCancelStop stops the scan of folders.
enum CancelValue : std::int32_t {
    kCancelNone = 0,
    kCancelEscape = 1,
    kCancelStop = 3,
};

struct ScanState {
    std::deque<std::string> SourceQueue;  ///< First in, first out; the head stays until it is done with.
    std::int32_t CancelState = kCancelNone;
    bool ScanActive = false;  ///< Handlers that run in a pause of the scan test it.
    bool SilentRun = false;   ///< No window; the lists stay empty.
    /// What is at work waits for a disk that does not answer. It may be left at any time, so the window need
    /// not stay open for it.
    bool DiskSilent = false;
    std::uint64_t PumpInterval = 1500;  ///< Milliseconds.
    std::uint64_t LastPumpTick = 0;

    /// Deepest level that holds a row; falls to 0 only when the report is emptied.
    std::uint32_t DeepestLevel = 0;
    ScanTotals lastTotals;      ///< Of the source read last.
    std::string currentFolder;  ///< Whose files the file list shows.
    /// Raised whenever the file list is filled or emptied: a filling that has let messages run ends when
    /// another one came.
    std::uint64_t FileListRun = 0;

    /// Which folders the sources were when they were read, by the texts of their rows.
    std::map<std::string, FolderId, std::less<>> sourceIds;

    // Set anew for each source.
    std::string TopSource;         ///< The source whose largest files are listed.
    std::int32_t TopCount = 0;     ///< Rows that were added to the largest files; trims do not lower it.
    std::int32_t TopMaxCount = 0;  ///< Rows wanted.
    SizeValue TopLargest;
    SizeValue TopSmallest;  ///< A file must be larger once the list is full.
    bool NeedLinkCount = false;
    CStringCollection SeenLinkIds;  ///< Keys are bytes: device and inode of a file with several names.
};

}  // namespace hl
