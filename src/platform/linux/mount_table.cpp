#include "platform/linux/mount_table.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>

#include "base/text.h"

namespace hl {

namespace {

bool octal(char c) {
    return c >= '0' && c <= '7';
}

// "\040" and the like: blank, tab, line break and backslash are written so.
std::string unescaped(std::string_view text) {
    std::string out;
    while (!text.empty()) {
        if (text.size() >= 4 && text[0] == '\\' && octal(text[1]) && octal(text[2]) && octal(text[3])) {
            out += static_cast<char>((text[1] - '0') * 64 + (text[2] - '0') * 8 + (text[3] - '0'));
            text.remove_prefix(4);
        } else {
            out += text[0];
            text.remove_prefix(1);
        }
    }
    return out;
}

std::string_view nextField(std::string_view& line) {
    const std::size_t end = line.find(' ');
    const std::string_view field = line.substr(0, end);
    line.remove_prefix(end == std::string_view::npos ? line.size() : end + 1);
    return field;
}

// 36 35 98:0 /root /point rw,noatime shared:1 - ext3 /dev/root rw,errors=continue
bool parseLine(std::string_view line, Mount& mount) {
    const auto id = parseInteger(nextField(line));
    nextField(line);  // The mount above it.
    nextField(line);  // Device numbers.
    mount.root = unescaped(nextField(line));
    mount.mountPoint = unescaped(nextField(line));
    nextField(line);  // Options of the mount.
    while (!line.empty() && nextField(line) != "-") {
    }
    mount.kind = unescaped(nextField(line));
    mount.source = unescaped(nextField(line));
    mount.id = static_cast<std::uint64_t>(id.value_or(0));
    return id.value_or(0) > 0 && mount.mountPoint.starts_with('/') && !mount.kind.empty();
}

}  // namespace

std::vector<Mount> parseMountTable(std::string_view text) {
    std::vector<Mount> mounts;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        Mount mount;
        if (parseLine(text.substr(0, end), mount)) mounts.push_back(std::move(mount));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return mounts;
}

std::string whatIsMounted(const Mount& mount) {
    return mount.root == "/" || mount.root.empty() ? mount.source : mount.source + ":" + mount.root;
}

std::vector<Mount> readMountTable() {
    const int file = ::open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC);
    if (file < 0) return {};
    std::string text;
    std::array<char, 16384> buffer;
    for (ssize_t got = 0; (got = ::read(file, buffer.data(), buffer.size())) > 0;)
        text.append(buffer.data(), static_cast<std::size_t>(got));
    ::close(file);
    return parseMountTable(text);
}

}  // namespace hl
