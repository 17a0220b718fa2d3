// What an entry of an open folder is, and giving it a name that nobody has. It has no state and may be used
// from any thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/folder_id.h"
#include "platform/linux/process/descriptor.h"

namespace hl {

/// An entry of the trash named NAME has a file NAME.trashinfo in the trash's folder "info".
inline constexpr std::string_view kInfoEnding = ".trashinfo";

struct FoundEntry {
    std::uint64_t mount = 0;  ///< The device, if the kernel does not distinguish mounts.
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    unsigned mode = 0;
    unsigned owner = 0;

    FolderId id() const { return {device, inode}; }
    bool is(const FoundEntry& other) const { return mount == other.mount && id() == other.id(); }
};

/// Looks at an entry of an open folder, or at the folder itself if the name is empty; a link is not followed.
/// Returns a system error code.
int look(int folder, const std::string& name, FoundEntry& entry);

/// Moves an entry of one open folder to another, where nothing may have the new name: EEXIST. Some file
/// systems cannot check that themselves; there something that comes between the look and the move is
/// replaced. Returns a system error code.
int renameAnew(const Descriptor& from, const std::string& name, const Descriptor& to,
               const std::string& newName);

}  // namespace hl
