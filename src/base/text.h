// Helpers for strings of bytes that are mostly UTF-8: they trim, fold case, read numbers, and replace
// characters that cannot be shown. All functions are pure.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace hl {

/// Removes blanks (only ' ') at both ends.
std::string_view trimBlanks(std::string_view text);
/// Removes blanks, tabs, CR and LF at both ends.
std::string_view trimWhite(std::string_view text);

/// These map ASCII, Latin, Greek and Cyrillic letters; every other byte, a stray one too, stays as it is. The
/// locale has no influence.
std::string lowerCase(std::string_view text);
std::string upperCase(std::string_view text);
/// Compares two texts as if both had been through lowerCase; returns a number below 0, 0 or above 0.
/// Allocates nothing.
int compareFolded(std::string_view a, std::string_view b);
/// Returns the first characters of a text after lowerCase, packed into a number. Keys that differ sort as
/// compareFolded does; texts with equal keys may still differ.
using FoldedKey = std::array<std::uint64_t, 2>;
FoldedKey foldedKey(std::string_view text);

/// Tells whether texts hold a part, without regard to case; every text holds an empty part. The part is
/// folded only once, and only a few calls allocate memory.
class FoldedPart {
  public:
    explicit FoldedPart(std::string_view part) : part_(lowerCase(part)) {}
    bool isIn(std::string_view text);

  private:
    std::string part_;
    std::string folded_;  ///< The text that is being searched; a member so that its memory is used again.
};

/// Reads the whole text as a decimal number; blanks at its ends are allowed. Returns nothing for any other
/// text and for a number that is too large.
std::optional<std::int64_t> parseInteger(std::string_view text);
/// Reads a decimal number as parseInteger does, with an optional fraction behind a point.
std::optional<double> parseNumber(std::string_view text);

/// Replaces every occurrence of `from`, from left to right; what was inserted is not searched again.
std::string replaceAll(std::string_view text, std::string_view from, std::string_view to);

/// A code point of UTF-8, read from the front of `text`. Bytes that are none have no value; their length is
/// that of the longest beginning of a code point found there, and at least 1. REQUIRES: text is not empty.
struct CodePoint {
    std::optional<char32_t> value;
    std::size_t length;
};
CodePoint firstCodePoint(std::string_view text);
void appendUtf8(std::string& out, char32_t c);
/// Returns the length in characters; what is no UTF-8 counts one for each U+FFFD that `decodable` gives.
std::size_t characterCount(std::string_view text);
/// Returns the first `count` characters of `text`.
std::string_view firstCharacters(std::string_view text, std::size_t count);

/// Returns valid UTF-8 for a file that people read: each CodePoint without a value becomes U+FFFD.
std::string decodable(std::string_view bytes);
/// Returns text for terminals and messages: as `decodable`, with control characters replaced by visible ones
/// (U+2400 and on; U+FFFD for the C1 range and for marks that turn the direction of writing).
std::string visible(std::string_view bytes);

}  // namespace hl
