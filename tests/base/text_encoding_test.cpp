#include "base/text_encoding.h"

namespace hl {
namespace {

using namespace std::string_literals;

TEST(TextEncoding, ATextOfAnyOfThemComesOutTheSame) {
    const struct {
        const char* what;
        std::string bytes, text;
        bool cut = false;
    } cases[] = {{"nothing", "", ""},
                 {"ASCII", "abc", "abc"},
                 {"UTF-8", "größer €", "größer €"},
                 {"UTF-8 with a mark", "\xEF\xBB\xBFgr\xC3\xB6", "grö"},
                 {"UTF-8 cut in a character", "gr\xC3", "gr", true},
                 {"UTF-8 cut in a long one", "g\xF0\x9F\x98", "g", true},
                 {"UTF-8 cut behind one", "gr\xC3\xB6", "grö", true},
                 {"no UTF-8 without the cut", "gr\xC3", "grÃ"},
                 {"Windows-1252", "gr\xF6\xDF \x80 \x84x\x93", "größ € „x“"},
                 {"UTF-16 with a mark", "\xFF\xFEx\0\xF6\0"s, "xö"},
                 {"the other one", "\xFE\xFF\0a\0\xF6"s, "aö"},
                 {"UTF-16 without", "a\0b\0c\0\xF6\0"s, "abcö"},
                 {"the other one without", "\0a\0b\0c"s, "abc"},
                 {"a pair and a half of one", "\xFF\xFE\x3D\xD8\x00\xDE\x3D\xD8"s, "😀\uFFFD"},
                 {"an odd byte at the end", "\xFF\xFEx\0b"s, "x"}};
    for (const auto& c : cases) EXPECT_EQ(decodedText(c.bytes, c.cut), c.text) << c.what;
}

TEST(TextEncoding, ZerosHereAndThereAreNoUtf16) {
    EXPECT_EQ(guessedEncoding("\0\0\0\0abcdefgh"s, false), TextEncoding::kUtf8);
    EXPECT_EQ(guessedEncoding("one\0two\0three and much more\0"s, false), TextEncoding::kUtf8);
}

}  // namespace
}  // namespace hl
