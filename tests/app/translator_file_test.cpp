#include "app/translator_file.h"

#include <gtest/gtest.h>

namespace hl {
namespace {

using Records = std::vector<TranslatorRecord>;

TEST(TranslatorFile, IsReadFieldByField) {
    const struct {
        std::string_view text;
        Records records;
    } cases[] = {
        {"1,de,en\n", {{1, "en"}}},
        {"1,de,en", {{1, "en"}}},
        {"1,de,en\r\n2,de,en2\r\n", {{1, "en"}, {2, "en2"}}},
        {" 1 , de , en \n", {{1, "en"}}},
        {"1,\"a,b\",\"c,d\"\n", {{1, "c,d"}}},
        {"\"1\",\"de\",\"en\" junk\n2,x,y", {{1, "en"}, {2, "y"}}},
        {"1,de,\"two\nlines\"\n2,x,y", {{1, "two\nlines"}, {2, "y"}}},
        {"1,de,\"\"\n", {{1, ""}}},
        {"1\nde\nen\n", {{1, "en"}}},
        {"# comment\n1,de,en", {{1, "en"}}},
        {"#c\n\n , \r\n1,de,en", {{1, "en"}}},
        {"# a, b,c,d\n1,de,en", {{0, "d"}, {1, "en"}}},
        {"abc,de,en", {{0, "en"}}},
        {"12x,de,en", {{0, "en"}}},
        {"-5,de,en", {{-5, "en"}}},
        {"1,de", {}},
        {"1,de,", {}},
        {"1,\"never closed", {}},
        {"1,de,\"never closed\n2,x,y", {{1, "never closed\n2,x,y"}}},
        {"\xEF\xBB\xBF"
         "1,de,en",
         {{1, "en"}}},
        {"", {}},
        {",,,,\n,\n", {}},
        {std::string_view("\0,\xFF,\0\n", 6), {{0, std::string(1, '\0')}}},
    };
    for (const auto& c : cases) EXPECT_EQ(parseTranslatorFile(c.text), c.records) << c.text;
}

}  // namespace
}  // namespace hl
