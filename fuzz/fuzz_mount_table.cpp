// The table of mounts: any text is read without a fault, and what comes out of it makes sense.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/linux/mount_table.h"
#include "require.h"

using hl::fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    for (const hl::Mount& mount : hl::parseMountTable(text)) {
        require(mount.id > 0);
        require(mount.mountPoint.starts_with('/'));
        require(!mount.kind.empty());
        require(hl::whatIsMounted(mount).starts_with(mount.source));
    }
    return 0;
}
