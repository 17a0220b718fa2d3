#include "base/text_encoding.h"

#include <algorithm>
#include <cstdint>

#include "base/text.h"

namespace hl {

namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF", kLittleMark = "\xFF\xFE", kBigMark = "\xFE\xFF";
constexpr char32_t kReplacementPoint = 0xFFFD;
constexpr std::size_t kLongestCharacter = 4;

// The code points of the bytes 0x80 to 0x9F, where Windows-1252 differs from Latin 1. Five bytes have no
// character and keep their number.
constexpr char16_t kWindows1252[32] = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                       0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                       0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                       0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

// In UTF-16 with Latin letters, nearly all zero bytes stand in the same half of each unit.
std::pair<std::size_t, std::size_t> zerosInHalves(std::string_view bytes) {
    std::size_t zeros[2] = {0, 0};
    for (std::size_t i = 0; i < bytes.size(); ++i)
        if (bytes[i] == '\0') ++zeros[i % 2];
    return {zeros[0], zeros[1]};
}

bool isUtf8(std::string_view bytes, bool cut) {
    while (!bytes.empty()) {
        const CodePoint point = firstCodePoint(bytes);
        if (!point.value) return cut && bytes.size() < kLongestCharacter;
        bytes.remove_prefix(point.length);
    }
    return true;
}

std::string fromUtf8(std::string_view bytes, bool cut) {
    // A text that was cut may end with a part of a character.
    for (std::size_t i = 1; cut && i < kLongestCharacter && i <= bytes.size(); ++i) {
        const auto byte = static_cast<unsigned char>(bytes[bytes.size() - i]);
        if (byte < 0xC0) continue;
        if (!firstCodePoint(bytes.substr(bytes.size() - i)).value) bytes.remove_suffix(i);
        break;
    }
    return decodable(bytes);
}

std::string fromUtf16(std::string_view bytes, bool big) {
    const auto unit = [&](std::size_t at) {
        const auto first = static_cast<unsigned char>(bytes[at]);
        const auto second = static_cast<unsigned char>(bytes[at + 1]);
        return static_cast<char32_t>(big ? first << 8 | second : second << 8 | first);
    };
    std::string out;
    for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
        char32_t c = unit(at);
        const bool pair = c >= 0xD800 && c < 0xDC00 && at + 3 < bytes.size() && unit(at + 2) >= 0xDC00 &&
                          unit(at + 2) < 0xE000;
        if (pair) {
            c = 0x10000 + ((c - 0xD800) << 10) + (unit(at + 2) - 0xDC00);
            at += 2;
        }
        appendUtf8(out, c >= 0xD800 && c < 0xE000 ? kReplacementPoint : c);
    }
    return out;
}

std::string fromWindows1252(std::string_view bytes) {
    std::string out;
    out.reserve(bytes.size() + bytes.size() / 8);
    for (const char one : bytes) {
        const auto byte = static_cast<unsigned char>(one);
        appendUtf8(out, byte >= 0x80 && byte < 0xA0 ? kWindows1252[byte - 0x80] : char32_t{byte});
    }
    return out;
}

}  // namespace

TextEncoding guessedEncoding(std::string_view bytes, bool cut) {
    if (bytes.starts_with(kUtf8Mark)) return TextEncoding::kUtf8;
    if (bytes.starts_with(kLittleMark)) return TextEncoding::kUtf16Little;
    if (bytes.starts_with(kBigMark)) return TextEncoding::kUtf16Big;
    constexpr std::size_t kLookedAt = 4096;
    const std::string_view start = bytes.substr(0, kLookedAt);
    const auto [even, odd] = zerosInHalves(start);
    const std::size_t many = std::max<std::size_t>(1, start.size() / 4);
    if (odd >= many && even * 8 <= odd) return TextEncoding::kUtf16Little;
    if (even >= many && odd * 8 <= even) return TextEncoding::kUtf16Big;
    return isUtf8(bytes, cut) ? TextEncoding::kUtf8 : TextEncoding::kWindows1252;
}

std::string decodedText(std::string_view bytes, bool cut) {
    switch (guessedEncoding(bytes, cut)) {
        case TextEncoding::kUtf8:
            if (bytes.starts_with(kUtf8Mark)) bytes.remove_prefix(kUtf8Mark.size());
            return fromUtf8(bytes, cut);
        case TextEncoding::kUtf16Little:
            if (bytes.starts_with(kLittleMark)) bytes.remove_prefix(kLittleMark.size());
            return fromUtf16(bytes, false);
        case TextEncoding::kUtf16Big:
            if (bytes.starts_with(kBigMark)) bytes.remove_prefix(kBigMark.size());
            return fromUtf16(bytes, true);
        case TextEncoding::kWindows1252:
            break;
    }
    return fromWindows1252(bytes);
}

}  // namespace hl
