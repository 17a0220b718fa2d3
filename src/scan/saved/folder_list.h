// The folders of a scan in the order of their paths, with the figures of the files directly in each: what two
// scans are compared by. It is made of a saved scan or of the report. For one thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "scan/saved/report_records.h"
#include "scan/saved/scan_reader.h"

namespace hl {

struct ListedFolder {
    std::uint64_t inode = 0;
    std::int64_t created = 0;  ///< With kScanCreated.
    FileSums own;
    std::uint32_t flags = 0;  ///< See ScanFlag.
    std::uint32_t parent = 0;
    std::uint32_t end = 0;  ///< The place behind all that lies in it.
    Row row = kNoRow;       ///< In the report, if the list was made of it.
    std::uint64_t nameOffset = 0;
    std::uint16_t nameLength = 0;
    bool onSourceDisk = true;  ///< It lies on the same disk as the source.
};

/// The source has place 0. What lies in a folder comes right behind it, sorted by the bytes of names.
class FolderList {
  public:
    static constexpr std::uint32_t kNone = ~std::uint32_t{0};

    /// Neither needs the file or the report any longer.
    static FolderList of(const ScanFile& file);
    static FolderList of(const ScanContext& scan, Row source);

    std::uint32_t size() const { return static_cast<std::uint32_t>(folders_.size()); }
    const ListedFolder& at(std::uint32_t place) const { return folders_[place]; }
    std::string_view name(std::uint32_t place) const {
        return std::string_view(names_).substr(folders_[place].nameOffset, folders_[place].nameLength);
    }
    /// The path below the source; empty for the source.
    std::string path(std::uint32_t place) const;

  private:
    void add(const ScanRecord& record, std::uint32_t parent, std::uint64_t disk);
    void sortByNames();
    void closeTrees();

    std::vector<ListedFolder> folders_;
    std::string names_;
    std::vector<std::uint64_t> disks_;  ///< While it is made: the disk of each folder.
};

}  // namespace hl
