// The largest files of each source: the map has tiles for them, and a saved scan holds them. The window keeps
// them whether the list of the largest files is shown or not. For the thread of the logic.
//
// A file takes 40 bytes and its name; during a reading half as many again are held. Where files of the
// smallest kept size are too many, it is left open which of them are kept. Empty files are not kept.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "grid/grid.h"
#include "platform/folder_reader.h"

namespace hl {

struct LargestFile {
    std::uint64_t size = 0;    ///< In bytes.
    std::uint64_t blocks = 0;  ///< What it takes on the disk, in units of kBlockBytes.
    std::int64_t written = 0;  ///< In seconds since 1970.
    Row folder = kNoRow;       ///< The row of the folder that it lies directly in.
    std::uint32_t owner = 0;   ///< The uid.

  private:
    friend class LargestFiles;
    std::uint32_t nameOffset_ = 0;
    std::uint16_t nameLength_ = 0;
};

static_assert(sizeof(LargestFile) == 40);

inline LargestFile largeFile(Row folder, std::uint64_t size, const EntryDetails& known) {
    LargestFile file;
    file.size = size;
    file.blocks = known.blocks;
    file.written = known.written;
    file.folder = folder;
    file.owner = known.owner;
    return file;
}

/// The largest files of one source.
class LargestFiles {
  public:
    /// Keeps `most` files. Ages count against `started`, in seconds since 1970.
    explicit LargestFiles(std::size_t most, std::int64_t started = 0)
        : most_(most), started_(started), least_(most > 0 ? 0 : UINT64_MAX), leftOut_(most == 0) {}

    std::int64_t started() const { return started_; }

    // --- what a reading finds
    /// Tells whether a file of this size would be kept. Asked for each file of a scan.
    bool takes(std::uint64_t size) const { return size > least_; }
    /// Tells whether a file of this size may be kept once others are forgotten.
    bool mayTake(std::uint64_t size) const { return size > 0 && (!leftOut_ || size >= bound_); }
    /// Keeps the file; if there are too many, the smallest are dropped. REQUIRES: takes(file.size).
    void add(LargestFile file, std::string_view name);
    /// The reading is over: gives back memory.
    void finish();

    // --- what went
    /// The files directly in the folder are no longer known.
    void forgetOwn(Row folder);
    /// The same for all files at and below the folder.
    void forgetBelow(const Grid& report, Row folder);
    void rename(Row folder, std::string_view from, std::string_view to);

    // --- questions
    std::size_t count() const { return files_.size(); }
    /// Returns the file with this index, which holds until version() changes.
    const LargestFile& at(std::size_t index) const { return files_[index]; }
    std::string_view nameOf(const LargestFile& file) const {
        return std::string_view(names_).substr(file.nameOffset_, file.nameLength_);
    }
    /// The indexes of the files directly in a folder: from `first` to the one before `end`.
    struct Range {
        std::size_t first = 0, end = 0;
    };
    /// Puts the files in order first, which may change the version.
    Range of(Row folder);
    /// Tells whether so many files went that others, which were left out, may be larger than those that are
    /// kept.
    bool isThin() const { return leftOut_ && files_.size() < most_ / 2; }
    std::uint64_t version() const { return version_; }

  private:
    template <class Gone>
    void forgetIf(const Gone& gone);
    void dropSmallest();
    void setName(LargestFile& file, std::string_view name);
    void sortByFolder();
    void packNames();

    const std::size_t most_;
    const std::int64_t started_;
    std::uint64_t least_;      ///< Files that are not larger are left out.
    std::uint64_t bound_ = 1;  ///< No file that was left out is larger.
    bool leftOut_;             ///< Some file may have been left out.
    std::size_t sorted_ = 0;   ///< So many from the first on are sorted by folder.
    std::vector<LargestFile> files_;
    std::string names_;
    std::size_t unusedBytes_ = 0;  ///< Of names_.
    std::uint64_t version_ = 0;
};

/// Those of all sources in the report.
class LargestOfSources {
  public:
    /// A reading of the row begins. If the row is a source, its old files are forgotten, and up to `most` are
    /// kept from now on. Returns where files are added; null if nothing is kept for the row's source.
    LargestFiles* startReading(const Grid& report, Row row, std::size_t most, std::int64_t started);
    /// Must be called before rows are removed: the row and all below it.
    void forgetBelow(const Grid& report, Row row);
    void dropSource(Row root) { sources_.erase(root); }
    /// Must be called when the report is emptied.
    void clear() { sources_.clear(); }
    /// Returns the files of the row's source; null if none are kept.
    LargestFiles* of(const Grid& report, Row row);

  private:
    std::map<Row, LargestFiles> sources_;  ///< By their rows.
};

}  // namespace hl
