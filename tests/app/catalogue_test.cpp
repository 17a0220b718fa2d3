#include "app/catalogue.h"

#include <gtest/gtest.h>

namespace hl {
namespace {

std::string_view english(std::string_view text, int id) {
    static Catalogue catalogue;
    catalogue = Catalogue(text, "en");
    return catalogue.text(id);
}

TEST(Catalogue, FindsTextsOfItsLanguageInAnyShape) {
    const struct {
        std::string_view text, found;
    } cases[] = {
        {"[1]\nde=Speichern\nen=Save\n", "Save"},
        {"[1]\r\nde=Speichern\r\nen=Save\r\n", "Save"},
        {"\xEF\xBB\xBF[1]\nen=Save", "Save"},
        {" [1] \nen=Save", ""},
        {"[ 1 ]  \n en =Save", "Save"},
        {"[1]\nen= a = b ", " a = b "},
        {"[1]\n# en=No\n#en=No\nen=Save", "Save"},
        {"[1]\nnonsense\nen=Save", "Save"},
        {"[1]\nen=", ""},
        {"[1]\nde=Speichern", ""},
        {"en=Save\n[1]\n", ""},
        {"[1]\nen=Save\n[2]\nen=Other", "Save"},
        {"[1]\nen=Save\n[1]\nen=Later", "Later"},
        {"[1]\n[x]\nen=Nobody's", ""},
        {"[1\nen=Nobody's", ""},
        {"[00001]\nen=Save", "Save"},
    };
    for (const auto& c : cases) EXPECT_EQ(english(c.text, 1), c.found) << c.text;
}

TEST(Catalogue, TakesIdsOfUpToFourDigits) {
    EXPECT_EQ(english("[9999]\nen=x", 9999), "x");
    for (const char* text :
         {"[10000]\nen=x", "[0]\nen=x", "[-1]\nen=x", "[99999999999999999999]\nen=x", "[]\nen=x"})
        EXPECT_TRUE(Catalogue(text, "en").empty()) << text;
}

}  // namespace
}  // namespace hl
