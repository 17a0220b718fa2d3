#include "output/found_files.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>

#include "base/text.h"
#include "output/report_writer.h"
#include "scan/file_kinds.h"

namespace hl {

FoundFormat foundFormatNamed(std::string_view name) {
    return name == "nul" ? FoundFormat::kNul : FoundFormat::kCsv;
}

void FoundLines::appendHeader(std::string& out) const {
    if (format_ != FoundFormat::kCsv) return;
    out.append("\"Path\",\"Size (Bytes)\",\"On disk\",\"Modified\",\"Owner\",\"Kind\"").append(kLineEnd);
}

void FoundLines::append(std::string& out, const FoundFile& file) const {
    if (format_ == FoundFormat::kNul) {
        out.append(file.folder).append(file.name).push_back('\0');
        return;
    }
    const std::uint32_t owner = file.details.owner;
    appendText(out, std::string(file.folder).append(file.name));
    out.append(",").append(std::to_string(file.entry.size));
    out.append(",").append(std::to_string(file.details.blocks * kBlockBytes));
    out.append(",\"").append(isoTime(file.details.written)).append("\",");
    appendText(out, owners_ != nullptr ? owners_->nameOf(owner) : "#" + std::to_string(owner));
    out.append(",\"").append(nameOf(kindOfEnding(Ending(file.name).text()))).append("\"").append(kLineEnd);
}

void FoundLines::appendText(std::string& out, std::string_view text) const {
    out += '"';
    for (const char c : forTerminal_ ? visible(text) : decodable(text)) {
        if (c == '"') out += '"';
        out += c;
    }
    out += '"';
}

// The calendar of the library ends with the year 32,767.
std::string isoTime(std::int64_t secondsSinceEpoch) {
    using namespace std::chrono;
    constexpr std::int64_t kMost = 900'000'000'000;
    const sys_seconds moment{seconds(std::clamp(secondsSinceEpoch, -kMost, kMost))};
    const auto day = floor<days>(moment);
    const year_month_day date(day);
    const hh_mm_ss time(moment - day);
    std::array<char, 48> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02dZ", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                  static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                  static_cast<int>(time.seconds().count()));
    return text.data();
}

}  // namespace hl
