#include "platform/linux/process/last_words.h"

#include <fcntl.h>
#include <sys/uio.h>
#include <unistd.h>

#include <charconv>
#include <chrono>
#include <climits>
#include <ctime>
#include <span>
#include <string_view>

namespace hl {

namespace {

iovec piece(std::string_view text) {
    return {const_cast<char*>(text.data()), text.size()};
}

// Tells whether a line of /proc/self/maps contains the address: "BEGIN-END MODE OFFSET DEVICE INODE   PATH",
// where the first two are hexadecimal.
bool mapsAddress(std::string_view line, std::uintptr_t address) {
    std::uintptr_t begin = 0, end = 0;
    const char* last = line.data() + line.size();
    const auto first = std::from_chars(line.data(), last, begin, 16);
    if (first.ptr == last || *first.ptr != '-') return false;
    std::from_chars(first.ptr + 1, last, end, 16);
    return address >= begin && address < end;
}

// Returns the file name of the module that contains `address`; the text is in `line`. "?" if none is known.
std::string_view moduleAt(std::uintptr_t address, std::span<char> line) {
    const int maps = ::open("/proc/self/maps", O_RDONLY | O_CLOEXEC);
    std::string_view name = "?";
    char block[1024];
    std::size_t length = 0;
    bool found = false;
    for (ssize_t got = 0; !found && maps >= 0 && (got = ::read(maps, block, sizeof block)) > 0;) {
        for (const char c : std::string_view(block, static_cast<std::size_t>(got))) {
            if (c != '\n') {
                if (length < line.size()) line[length++] = c;
                continue;
            }
            const std::string_view whole(line.data(), length);
            found = mapsAddress(whole, address);
            if (found && whole.find('/') != whole.npos) name = whole.substr(whole.rfind('/') + 1);
            if (found) break;
            length = 0;
        }
    }
    if (maps >= 0) ::close(maps);
    return name;
}

long zoneNow() {
    const std::time_t now = std::time(nullptr);
    std::tm fields{};
    return localtime_r(&now, &fields) != nullptr ? fields.tm_gmtoff : 0;
}

// A failure is ignored, because nobody is left to be told.
template <std::size_t N>
void write(int file, const iovec (&pieces)[N]) {
    [[maybe_unused]] const ssize_t written = ::writev(file, pieces, N);
}

}  // namespace

LastWords::LastWords(std::string log, std::string datePicture, Pieces pieces)
    : log_(std::move(log)),
      datePicture_(std::move(datePicture)),
      pieces_(std::move(pieces)),
      zone_(zoneNow()) {}

LocalTime LastWords::now() const noexcept {
    using namespace std::chrono;
    const sys_seconds local = floor<seconds>(system_clock::now()) + seconds(zone_);
    const year_month_day date(floor<days>(local));
    const hh_mm_ss time(local - floor<days>(local));
    const auto number = [](auto value) { return static_cast<int>(value); };
    return {number(date.year()),          number(unsigned{date.month()}), number(unsigned{date.day()}),
            number(time.hours().count()), number(time.minutes().count()), number(time.seconds().count())};
}

void LastWords::say(const char* description, const void* instruction) const noexcept {
    write(STDERR_FILENO, {piece(description), piece("\n")});
    char digits[64];
    const std::string_view stamp(digits, formatDate(now(), datePicture_, digits));
    char line[PATH_MAX + 128];
    const std::string_view module = moduleAt(reinterpret_cast<std::uintptr_t>(instruction), line);
    const int file = ::open(log_.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NONBLOCK, 0666);
    if (file < 0) return;
    write(file, {piece(stamp), piece(" - "), piece(pieces_[0]), piece(stamp), piece(pieces_[1]),
                 piece(module), piece(pieces_[2]), piece(description), piece(pieces_[3]), piece("\r\n\r\n")});
    ::close(file);
}

}  // namespace hl
