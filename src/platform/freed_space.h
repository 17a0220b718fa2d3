// Tells what deleting files and folders for good would give back of the space on their disk.
//
// Not all of it comes back: a file stays as long as another name or a process holds it, and a range of the
// disk as long as another file shares it. A survey looks at all that is selected and tells, for each of these
// reasons, how many bytes and files it concerns. A file counts in each line in which some of its bytes are,
// and each file once, however many names of it are selected.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/file_operations.h"

namespace hl {

/// Bytes on the disk (blocks of 512), and the files that they belong to.
struct FreedAmount {
    std::uint64_t bytes = 0;
    std::uint64_t files = 0;
    bool operator==(const FreedAmount&) const = default;
};

struct FileHolder {
    long process = 0;          ///< 0 for the kernel; then `program` is a device or "swap".
    std::string program = {};  ///< Any bytes.
    bool operator==(const FileHolder&) const = default;
};

/// Files that all these processes hold open, and no other.
struct FreedWhenClosed {
    static constexpr std::size_t kMost = 20;  ///< What other processes hold is one amount without holders.

    std::vector<FileHolder> holders = {};
    FreedAmount amount = {};
};

enum class SurveyState : std::uint8_t {
    kRuns,    ///< The figures still grow.
    kSilent,  ///< It waits for a disk that has not answered for a second.
    kEnded,
};

/// What is known of the files that processes hold open.
enum class OpenFilesKnown : std::uint8_t {
    kNotYet,  ///< The list of them has not come; what they hold counts as coming back at once.
    kAll,
    kOwn,       ///< Only root may know what processes of others hold.
    kNoAnswer,  ///< The list did not come in time, or there was no thread for it.
};

struct FreedSpace {
    FreedAmount now = {};  ///< Comes back at once. With the blocks of the folders, which are no files.
    std::vector<FreedWhenClosed> whenClosed = {};
    FreedAmount perhaps = {};          ///< From none to all of these bytes come back.
    FreedAmount otherNames = {};       ///< Stays: names that are not selected hold it.
    FreedAmount shared = {};           ///< Stays: files that are not selected share it.
    FreedAmount unknown = {};          ///< The file system does not tell, or the file cannot be looked at.
    FreedAmount all = {};              ///< The whole selection, which in a trash stays until that is emptied.
    std::uint64_t foldersUnknown = 0;  ///< Folders that could not be read; what is in them is in no figure.
    /// Subvolumes and other mounts, which stay; what is in them is in no figure.
    std::uint64_t mounts = 0;
    /// What is selected on disks that do not answer; it is in no figure.
    std::uint64_t silentPlaces = 0;
    /// More than these figures may come back: the file system keeps the whole of an extent of which parts
    /// were overwritten, and does not tell.
    bool mayBeMore = false;
    OpenFilesKnown openFiles = OpenFilesKnown::kNotYet;
    SurveyState state = SurveyState::kRuns;
    std::int64_t asOf = 0;  ///< When the figures were taken, in seconds since 1970.
};

/// A survey that runs, or has ended. For the thread of the logic only.
class FreedSurvey {
  public:
    /// Ends it at once, and waits for no disk.
    virtual ~FreedSurvey() = default;
    /// Returns the figures so far, without waiting. What the survey threw is thrown here, once.
    virtual FreedSpace figures() = 0;
};

/// For the thread of the logic only.
class FreedSurveys {
  public:
    virtual ~FreedSurveys() = default;
    /// Begins to look at these files and folders, on another thread. Nothing is changed, no link followed,
    /// and neither another mount nor a subvolume entered.
    virtual std::unique_ptr<FreedSurvey> begin(std::vector<FilePlace> places) = 0;
};

}  // namespace hl
