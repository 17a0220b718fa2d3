#include "platform/linux/preview/file_confinement.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>

namespace hl {

namespace {

// The headers of an older system lack these. The numbers are the same on every machine.
constexpr long kCreate = 444, kAddRule = 445, kRestrictSelf = 446;
constexpr unsigned kAskVersion = 1;
constexpr int kBelowPath = 1;

constexpr std::uint64_t kExecute = 1U << 0, kWriteFile = 1U << 1, kReadFile = 1U << 2, kReadFolder = 1U << 3;
constexpr std::uint64_t kTruncate = 1U << 14, kDeviceCalls = 1U << 15;
constexpr std::uint64_t kOfFiles = kExecute | kWriteFile | kReadFile | kTruncate | kDeviceCalls;

struct RulesetWish {
    std::uint64_t files, network, outside;
};
struct [[gnu::packed]] PathRule {
    std::uint64_t allowed;
    std::int32_t place;
};

// Each version knows more ways to a file, with one bit for each.
std::uint64_t knownToVersion(int version) {
    constexpr unsigned kFirst = 13;
    unsigned bits = kFirst;
    if (version >= 2) ++bits;
    if (version >= 3) ++bits;
    if (version >= 5) ++bits;
    return (std::uint64_t{1} << bits) - 1;
}

std::uint64_t waysOf(FileConfinement::Use use) {
    switch (use) {
        case FileConfinement::Use::kRead:
            return kReadFile | kReadFolder;
        case FileConfinement::Use::kRun:
            return kReadFile | kReadFolder | kExecute;
        case FileConfinement::Use::kReadAndWrite:
            return kReadFile | kWriteFile | kTruncate;
        case FileConfinement::Use::kAll:
            return ~std::uint64_t{0};
    }
    return 0;
}

}  // namespace

int FileConfinement::version() {
    return static_cast<int>(std::max(::syscall(kCreate, nullptr, 0, kAskVersion), 0L));
}

FileConfinement::FileConfinement() : version_(version()) {
    if (version_ < 1) return;
    constexpr std::uint64_t kBoth = 3;  // Binding and connecting in the network; sockets and signals.
    const RulesetWish wish{knownToVersion(version_), kBoth, kBoth};
    const std::size_t size = version_ >= 6 ? 24 : version_ >= 4 ? 16 : 8;
    rules_ = Descriptor(static_cast<int>(::syscall(kCreate, &wish, size, 0)));
}

void FileConfinement::allow(const std::string& path, Use use) const {
    if (!rules_.isOpen()) return;
    const Descriptor place(::open(path.c_str(), O_PATH | O_CLOEXEC));
    struct stat facts {};
    if (!place.isOpen() || ::fstat(place.number(), &facts) != 0) return;
    const std::uint64_t sensible = S_ISDIR(facts.st_mode) ? ~std::uint64_t{0} : kOfFiles;
    const PathRule rule{waysOf(use) & sensible & knownToVersion(version_), place.number()};
    ::syscall(kAddRule, rules_.number(), kBelowPath, &rule, 0);
}

bool FileConfinement::enter() const {
    return version_ < 1 || (rules_.isOpen() && ::syscall(kRestrictSelf, rules_.number(), 0) == 0);
}

}  // namespace hl
