#include "base/size_argument.h"

#include <charconv>

namespace hl {

std::optional<SizeArgument> sizeOfArgument(std::string_view text) {
    constexpr std::string_view kUnits = "BKMGTbkmgt";
    constexpr std::uint64_t kMost = std::uint64_t{1} << 63;
    std::uint64_t unit = 1;
    if (!text.empty()) {
        if (const std::size_t power = kUnits.find(text.back()); power != std::string_view::npos) {
            unit <<= 10 * (power % 5);
            text.remove_suffix(1);
        }
    }
    std::uint64_t tenth = 0;
    if (text.size() > 2 && text[text.size() - 2] == '.') {
        if (text.back() < '0' || text.back() > '9') return std::nullopt;
        tenth = static_cast<std::uint64_t>(text.back() - '0');
        text.remove_suffix(2);
    }
    std::uint64_t whole = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), whole);
    if (error != std::errc() || end != text.data() + text.size() || whole >= kMost / unit)
        return std::nullopt;
    return SizeArgument{whole * unit + unit * tenth / 10, unit * tenth % 10 != 0};
}

}  // namespace hl
