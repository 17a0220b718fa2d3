#include "base/text.h"

#include <algorithm>
#include <charconv>
#include <span>

namespace hl {

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";  // U+FFFD

std::string_view trimOf(std::string_view text, std::string_view set) {
    const std::size_t first = text.find_first_not_of(set);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(set) - first + 1);
}

struct Letters {
    char32_t first;
    char32_t last;
    std::int32_t step = 1;  ///< The distance from a capital letter to its small one.

    bool hold(char32_t c) const { return c >= first && c <= last; }
};

// In these ranges a capital and its small letter are neighbours; the capitals are on even code points, or in
// the second table on odd ones.
constexpr Letters kPairsFromEven[] = {{0x100, 0x12F}, {0x132, 0x137}, {0x14A, 0x177},   {0x1A0, 0x1A5},
                                      {0x1DE, 0x1EF}, {0x1F8, 0x21F}, {0x222, 0x233},   {0x460, 0x481},
                                      {0x48A, 0x4BF}, {0x4D0, 0x52F}, {0x1E00, 0x1E95}, {0x1EA0, 0x1EFF}};
constexpr Letters kPairsFromOdd[] = {
    {0x139, 0x148}, {0x179, 0x17E}, {0x1AF, 0x1B0}, {0x1CD, 0x1DC}, {0x4C1, 0x4CE}};
// These ranges hold capitals alone; their small letters are elsewhere.
constexpr Letters kCapitals[] = {
    {0xC0, 0xD6, 32},   {0xD8, 0xDE, 32},   {0x178, 0x178, -121}, {0x18F, 0x18F, 202}, {0x386, 0x386, 38},
    {0x388, 0x38A, 37}, {0x38C, 0x38C, 64}, {0x38E, 0x38F, 63},   {0x391, 0x3A1, 32},  {0x3A3, 0x3AB, 32},
    {0x400, 0x40F, 80}, {0x410, 0x42F, 32}, {0x4C0, 0x4C0, 15}};

bool isIn(std::span<const Letters> ranges, char32_t c) {
    return std::any_of(ranges.begin(), ranges.end(), [c](const Letters& range) { return range.hold(c); });
}

char32_t moved(char32_t c, std::int32_t step) {
    return static_cast<char32_t>(static_cast<std::int32_t>(c) + step);
}

char32_t lowerOf(char32_t c) {
    if (c < 0x80) return c >= 'A' && c <= 'Z' ? c + 32 : c;
    for (const Letters& range : kCapitals) {
        if (range.hold(c)) return moved(c, range.step);
    }
    if (isIn(kPairsFromEven, c)) return c | 1U;
    if (isIn(kPairsFromOdd, c)) return c % 2 == 1 ? c + 1 : c;
    if (c == 0x1E9E) return 0xDF;  // This is the capital sharp s; the small one has no single capital letter.
    return c;
}

char32_t upperOf(char32_t c) {
    if (c < 0x80) return c >= 'a' && c <= 'z' ? c - 32 : c;
    for (const Letters& range : kCapitals) {
        if (range.hold(moved(c, -range.step))) return moved(c, -range.step);
    }
    if (isIn(kPairsFromEven, c)) return c & ~char32_t{1};
    if (isIn(kPairsFromOdd, c)) return c % 2 == 0 ? c - 1 : c;
    return c;
}

// Most text is ASCII, which needs no decoding.
template <char32_t (*Map)(char32_t)>
void appendMapped(std::string& out, std::string_view text) {
    out.reserve(out.size() + text.size());
    while (!text.empty()) {
        if (const auto byte = static_cast<unsigned char>(text[0]); byte < 0x80) {
            out += static_cast<char>(Map(byte));
            text.remove_prefix(1);
            continue;
        }
        const CodePoint point = firstCodePoint(text);
        if (point.value) {
            appendUtf8(out, Map(*point.value));
        } else {
            out += text.substr(0, point.length);
        }
        text.remove_prefix(point.length);
    }
}

template <char32_t (*Map)(char32_t)>
std::string mapped(std::string_view text) {
    std::string out;
    appendMapped<Map>(out, text);
    return out;
}

// A stray byte sorts after every code point, so that it never equals a character.
char32_t foldedFront(std::string_view& text) {
    const auto byte = static_cast<unsigned char>(text[0]);
    if (byte < 0x80) {
        text.remove_prefix(1);
        return lowerOf(byte);
    }
    const CodePoint point = firstCodePoint(text);
    text.remove_prefix(point.value ? point.length : 1);
    return point.value ? lowerOf(*point.value) : 0x110000U + byte;
}

// The standard library does not read a "+". It is kept before a second sign, so that "+-5" is no number.
std::string_view withoutPlus(std::string_view number) {
    if (number.starts_with('+') && !number.starts_with("+-")) number.remove_prefix(1);
    return number;
}

bool turnsDirection(char32_t c) {
    return c == 0x200E || c == 0x200F || c == 0x061C || (c >= 0x202A && c <= 0x202E) ||
           (c >= 0x2066 && c <= 0x2069);
}

}  // namespace

std::string_view trimBlanks(std::string_view text) {
    return trimOf(text, " ");
}
std::string_view trimWhite(std::string_view text) {
    return trimOf(text, " \t\r\n");
}

std::string lowerCase(std::string_view text) {
    return mapped<lowerOf>(text);
}
std::string upperCase(std::string_view text) {
    return mapped<upperOf>(text);
}

int compareFolded(std::string_view a, std::string_view b) {
    while (!a.empty() && !b.empty()) {
        const char32_t x = foldedFront(a);
        const char32_t y = foldedFront(b);
        if (x != y) return x < y ? -1 : 1;
    }
    return static_cast<int>(!a.empty()) - static_cast<int>(!b.empty());
}

// Packs one byte for each character; the end of the text counts as 0. A character outside ASCII is above all
// that are in it, and from there on all texts get the same bytes.
FoldedKey foldedKey(std::string_view text) {
    constexpr unsigned kBits = 8, kEach = 8;
    constexpr std::uint64_t kBeyond = 0xFF;
    FoldedKey parts{};
    bool beyond = false;
    for (unsigned i = 0; i < 2 * kEach; ++i) {
        std::uint64_t byte = 0;
        if (!beyond && !text.empty()) byte = std::min<std::uint64_t>(foldedFront(text), kBeyond);
        beyond = beyond || byte >= 0x80;
        parts[i / kEach] = parts[i / kEach] << kBits | (beyond ? kBeyond : byte);
    }
    return parts;
}

bool FoldedPart::isIn(std::string_view text) {
    folded_.clear();
    appendMapped<lowerOf>(folded_, text);
    return folded_.find(part_) != std::string::npos;
}

std::optional<std::int64_t> parseInteger(std::string_view text) {
    text = withoutPlus(trimBlanks(text));
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

std::optional<double> parseNumber(std::string_view text) {
    text = withoutPlus(trimBlanks(text));
    // The standard library would also read "inf" and "nan".
    if (text.find_first_not_of("-.0123456789") != std::string_view::npos) return std::nullopt;
    double value = 0;
    const auto [end, error] =
        std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

std::string replaceAll(std::string_view text, std::string_view from, std::string_view to) {
    std::string out;
    for (;;) {
        const std::size_t at = from.empty() ? std::string_view::npos : text.find(from);
        out.append(text.substr(0, at));
        if (at == std::string_view::npos) return out;
        out.append(to);
        text.remove_prefix(at + from.size());
    }
}

CodePoint firstCodePoint(std::string_view text) {
    const auto lead = static_cast<unsigned char>(text[0]);
    if (lead < 0x80) return {lead, 1};
    if (lead < 0xC2 || lead > 0xF4) return {std::nullopt, 1};
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    // The second byte shows whether a code point is written too long, is a half surrogate, or is too large;
    // the bytes behind it need no such check.
    unsigned least = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    unsigned most = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    char32_t value = lead & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i, least = 0x80, most = 0xBF) {
        const unsigned byte = i < text.size() ? static_cast<unsigned char>(text[i]) : 0;
        if (byte < least || byte > most) return {std::nullopt, i};
        value = value << 6 | (byte & 0x3FU);
    }
    return {value, length};
}

void appendUtf8(std::string& out, char32_t c) {
    const auto put = [&out](char32_t byte) { out += static_cast<char>(byte); };
    if (c < 0x80) {
        put(c);
    } else if (c < 0x800) {
        put(0xC0 | c >> 6);
        put(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        put(0xE0 | c >> 12);
        put(0x80 | (c >> 6 & 0x3F));
        put(0x80 | (c & 0x3F));
    } else {
        put(0xF0 | c >> 18);
        put(0x80 | (c >> 12 & 0x3F));
        put(0x80 | (c >> 6 & 0x3F));
        put(0x80 | (c & 0x3F));
    }
}

std::size_t characterCount(std::string_view text) {
    std::size_t count = 0;
    for (; !text.empty(); ++count) text.remove_prefix(firstCodePoint(text).length);
    return count;
}

std::string_view firstCharacters(std::string_view text, std::size_t count) {
    std::string_view rest = text;
    for (; count > 0 && !rest.empty(); --count) rest.remove_prefix(firstCodePoint(rest).length);
    return text.substr(0, text.size() - rest.size());
}

std::string decodable(std::string_view bytes) {
    std::string out;
    out.reserve(bytes.size());
    while (!bytes.empty()) {
        const CodePoint point = firstCodePoint(bytes);
        out.append(point.value ? bytes.substr(0, point.length) : kReplacement);
        bytes.remove_prefix(point.length);
    }
    return out;
}

std::string visible(std::string_view bytes) {
    std::string out;
    out.reserve(bytes.size());
    while (!bytes.empty()) {
        const CodePoint point = firstCodePoint(bytes);
        const char32_t c = point.value.value_or(0xFFFD);
        if (c < 0x20) {
            appendUtf8(out, 0x2400 + c);
        } else if (c == 0x7F) {
            appendUtf8(out, 0x2421);
        } else if ((c >= 0x80 && c < 0xA0) || turnsDirection(c)) {
            appendUtf8(out, 0xFFFD);
        } else {
            appendUtf8(out, c);
        }
        bytes.remove_prefix(point.length);
    }
    return out;
}

}  // namespace hl
