#include "app/catalogue.h"

#include <gtest/gtest.h>

namespace hl {
namespace {

TEST(Catalogue, FindsTextsOfItsLanguageInAnyShape) {
    for (const char* text :
         {"[1]\nde=Speichern\nen=Save\n", "[1]\r\nde=Speichern\r\nen=Save\r\n", "\xEF\xBB\xBF[1]\nen=Save",
          "[ 1 ]  \n en =Save", "[1]\n#en=No\nnonsense\nen=Save", "[1]\nen=Save\n[2]\nen=Other",
          "[1]\nen=Old\n[1]\nen=Save", "[00001]\nen=Save"})
        EXPECT_EQ(Catalogue(text, "en").text(1), "Save") << text;
    EXPECT_EQ(Catalogue("[1]\nen= a = b ", "en").text(1), " a = b ");
}

TEST(Catalogue, HasNoTextWhereNoneIsNamedByItsLanguageAndAnIdOfUpToFourDigits) {
    for (const char* text :
         {"[1]\nen=", "[1]\nde=Speichern", "en=Save\n[1]\n", "[1]\n[x]\nen=Save", "[1\nen=Save"})
        EXPECT_EQ(Catalogue(text, "en").text(1), "") << text;
    EXPECT_EQ(Catalogue("[9999]\nen=x", "en").text(9999), "x");
    for (const char* text :
         {"[10000]\nen=x", "[0]\nen=x", "[-1]\nen=x", "[99999999999999999999]\nen=x", "[]\nen=x"})
        EXPECT_TRUE(Catalogue(text, "en").empty()) << text;
}

}  // namespace
}  // namespace hl
