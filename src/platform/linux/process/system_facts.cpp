#include "platform/linux/process/system_facts.h"

#include <pwd.h>
#include <sys/auxv.h>
#include <sys/resource.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string_view>
#include <vector>

#include "base/text.h"
#include "platform/linux/process/descriptor.h"

namespace hl {

namespace {

constexpr std::uint64_t kKilobyte = 1024;
constexpr std::size_t kLongestFile = std::size_t{16} << 20;  // Bytes; a machine may have many processors.

// Returns the first line and takes it, with its end, from the text. Streams would do that, too, but a report
// of a small folder would spend more time on setting them up than on the rest.
std::string_view takeLine(std::string_view& text) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    return line;
}

// Returns the value behind the first separator of a line that begins with `key`, which blanks may surround;
// empty if it does not.
std::string_view valueIn(std::string_view line, std::string_view key, char separator) {
    const std::size_t at = line.find(separator);
    if (at == std::string_view::npos || trimWhite(line.substr(0, at)) != key) return {};
    return trimWhite(line.substr(at + 1));
}

// Returns the first value of `key` that is not empty; empty if there is none.
std::string valueOf(std::string_view text, std::string_view key, char separator) {
    while (!text.empty())
        if (const auto value = valueIn(takeLine(text), key, separator); !value.empty())
            return std::string(value);
    return {};
}

std::uint64_t numberAtFront(const std::string& text) {
    return std::strtoull(text.c_str(), nullptr, 10);
}

std::uint64_t memoryValue(const std::string& meminfo, std::string_view key) {
    return numberAtFront(valueOf(meminfo, key, ':')) * kKilobyte;
}

// Returns the value of a shell assignment, as release files write it, without its quotes and backslashes.
std::string unquoted(std::string_view value) {
    if (value.size() >= 2 && (value[0] == '"' || value[0] == '\'') && value.back() == value[0]) {
        value = value.substr(1, value.size() - 2);
    }
    std::string out;
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (value[i] == '\\' && i + 1 < value.size()) ++i;
        out += value[i];
    }
    return out;
}

utsname kernel() {
    utsname name = {};
    uname(&name);
    return name;
}

std::string majorAndMinor(const std::string& release) {
    const std::size_t first = release.find('.');
    if (first == std::string::npos) return release;
    return release.substr(0, release.find_first_not_of("0123456789", first + 1));
}

std::uint64_t pageSize() {
    return static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
}

// Returns field `index` of /proc/self/statm, in bytes: 0 is the address space in use, 1 the memory.
std::uint64_t statmBytes(const std::string& statm, int index) {
    const char* at = statm.c_str();
    std::uint64_t pages = 0;
    for (int i = 0; i <= index; ++i) {
        char* end = nullptr;
        pages = std::strtoull(at, &end, 10);
        at = end;
    }
    return pages * pageSize();
}

// Returns what a process may address: its limit, or half of what 48 bits (or the bits of a pointer) can.
std::uint64_t addressSpace() {
    const std::uint64_t whole = std::uint64_t{1} << std::min<std::size_t>(8 * sizeof(void*), 47);
    rlimit limit = {};
    const bool limited = getrlimit(RLIMIT_AS, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY;
    return limited ? std::min<std::uint64_t>(limit.rlim_cur, whole) : whole;
}

std::uint64_t difference(std::uint64_t from, std::uint64_t amount) {
    return from > amount ? from - amount : 0;
}

}  // namespace

std::string LinuxSystemFacts::read(const char* path) const {
    return contentOf(root_ + path, kLongestFile);
}

SystemName LinuxSystemFacts::systemName() {
    const utsname system = kernel();
    std::string release = read("/etc/os-release");
    if (release.empty()) release = read("/usr/lib/os-release");
    const auto entry = [&](std::string_view key) { return unquoted(valueOf(release, key, '=')); };
    SystemName name{entry("PRETTY_NAME"), majorAndMinor(system.release), entry("ID")};
    if (name.name.empty()) name.name = system.sysname;
    if (name.identifier.empty()) name.identifier = "linux";
    if (const std::string version = entry("VERSION_ID"); !version.empty()) name.identifier += " " + version;
    name.identifier += std::string(" B") + system.release;
    return name;
}

MemoryFacts LinuxSystemFacts::memory() {
    const std::string meminfo = read("/proc/meminfo");
    MemoryFacts facts;
    facts.physicalTotal = memoryValue(meminfo, "MemTotal");
    facts.physicalAvailable = memoryValue(meminfo, "MemAvailable");
    facts.pageFileTotal = memoryValue(meminfo, "SwapTotal");
    facts.pageFileAvailable = memoryValue(meminfo, "SwapFree");
    facts.virtualTotal = addressSpace();
    facts.virtualAvailable = difference(facts.virtualTotal, statmBytes(read("/proc/self/statm"), 0));
    if (facts.physicalTotal > 0) {
        const std::uint64_t used = difference(facts.physicalTotal, facts.physicalAvailable);
        facts.loadPercent = static_cast<std::uint32_t>(used * 100 / facts.physicalTotal);
    }
    return facts;
}

std::uint64_t LinuxSystemFacts::workingSet() {
    return statmBytes(read("/proc/self/statm"), 1);
}

std::uint64_t LinuxSystemFacts::upTimeSeconds() {
    return numberAtFront(read("/proc/uptime"));
}

std::string LinuxSystemFacts::processorName() {
    const std::string cpus = read("/proc/cpuinfo");
    std::vector<std::string> names;
    for (std::string_view rest = cpus; !rest.empty();) {
        const std::string name(valueIn(takeLine(rest), "model name", ':'));
        if (!name.empty() && std::find(names.begin(), names.end(), name) == names.end())
            names.push_back(name);
    }
    if (names.empty()) return kernel().machine;  // Some architectures do not tell a name.
    std::string joined = names[0];
    for (std::size_t i = 1; i < names.size(); ++i) joined += "\t" + names[i];
    return joined;
}

std::string LinuxSystemFacts::userName() {
    const uid_t user = geteuid();
    std::vector<char> buffer(1024);
    passwd entry = {};
    passwd* found = nullptr;
    while (getpwuid_r(user, &entry, buffer.data(), buffer.size(), &found) == ERANGE)
        buffer.resize(buffer.size() * 2);
    return found != nullptr ? found->pw_name : std::to_string(user);
}

std::string LinuxSystemFacts::computerName() {
    char name[256] = {};
    return gethostname(name, sizeof name - 1) == 0 ? name : std::string();
}

bool LinuxSystemFacts::adminRights() {
    return geteuid() == 0;
}

bool LinuxSystemFacts::emulated() {
    const std::string machine = kernel().machine;
    return sizeof(void*) == 4 && machine.find("64") != std::string::npos;
}

std::string LinuxSystemFacts::executablePath() {
    std::error_code error;
    auto path = std::filesystem::read_symlink("/proc/self/exe", error);
    if (!error) return path.string();
    const char* told = reinterpret_cast<const char*>(getauxval(AT_EXECFN));
    // /proc would give the same: the place that links, such as a package's in /usr/bin, lead to.
    const auto absolute = std::filesystem::absolute(told != nullptr ? told : "harborlantern", error);
    path = std::filesystem::canonical(absolute, error);
    return error ? absolute.string() : path.string();
}

std::string LinuxSystemFacts::environment(const std::string& name) {
    const char* value = std::getenv(name.c_str());
    return value != nullptr ? value : std::string();
}

}  // namespace hl
