#include "platform/linux/space/loop_file.h"

#include <errno.h>
#include <fcntl.h>
#include <linux/loop.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <array>
#include <cstring>
#include <new>

#include "platform/linux/process/descriptor.h"

namespace hl {

namespace {

/// The handle by which the ext file systems find an inode, as for a server of files. They take the generation
/// 0 for any.
struct ExtHandle {
    static constexpr int kType = 1;
    std::uint32_t inode = 0, generation = 0;
};

std::string numbersOf(std::uint64_t device) {
    return std::to_string(major(device)) + ":" + std::to_string(minor(device));
}

std::optional<std::uint64_t> bytesByInode(const Mount& mount, const FolderId& id) {
    constexpr std::uint64_t kBlock = 512;
    const Descriptor above = openAt(AT_FDCWD, mount.mountPoint, O_RDONLY | O_DIRECTORY);
    alignas(file_handle) std::array<char, sizeof(file_handle) + sizeof(ExtHandle)> memory{};
    auto* handle = new (memory.data()) file_handle{};
    handle->handle_type = ExtHandle::kType;
    handle->handle_bytes = sizeof(ExtHandle);
    const ExtHandle of{.inode = static_cast<std::uint32_t>(id.inode)};
    std::memcpy(handle->f_handle, &of, sizeof of);
    const Descriptor file(::open_by_handle_at(above.number(), handle, O_PATH | O_CLOEXEC));
    struct stat facts {};
    if (!file.isOpen() || ::fstat(file.number(), &facts) != 0) return std::nullopt;
    if (facts.st_dev != id.device || facts.st_ino != id.inode || facts.st_nlink != 0) return std::nullopt;
    return static_cast<std::uint64_t>(facts.st_blocks) * kBlock;
}

}  // namespace

int deletedFileOfLoop(const std::string& device, const std::vector<Mount>& mounts, HeldFile& file) {
    const Descriptor loop = openAt(AT_FDCWD, "/dev/" + device, O_RDONLY | O_NONBLOCK);
    if (!loop.isOpen()) return errno;
    loop_info64 info{};
    if (::ioctl(loop.number(), LOOP_GET_STATUS64, &info) != 0) return errno;
    file.id = {info.lo_device, info.lo_inode};
    file.links = 0;
    for (const Mount& mount : mounts)
        if (!file.bytes && mount.device == numbersOf(info.lo_device) && mount.kind.starts_with("ext"))
            file.bytes = bytesByInode(mount, file.id);
    return 0;
}

}  // namespace hl
