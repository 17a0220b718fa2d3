// Guesses the encoding of an unknown text and decodes it to UTF-8. Both functions are pure.
#pragma once

#include <string>
#include <string_view>

namespace hl {

enum class TextEncoding { kUtf8, kUtf16Little, kUtf16Big, kWindows1252 };

/// Guesses by a mark at the front; without one it is UTF-16 if zero bytes stand as they do there, else UTF-8
/// if the bytes are valid UTF-8, else Windows-1252. `cut` says that the bytes may end in the middle of a
/// character, because the text goes on.
TextEncoding guessedEncoding(std::string_view bytes, bool cut);
/// Returns UTF-8 without a mark. Half surrogates become U+FFFD; half a character at the end of a cut text is
/// dropped.
std::string decodedText(std::string_view bytes, bool cut);

}  // namespace hl
