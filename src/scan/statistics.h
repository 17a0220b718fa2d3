// Which endings the files of each folder have, how old they are and whose: kept for the rows of the report,
// and added up for any of them. For the thread of the logic.
//
// A cell is the files of one ending, one class of age and one owner that lie directly in a folder. The cells
// of all folders are one run of bytes, in the order in which the walk left the folders. So the cells at and
// below a folder are one piece of it, and a sum is one pass over that piece: see docs/performance.md for its
// time and for the bytes of a row. After a change of the report the first question puts the cells in order
// again, which is one pass over all rows.
//
// The cells hold at most 4 GiB; what comes then raises std::length_error.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "grid/column.h"
#include "grid/grid.h"
#include "platform/folder_reader.h"
#include "scan/file_kinds.h"

namespace hl {

/// The classes of age. The first has files of under a day; each further one begins at its border, in days.
inline constexpr std::array<std::int32_t, 8> kAgeBorders = {0, 1, 7, 30, 90, 180, 365, 730};
/// Files that were written after the reading began.
inline constexpr std::uint8_t kInTheFuture = kAgeBorders.size();
inline constexpr std::size_t kAgeClasses = kAgeBorders.size() + 1;

/// Returns the class of an age in seconds.
std::uint8_t ageClassOf(std::int64_t age);

struct FileSums {
    std::uint64_t files = 0;
    std::uint64_t bytes = 0;
    std::uint64_t blocks = 0;  ///< What they take on the disk, in units of kBlockBytes.

    void add(const FileSums& more) {
        files += more.files;
        bytes += more.bytes;
        blocks += more.blocks;
    }
    bool operator==(const FileSums&) const = default;
};

struct EndingSums {
    std::string ending;  ///< Empty for files without an ending, and for those of `isRest`.
    FileKind kind = FileKind::kOther;
    bool isRest = false;  ///< Endings that came when there were too many to tell apart.
    FileSums sums;
};

/// The files of one ending, one class of age and one owner that lie directly in a folder.
struct OwnCell {
    std::uint32_t ending = 0;  ///< See Statistics::endings().
    std::uint8_t age = 0;
    std::uint32_t owner = 0;  ///< The uid.
    FileSums sums = {};
};

struct OwnerSums {
    std::uint32_t owner = 0;  ///< The uid.
    FileSums sums;
};

/// The sums of a folder, each in three ways. Endings and owners that have no files are not in the lists.
struct StatisticsSums {
    FileSums all;
    std::vector<EndingSums> endings;
    std::array<FileSums, kAgeClasses> ages;
    std::vector<OwnerSums> owners;
};

/// What files are grouped by.
enum class FileGroups : std::uint8_t { kKind, kAge, kOwner };

/// Gives each ending a number.
class EndingNumbers {
  public:
    EndingNumbers() = default;
    EndingNumbers(EndingNumbers&&) = default;
    EndingNumbers& operator=(EndingNumbers&&) = default;

    static constexpr std::uint32_t kNone = 0, kRest = 1;
    static constexpr std::size_t kMost = 65'535;  ///< Endings beyond that have the number kRest.

    std::uint32_t of(std::string_view name);
    /// The number of an ending, as Ending has it. It is added if it is new.
    std::uint32_t ofEnding(std::string_view ending);
    /// One more than the highest number.
    std::uint32_t limit() const { return static_cast<std::uint32_t>(kFirst + texts_.size()); }
    /// Is empty for kNone and kRest.
    std::string_view text(std::uint32_t number) const {
        return number < kFirst ? std::string_view() : *texts_[number - kFirst];
    }
    FileKind kind(std::uint32_t number) const {
        return number < kFirst ? FileKind::kOther : kinds_[number - kFirst];
    }

  private:
    static constexpr std::uint32_t kFirst = 2;
    struct Hash : std::hash<std::string_view> {
        using is_transparent = void;
    };

    std::unordered_map<std::string, std::uint32_t, Hash, std::equal_to<>> numbers_;
    std::vector<const std::string*> texts_;  ///< The keys of the map, by number.
    std::vector<FileKind> kinds_;            ///< By number, too.
    /// The numbers met last, by a few bytes of the ending. Nearly all files have one of few endings.
    std::array<std::uint32_t, 256> recent_{};
};

/// Gathers the cells of a folder while its files are read.
class FolderCells {
  public:
    void add(std::uint32_t ending, std::uint32_t ownerAndAge, const FileSums& file);

  private:
    friend class Statistics;
    struct Cell {
        std::uint32_t ending = 0, ownerAndAge = 0;
        FileSums sums;
    };
    using Places = std::unordered_map<std::uint64_t, std::size_t>;

    std::size_t placeOf(std::uint32_t ending, std::uint32_t ownerAndAge);

    std::vector<Cell> cells_;
    std::size_t last_ = 0;
    std::unique_ptr<Places> places_;  ///< Null as long as there are so few that a search is faster.
};

class Statistics {
  public:
    // --- which sources have cells
    /// Cells are kept for the source of this row from now on. A source that has them already keeps its time,
    /// in seconds since 1970, so that all of its files are as old as at the same moment.
    void keepSource(Row root, std::int64_t started) { started_.try_emplace(root, started); }
    void dropSource(Row root);
    /// Returns the time against which ages count; nothing if no cells are kept for the row's source.
    std::optional<std::int64_t> startOf(const Grid& report, Row row) const;
    /// Must be called when the report is emptied.
    void clear();

    // --- what the walk finds
    /// Adds a file to the cells of its folder. `sums` has what the file counts for.
    void addFile(FolderCells& cells, std::string_view name, const EntryDetails& file, std::int64_t started,
                 const FileSums& sums);
    /// The place where the cells of what is read next will stand.
    std::uint32_t place() const { return static_cast<std::uint32_t>(bytes_.size()); }
    /// The folder of the row is read, and everything below it was; `first` is the place() before that.
    void leave(Row row, std::uint32_t first, const FolderCells& cells);
    /// Files directly in the row's folder came or went; these are its cells now.
    void replaceOwn(Row row, const FolderCells& cells);
    /// Adds what a saved scan tells of a folder's own files.
    void addCell(FolderCells& cells, const OwnCell& cell);
    EndingNumbers& endings() { return endings_; }
    bool has(Row row) const { return spans_.valueOr(row, {}).own != 0; }
    /// The row is new, or its number belonged to another one.
    void forget(Row row);
    /// Rows went, or came at another place than the end of the walk; for a folder that is read again.
    void orderChanged();
    /// The reading of a source or folder is over: gives back memory.
    void pack() { bytes_.shrink_to_fit(); }

    // --- questions
    /// Returns the sums of the row's folder and everything below it, or, of a row that stands for files, of
    /// these. Returns nothing if no cells are kept for its source.
    std::optional<StatisticsSums> of(const Grid& report, Row row);
    /// Which cells largestGroup() looks at, and how.
    struct GroupQuestion {
        FileGroups by = FileGroups::kKind;
        bool onlyOwn = false;  ///< Files directly in the folder; else those below it, too.
        bool onDisk = false;   ///< Counts what they take on the disk.
    };
    /// Returns the group of most bytes: a FileKind, a class of age, or a uid. Returns nothing if there is
    /// none, or as long as a reading is going on whose cells are in no order.
    std::optional<std::uint32_t> largestGroup(const Grid& report, Row row, const GroupQuestion& question,
                                              bool isReading);
    /// Puts the cells of the files directly in the row's folder into `cells`, in the order in which they
    /// came.
    void ownCells(Row row, std::vector<OwnCell>& cells) const;
    /// Is another number after each change.
    std::uint64_t version() const { return version_; }
    /// The bytes that the cells and the places of rows take.
    std::size_t bytesUsed() const { return bytes_.capacity() + placedRows_ * sizeof(Span); }

  private:
    /// Where the cells of a row's folder stand: those of all below it begin at `first`, its own at `own`.
    struct Span {
        std::uint32_t first = 0;
        std::uint32_t own = 0;  ///< One more than the place, so that a row that was never written has 0.
    };

    std::uint32_t groupOf(std::uint32_t ending, std::uint32_t ownerAndAge, FileGroups by) const;
    void put(Row row, const Span& span);
    std::uint32_t ownerAndAge(std::uint32_t owner, std::uint8_t age);
    void inOrder(const Grid& report);

    std::map<Row, std::int64_t> started_;
    EndingNumbers endings_;
    std::vector<std::uint32_t> owners_;  ///< By number; there are few.
    std::size_t lastOwner_ = 0;
    std::vector<std::uint8_t> bytes_;
    Column<Span> spans_;
    std::size_t placedRows_ = 0;  ///< How many rows the column has room for.
    bool isOrdered_ = true;
    std::uint64_t version_ = 0;
    std::vector<std::uint64_t> groupSums_;  ///< Of one question.
};

}  // namespace hl
