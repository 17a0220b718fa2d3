// What the kernel tells of an entry when a folder is read (linux_dirent64). Pure data; the records lie one
// behind the other in the buffer of DirectoryCalls::readEntries.
#pragma once

#include <cstddef>
#include <cstdint>

namespace hl {

struct FolderRecord {
    std::uint64_t inode;
    std::int64_t cookie;   ///< Where reading goes on behind this entry.
    std::uint16_t length;  ///< In bytes, to the next record.
    std::uint8_t type;     ///< DT_DIR and so on; some file systems tell DT_UNKNOWN for all.
    char name[1];          ///< Ends with a NUL.
};

inline const FolderRecord* folderRecord(const char* records, std::size_t at) {
    return reinterpret_cast<const FolderRecord*>(records + at);
}

/// Tells whether it is the name that each folder has for itself, or for the one above.
inline bool isDots(const char* name) {
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

}  // namespace hl
