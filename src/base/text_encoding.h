// In which encoding an unknown text is, and the text in UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace hl {

enum class TextEncoding { kUtf8, kUtf16Little, kUtf16Big, kWindows1252 };

/// By a mark at its front; else UTF-16 where zero bytes stand as they do in that; else UTF-8 if it is that,
/// and Windows-1252 if not. `cut`: the text goes on behind the bytes, perhaps in the middle of a character.
TextEncoding guessedEncoding(std::string_view bytes, bool cut);
/// UTF-8 without a mark. Half surrogates become U+FFFD; half a character at the end of a cut text is dropped.
std::string decodedText(std::string_view bytes, bool cut);

}  // namespace hl
