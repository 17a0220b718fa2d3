#include "grid/mask.h"

namespace hl {
namespace {

const NumberFormat kEnglish = {",", "."};

std::string shown(std::string_view mask, double value, const NumberFormat& format = kEnglish) {
    const std::optional<Mask> parsed = parseMask(mask);
    return parsed ? maskedNumber(*parsed, value, format) : "no mask";
}

TEST(Mask, WritesNumbersAsTheColumnsAskForThemWithTheSeparatorsOfTheLocale) {
    const std::tuple<const char*, double, const char*> cases[] = {
        {"*0*;", -1, ""},        {"*###,###,##0*;;;", 0, ""},
        {"*0*;", 0, "0"},        {"*##0*%", std::nan(""), ""},
        {"*0*;;", 0, ""},        {"*###,###,##0.00*;;;", -0.0, ""},
        {"*##0*%", 0, "0%"},     {"*###,###,##0* KB;;;", 1024, "1,024 KB"},
        {"*##0*%;;;", 0, ""},    {"*###,###,##0*;;;", 1234567, "1,234,567"},
        {"*##0*%", -1, "-1%"},   {"*###,###,##0.00* GB;;;", 1.5, "1.50 GB"},
        {"*##0*%", 12.5, "13%"}, {"*###,###,##0.00*;;;", 1234567.5, "1,234,567.50"}};
    for (const auto& [mask, value, text] : cases) EXPECT_EQ(shown(mask, value), text) << mask << " " << value;
    EXPECT_EQ(shown("*###,###,##0.00* MB;;;", 1234.5, {".", ","}), "1.234,50 MB");
}

TEST(Mask, WritesWholeNumbersExactlyUpToThoseACellHolds) {
    const Mask mask = parseMask("*###,###,##0*;;;").value();
    EXPECT_EQ(maskedInteger(mask, 9'007'199'254'740'991, kEnglish), "9,007,199,254,740,991");
    EXPECT_EQ(maskedInteger(mask, 0, kEnglish), "");
}

TEST(Mask, IsNoneWithoutTwoAsterisks) {
    for (const char* text : {"", "*", "0", "##0;;;", "*##0", ";;;*"}) EXPECT_FALSE(parseMask(text)) << text;
    EXPECT_TRUE(parseMask("**"));
    EXPECT_EQ(shown("*0**;;;", 3), "3*");
}

}  // namespace
}  // namespace hl
