// Small work on strings of bytes that are mostly UTF-8: trimming, folding, numbers, showing what cannot be
// shown.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace hl {

/// Without blanks (only ' ') at both ends.
std::string_view trimBlanks(std::string_view text);
/// Without blanks, tabs, CR and LF at both ends.
std::string_view trimWhite(std::string_view text);

/// Lower case of ASCII, Latin, Greek and Cyrillic letters; every other byte, a stray one too, stays as it is.
/// It does not depend on the locale.
std::string lowerCase(std::string_view text);
std::string upperCase(std::string_view text);
/// Order of two texts as if both had been through lowerCase: below 0, 0 or above 0. Allocates nothing.
int compareFolded(std::string_view a, std::string_view b);
/// The first characters of a text as lowerCase leaves them. Keys that differ are in the order of
/// compareFolded; texts with equal ones may still differ.
using FoldedKey = std::array<std::uint64_t, 2>;
FoldedKey foldedKey(std::string_view text);

/// Whether texts hold a part, without regard to case; an empty one is held by every text. The part is folded
/// once, and no call but a few allocates.
class FoldedPart {
  public:
    explicit FoldedPart(std::string_view part) : part_(lowerCase(part)) {}
    bool isIn(std::string_view text);

  private:
    std::string part_;
    std::string folded_;  ///< The text in work; kept for its memory.
};

/// The whole text as a decimal number, blanks at its ends allowed; nothing if it is anything else or too
/// large.
std::optional<std::int64_t> parseInteger(std::string_view text);
/// The same with an optional fraction behind a point.
std::optional<double> parseNumber(std::string_view text);

/// `text` with every occurrence of `from` replaced, from left to right, replacements not searched again.
std::string replaceAll(std::string_view text, std::string_view from, std::string_view to);

/// One code point of UTF-8 read from the front of `text`. What is none gives no value, and the length of the
/// longest beginning of one that stands there, or else 1. REQUIRES: text is not empty.
struct CodePoint {
    std::optional<char32_t> value;
    std::size_t length;
};
CodePoint firstCodePoint(std::string_view text);
void appendUtf8(std::string& out, char32_t c);
/// Length in characters; what is no UTF-8 counts as it shows, one for each U+FFFD of `decodable`.
std::size_t characterCount(std::string_view text);
/// The first `count` characters of `text`.
std::string_view firstCharacters(std::string_view text, std::size_t count);

/// Valid UTF-8 for a file that people read: U+FFFD for each CodePoint without a value, all else stays.
std::string decodable(std::string_view bytes);
/// `decodable`, and control characters by their visible stand-ins (U+2400 and on; U+FFFD for the C1 range and
/// for marks that turn the direction of writing), for terminals and messages.
std::string visible(std::string_view bytes);

}  // namespace hl
