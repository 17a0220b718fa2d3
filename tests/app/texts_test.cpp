#include "app/texts.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>

#include "app/product.h"
#include "app/watched_files.h"
#include "base/text.h"
#include "robustness/fakes.h"
#include "support/temp_dir.h"
#include "support/whole_files.h"

namespace hl {
namespace {

class TextsOf : public testing::Test {
  protected:
    void library(const std::string& name, const std::string& content) {
        test::writeFile(programFolder.path() + "/" + name, content);
    }
    void stored(const std::string& language) {
        test::writeFile(iniPath, "[Allgemein]\r\nLang=" + language + "\r\n");
    }
    std::string storedNow() { return store.GetSettings("Allgemein", "Lang", "none"); }

    Texts& start(const std::string& locale, const std::string& commandLine = "", bool persist = true) {
        texts.emplace(files, store, diagnostics,
                      TextSources{settingsFolder.path(), programFolder.path(), commandLine, locale});
        texts->Init_Sprache("", std::string(kTranslatorFileName), persist);
        texts->Init_Textbausteine();
        return *texts;
    }
    void translatorFile(const std::string& content) {
        test::writeFile(settingsFolder.path() + "/HarborlanternTL.txt", content);
    }
    Texts& english(const std::string& text) {
        library("eng.dll", "[1]\nen=" + text + "\n");
        return start("en_US");
    }

    test::TempDir settingsFolder, programFolder;
    std::string iniPath = settingsFolder.path() + "/Harborlantern.ini";
    test::WatchedFiles files;
    SettingsStore store{files, iniPath};
    AppFacts app;
    test::FakeSystemFacts system;
    test::FakeErrorSink sink;
    Diagnostics diagnostics{app, system, sink};
    std::optional<Texts> texts;
};

TEST_F(TextsOf, AFrenchSystemAreEnglishFromThenOn) {
    library("eng.dll", "[1]\nen=Save\n");
    EXPECT_EQ(start("fr_FR.UTF-8").TL(1, "Speichern"), "Save");
    EXPECT_EQ(storedNow(), "9");
    EXPECT_EQ(start("de_DE.UTF-8").languageId(), kEnglish) << "what was found at first stays";
}

TEST_F(TextsOf, AGermanSystemNeedNoFile) {
    const Texts& german = start("de_DE.UTF-8");
    EXPECT_EQ(german.languageId(), kGerman);
    EXPECT_EQ(german.TL(1, "Speichern"), "Speichern");
    EXPECT_EQ(german.homepage(), kHomepageGerman);
    EXPECT_EQ(storedNow(), "7");
    EXPECT_EQ(files.reads, 2 + 1) << "the language, twice for its change, and storedNow";
}

TEST_F(TextsOf, AMissingLibraryAreGermanNowAndEnglishNextTime) {
    library("eng.dll", "[1]\nen=Save\n");
    stored("16");
    const Texts& italian = start("de_DE");
    EXPECT_EQ(italian.languageId(), kEnglish);
    EXPECT_EQ(italian.TL(1, "Speichern"), "Speichern");
    EXPECT_EQ(italian.TranslateControlText("1"), "");
    EXPECT_EQ(italian.homepage(), kHomepage);
    EXPECT_EQ(storedNow(), "9");
    EXPECT_EQ(start("de_DE").TL(1, "Speichern"), "Save");
}

TEST_F(TextsOf, AMissingEnglishLibraryAreGermanForGood) {
    stored("9");
    EXPECT_EQ(start("en_US").languageId(), kGerman);
    EXPECT_EQ(storedNow(), "7");
    library("eng.dll", "[1]\nen=Save\n");
    EXPECT_EQ(start("en_US").TL(1, "Speichern"), "Speichern");
}

TEST_F(TextsOf, EveryLanguageFallBackByTheTable) {
    for (const char* id : {"16", "19", "25", "29"}) {
        stored(id);
        EXPECT_EQ(start("").languageId(), kEnglish) << id;
    }
    stored("8");
    EXPECT_EQ(start("").languageId(), kGerman) << "8 is taken for English, whose library is missing";
}

TEST_F(TextsOf, EachLanguageComeFromItsOwnLibrary) {
    library("swe.dll", "[1]\nen=Save\nsv=Spara\n");
    stored("29");
    EXPECT_EQ(start("").TL(1, "Speichern"), "Spara");
    EXPECT_EQ(storedNow(), "29");
}

TEST_F(TextsOf, ALibraryThatIsNoneAreAsIfItWereMissing) {
    library("eng.dll", std::string("MZ\x90\0\3\n\xFF\xFE", 8));
    EXPECT_EQ(start("en_US").languageId(), kGerman);
}

TEST_F(TextsOf, TheSettingsFolderGoAheadOfTheProgramsOwn) {
    library("eng.dll", "[1]\nen=Packaged\n");
    test::writeFile(settingsFolder.path() + "/eng.dll", "[1]\nen=Mine\n");
    EXPECT_EQ(start("en_US").TL(1, "Speichern"), "Mine");
}

TEST_F(TextsOf, ALanguageThatIsStoredAlreadyLeaveTheFileAlone) {
    library("eng.dll", "[1]\nen=Save\n");
    stored("9");
    start("de_DE");
    EXPECT_EQ(files.replacements, 0);
    EXPECT_EQ(files.reads, 3) << "the settings, and the library in both folders";
}

TEST_F(TextsOf, AStartThatDoesNotPersistStoreNothing) {
    start("de_DE", "", false);
    EXPECT_FALSE(std::filesystem::exists(iniPath));
}

TEST_F(TextsOf, ABadNumberOfALanguageAreReportedAndGerman) {
    for (const char* bad : {"english", "70000"}) {
        sink.shown.clear();
        stored(bad);
        EXPECT_EQ(start("en_US").TL(1, "Speichern"), "Speichern");
        ASSERT_EQ(sink.shown.size(), 1U) << bad;
        EXPECT_NE(sink.shown[0].find("Modul: z_Translate\r\nFunc: Init_Sprache"), std::string::npos)
            << sink.shown[0];
        EXPECT_EQ(storedNow(), bad);
    }
}

TEST_F(TextsOf, AllLanguagesTakeTheirArguments) {
    const Texts& german = start("de_DE");
    EXPECT_EQ(german.TL(1, "%1 von %2", {3, "x"}), "3 von x");
    EXPECT_EQ(german.TL(1, "%1 und %1", {"a"}), "a und a");
    EXPECT_EQ(german.TL(1, "%1 %2", {"a"}), "a %2");
    EXPECT_EQ(german.TL(1, "%1 %2", {"%2", "b"}), "b b");
    EXPECT_EQ(german.TL(1, "%1 %2", {"b", "%1"}), "b %1");
    EXPECT_EQ(german.TL(1, "zwei%!Zeilen"), "zwei\r\nZeilen");
    EXPECT_EQ(german.TL(1, "%1", {"%!"}), "%!");
    EXPECT_EQ(german.TL(1, "%10", {"a"}), "a0");
    EXPECT_EQ(german.TL(447, "an '%1', damit", {"a@example.org"}), "an 'a@example.org', damit");
    EXPECT_EQ(german.TL(1, "100 %"), "100 %");
}

TEST_F(TextsOf, ALibraryTakeTheirArgumentsToo) {
    EXPECT_EQ(english("%2 of %1%!").TL(1, "%1 %2", {"a", "b"}), "b of a\r\n");
}

TEST_F(TextsOf, ALibraryAreCutAtNulAndAtTheirLongest) {
    std::string umlauts;
    for (int i = 0; i < 1100; ++i) umlauts += "ä";
    const Texts& cut = english(umlauts);
    EXPECT_EQ(characterCount(cut.TL(1, "")), 1023U);
    EXPECT_EQ(characterCount(cut.TranslateControlText("1")), 255U);
    EXPECT_EQ(english(std::string("a\0b", 3)).TL(1, ""), "a");
}

TEST_F(TextsOf, IdsThatNoTextHasAreTheDefault) {
    const Texts& texts1 = english("Save");
    for (const int id : {0, -1, 2, 10000, 2147483647}) EXPECT_EQ(texts1.TL(id, "Vorgabe"), "Vorgabe") << id;
    for (const char* id : {"", "-", "x", "0", "-1", "2", "99999999999999999999"})
        EXPECT_EQ(texts1.TranslateControlText(id), "") << id;
    EXPECT_EQ(texts1.TranslateControlText("1"), "Save");
}

TEST_F(TextsOf, TheTranslatorsFileAreShownInGermanToo) {
    translatorFile("# a list\n1,Speichern,\"Save, please\"\n1,Speichern,Store\n2,Leer,\nabc,x,nobody\n");
    const Texts& translated = start("de_DE", "\"/a\" -TLMODUS");
    EXPECT_TRUE(translated.translatorMode());
    EXPECT_EQ(translated.languageId(), kGerman);
    EXPECT_EQ(translated.TL(1, "Speichern"), "Store") << "the later of two counts";
    EXPECT_EQ(translated.TL(2, "Leer"), "Leer");
    EXPECT_EQ(translated.TL(3, "Fehlt"), "Fehlt");
    EXPECT_EQ(translated.TL(0, "Null"), "Null");
    EXPECT_EQ(translated.TranslateControlText("1"), "Store");
    EXPECT_EQ(translated.TranslateControlText("2"), "");
}

TEST_F(TextsOf, ATranslatorWithoutAFileAreGerman) {
    library("eng.dll", "[1]\nen=Save\n");
    const Texts& translated = start("en_US", "-TLMODUS");
    EXPECT_TRUE(translated.translatorMode());
    EXPECT_EQ(translated.TL(1, "Speichern"), "Speichern");
}

TEST_F(TextsOf, TheTranslatorsFileAreNotReadUnasked) {
    translatorFile("1,Speichern,Save\n");
    EXPECT_EQ(start("de_DE", "-tlmodus").TL(1, "Speichern"), "Speichern");
}

TEST_F(TextsOf, ALaterTranslatorsFileReplaceTheEarlier) {
    translatorFile("1,a,one\n2,b,two\n");
    Texts& translated = start("de_DE", "-TLMODUS");
    test::writeFile(settingsFolder.path() + "/other.txt", "1,a,eins\n");
    translated.LoadTextFromFile(settingsFolder.path() + "/other.txt");
    EXPECT_EQ(translated.TL(1, "a") + translated.TL(2, "b"), "einsb");
    translated.LoadTextFromFile(settingsFolder.path() + "/missing.txt");
    EXPECT_EQ(translated.TL(1, "a"), "eins");
}

}  // namespace
}  // namespace hl
