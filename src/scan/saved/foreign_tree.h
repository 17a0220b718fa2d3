// What other programs have found: the JSON of ncdu and gdu, and listings of find. It is read into a tree, and
// the report's walk reads that tree as if it were a disk. For one thread.
//
// An entry takes 80 bytes and its name. Nothing recurses; memory alone limits the depth.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/folder_reader.h"

namespace hl {

struct ForeignEntry {
    static constexpr std::uint32_t kNone = ~std::uint32_t{0};
    enum class Kind : std::uint8_t {
        kFile,
        kOther,  ///< A link, or what is neither file nor folder.
        kFolder,
        kUnread,      ///< A folder that could not be read.
        kOtherMount,  ///< A folder on another file system, which was left out.
    };

    Kind kind = Kind::kFile;
    std::uint16_t nameLength = 0;
    std::uint64_t nameOffset = 0;
    std::uint64_t size = 0;
    std::uint64_t blocks = 0;  ///< In units of kBlockBytes.
    std::uint64_t inode = 0;
    std::uint64_t device = 0;
    std::int64_t written = 0;
    std::uint32_t owner = 0;
    std::uint32_t links = 1;  ///< More than 1 if it has other names.
    std::uint32_t firstChild = kNone, lastChild = kNone, next = kNone;

    bool isFolder() const { return kind >= Kind::kFolder; }
};

class ForeignTree {
  public:
    /// The first entry is the source; its parent is kNone. Returns the new one's place.
    std::uint32_t add(std::uint32_t parent, const ForeignEntry& entry, std::string_view name);

    std::uint32_t count() const { return static_cast<std::uint32_t>(entries_.size()); }
    const ForeignEntry& at(std::uint32_t place) const { return entries_[place]; }
    ForeignEntry& at(std::uint32_t place) { return entries_[place]; }
    std::string_view name(std::uint32_t place) const {
        return std::string_view(names_).substr(entries_[place].nameOffset, entries_[place].nameLength);
    }
    /// The path of the source; it begins with a separator.
    std::string source;
    std::int64_t written = 0;  ///< When it was found, in seconds since 1970; 0 if nobody says so.

  private:
    std::vector<ForeignEntry> entries_;
    std::string names_;
};

enum class ForeignProblem : std::uint8_t {
    kNone,
    kNoJson,  ///< It is no JSON, or none of a form that is known.
    kRecord,  ///< A record is not as it has to be.
    kTwice,   ///< A path has two records.
};

/// Reads ncdu's JSON, of version 1. What is excluded by a pattern is not in the tree.
ForeignProblem readNcdu(std::string_view text, ForeignTree& tree);
/// Reads records of `find SOURCE -printf '%s %b %T@ %U %y %p\0'`. Folders without a record of their own are
/// made.
ForeignProblem readListing(std::string_view text, ForeignTree& tree);

/// A disk that has the tree alone.
class ForeignDisk final : public FileSystem {
  public:
    explicit ForeignDisk(const ForeignTree& tree) : tree_(tree) {}

    std::unique_ptr<FolderReader> read(std::string_view source, const ReadOptions& options,
                                       WaitCallback* wait) override;
    Result<PathFacts> look(std::string_view path) override;
    Result<std::string> target(std::string_view path) override;
    bool countsBeforeCompression(std::string_view /*path*/) override { return false; }

  private:
    const ForeignTree& tree_;
};

}  // namespace hl
