#include "base/text.h"

#include <algorithm>
#include <charconv>

namespace hl {

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";  // U+FFFD

std::string_view trimOf(std::string_view text, std::string_view set) {
    const std::size_t first = text.find_first_not_of(set);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(set) - first + 1);
}

bool isContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

// Letters that come in pairs of upper and lower case next to each other, upper case on even code points.
bool pairedFromEven(char32_t c) {
    return (c >= 0x100 && c <= 0x137 && c != 0x130 && c != 0x131) || (c >= 0x14A && c <= 0x177) ||
           (c >= 0x460 && c <= 0x481) || (c >= 0x48A && c <= 0x4BF) || (c >= 0x4D0 && c <= 0x52F) ||
           (c >= 0x1E00 && c <= 0x1E95) || (c >= 0x1EA0 && c <= 0x1EFF);
}

bool pairedFromOdd(char32_t c) { return (c >= 0x139 && c <= 0x148) || (c >= 0x179 && c <= 0x17E); }

char32_t lowerOf(char32_t c) {
    if (c < 0x80) return c >= 'A' && c <= 'Z' ? c + 32 : c;
    if (c >= 0xC0 && c <= 0xDE && c != 0xD7) return c + 32;
    if (pairedFromEven(c)) return c | 1U;
    if (pairedFromOdd(c)) return c % 2 == 1 ? c + 1 : c;
    if (c >= 0x391 && c <= 0x3AB && c != 0x3A2) return c + 32;
    if (c >= 0x410 && c <= 0x42F) return c + 32;
    if (c >= 0x400 && c <= 0x40F) return c + 80;
    if (c == 0x178) return 0xFF;
    return c;
}

char32_t upperOf(char32_t c) {
    if (c < 0x80) return c >= 'a' && c <= 'z' ? c - 32 : c;
    if (c >= 0xE0 && c <= 0xFE && c != 0xF7) return c - 32;
    if (pairedFromEven(c)) return c & ~char32_t{1};
    if (pairedFromOdd(c)) return c % 2 == 0 ? c - 1 : c;
    if (c >= 0x3B1 && c <= 0x3CB && c != 0x3C2) return c - 32;
    if (c >= 0x430 && c <= 0x44F) return c - 32;
    if (c >= 0x450 && c <= 0x45F) return c - 80;
    if (c == 0xFF) return 0x178;
    return c;
}

template <char32_t (*Map)(char32_t)>
std::string mapped(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    while (!text.empty()) {
        const CodePoint point = firstCodePoint(text);
        if (point.value) {
            appendUtf8(out, Map(*point.value));
        } else {
            out += text[0];
        }
        text.remove_prefix(point.length);
    }
    return out;
}

// A stray byte sorts behind every code point, so that it never equals a character.
char32_t foldedFront(std::string_view& text) {
    const auto byte = static_cast<unsigned char>(text[0]);
    if (byte < 0x80) {
        text.remove_prefix(1);
        return lowerOf(byte);
    }
    const CodePoint point = firstCodePoint(text);
    text.remove_prefix(point.length);
    return point.value ? lowerOf(*point.value) : 0x110000U + byte;
}

bool turnsDirection(char32_t c) {
    return c == 0x200E || c == 0x200F || c == 0x061C || (c >= 0x202A && c <= 0x202E) ||
           (c >= 0x2066 && c <= 0x2069);
}

}  // namespace

std::string_view trimBlanks(std::string_view text) { return trimOf(text, " "); }
std::string_view trimWhite(std::string_view text) { return trimOf(text, " \t\r\n"); }

std::string lowerCase(std::string_view text) { return mapped<lowerOf>(text); }
std::string upperCase(std::string_view text) { return mapped<upperOf>(text); }

int compareFolded(std::string_view a, std::string_view b) {
    while (!a.empty() && !b.empty()) {
        const char32_t x = foldedFront(a);
        const char32_t y = foldedFront(b);
        if (x != y) return x < y ? -1 : 1;
    }
    return static_cast<int>(!a.empty()) - static_cast<int>(!b.empty());
}

bool containsFolded(std::string_view text, std::string_view part) {
    return lowerCase(text).find(lowerCase(part)) != std::string::npos;
}

std::optional<std::int64_t> parseInteger(std::string_view text) {
    text = trimBlanks(text);
    if (text.starts_with('+')) text.remove_prefix(1);
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || text.empty()) return std::nullopt;
    return value;
}

std::optional<double> parseNumber(std::string_view text) {
    text = trimBlanks(text);
    double value = 0;
    const auto [end, error] =
        std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
    if (error != std::errc() || end != text.data() + text.size() || text.empty()) return std::nullopt;
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
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || text.size() < length) return {std::nullopt, 1};
    char32_t value = lead & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if (!isContinuation(text[i])) return {std::nullopt, 1};
        value = value << 6 | (static_cast<unsigned char>(text[i]) & 0x3FU);
    }
    const bool tooLong = (length == 3 && value < 0x800) || (length == 4 && value < 0x10000);
    if (tooLong || value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF)) return {std::nullopt, 1};
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
