#include "base/base64.h"

namespace hl {

namespace {
constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
}

std::string base64(std::string_view bytes) {
    std::string out;
    for (std::size_t at = 0; at < bytes.size(); at += 3) {
        unsigned three = 0;
        for (std::size_t i = 0; i < 3; ++i)
            three = three << 8 | (at + i < bytes.size() ? static_cast<unsigned char>(bytes[at + i]) : 0U);
        for (std::size_t i = 0; i < 4; ++i)
            out += at + i <= bytes.size() ? kDigits[three >> (18 - 6 * i) & 63U] : '=';
    }
    return out;
}

std::optional<std::string> base64Bytes(std::string_view text) {
    if (text.size() % 4 != 0) return std::nullopt;
    std::size_t missing = 0;
    while (missing < 2 && text.ends_with('=')) {
        text.remove_suffix(1);
        ++missing;
    }
    std::string out;
    unsigned bits = 0, count = 0;
    for (const char c : text) {
        const std::size_t digit = kDigits.find(c);
        if (digit == std::string_view::npos) return std::nullopt;
        bits = bits << 6 | static_cast<unsigned>(digit);
        count += 6;
        if (count < 8) continue;
        count -= 8;
        out += static_cast<char>(bits >> count & 255U);
    }
    return out;
}

}  // namespace hl
