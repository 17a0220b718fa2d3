#include "app/translator_file.h"

#include <gtest/gtest.h>

namespace hl {
namespace {

using Records = std::vector<TranslatorRecord>;

TEST(TranslatorFile, IsReadFieldByField) {
    for (const char* text : {"1,de,en\n", "1,de,en", " 1 , de , en \n", "1\nde\nen\n", "# comment\n1,de,en",
                             "#c\n\n , \r\n1,de,en", "\"1\",\"de\",\"en\" junk\n",
                             "\xEF\xBB\xBF"
                             "1,de,en"})
        EXPECT_EQ(parseTranslatorFile(text), (Records{{1, "en"}})) << text;
    for (const char* text : {"", "1,de", "1,de,", "1,\"never closed", ",,,,\n,\n"})
        EXPECT_EQ(parseTranslatorFile(text), Records()) << text;
    const std::pair<std::string_view, Records> cases[] = {
        {"1,de,en\r\n2,de,en2\r\n", {{1, "en"}, {2, "en2"}}},
        {"1,\"a,b\",\"two\nlines, one text\"\n2,x,y", {{1, "two\nlines, one text"}, {2, "y"}}},
        {"# a, b,c,d\n1,de,en", {{0, "d"}, {1, "en"}}},
        {"12x,de,en\n-5,de,\"\"", {{0, "en"}, {-5, ""}}},
        {"1,de,\"never closed\n2,x,y", {{1, "never closed\n2,x,y"}}},
        {std::string_view("\0,\xFF,\0\n", 6), {{0, std::string(1, '\0')}}}};
    for (const auto& [text, records] : cases) EXPECT_EQ(parseTranslatorFile(text), records) << text;
}

}  // namespace
}  // namespace hl
