// Feeds any text as the table of mounts: it must be read without a fault, and the result must make sense.
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/linux/drives/mount_table.h"
#include "require.h"

using hl::fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const std::vector<hl::Mount> mounts = hl::parseMountTable(text);
    for (const hl::Mount& mount : mounts) {
        require(mount.id > 0);
        require(mount.mountPoint.starts_with('/'));
        require(!mount.kind.empty());
        require(hl::whatIsMounted(mount).starts_with(mount.source));
    }
    const hl::Mount* at = hl::mountOf(mounts, "/mnt/a/b");
    require(at == nullptr || std::string_view("/mnt/a/b").starts_with(at->mountPoint));
    return 0;
}
