#include "app/texts.h"

#include "app/catalogue.h"
#include "app/language.h"
#include "app/product.h"
#include "app/settings_fixture.h"
#include "app/translator_file.h"

namespace hl::test {
namespace {

struct TextsOf : SettingsFixture {
    void library(const std::string& name, std::string_view content) {
        writeFile(programFolder.path() + "/" + name, content);
    }
    void stored(const std::string& language) { writeFile(path, "[Allgemein]\r\nLang=" + language + "\r\n"); }
    std::string storedNow() { return store.GetSettings("Allgemein", "Lang", "none"); }

    Texts& start(const std::string& locale, const std::string& commandLine = "") {
        texts.emplace(files, store, diagnostics,
                      TextSources{dir.path(), programFolder.path(), commandLine, locale});
        texts->Init_Sprache("", std::string(kTranslatorFileName));
        texts->storeLanguage();
        return *texts;
    }
    Texts& english(const std::string& text) {
        library("eng.dll", "[1]\nen=" + text + "\n");
        return start("en_US");
    }

    TempDir programFolder;
    std::optional<Texts> texts;
};

TEST_F(TextsOf, TheSystemsLanguageAreThatOfEveryLaterStart) {
    library("eng.dll", "[1]\nen=Save\n");
    EXPECT_EQ(start("fr_FR.UTF-8").TL(1, "Speichern"), "Save");
    EXPECT_EQ(start("de_DE.UTF-8").languageId(), kEnglish);
    EXPECT_EQ(storedNow(), "9");
    EXPECT_EQ(files.replacements, 1) << "what does not change is not written";
    fs::remove(path);
    EXPECT_EQ(start("de_DE.UTF-8").TL(1, "Speichern"), "Speichern");
    EXPECT_EQ(storedNow(), "7");
}

TEST_F(TextsOf, AMissingLibraryAreGermanNowAndEnglishNextTime) {
    library("eng.dll", "[1]\nen=Save\n");
    for (const char* id : {"16", "19", "25", "29"}) {
        stored(id);
        const Texts& missing = start("de_DE");
        EXPECT_EQ(missing.languageId(), kEnglish) << id;
        EXPECT_EQ(missing.TL(1, "Speichern") + missing.TranslateControlText("1"), "Speichern");
        EXPECT_EQ(start("de_DE").TL(1, "Speichern"), "Save");
    }
}

TEST_F(TextsOf, AnEnglishLibraryThatIsMissingOrNoneAreGermanForGood) {
    for (const std::string_view content : {"", "MZ\x90\3\n\xFF\xFE"}) {
        library("eng.dll", content);
        stored("9");
        EXPECT_EQ(start("en_US").languageId(), kGerman);
        library("eng.dll", "[1]\nen=Save\n");
        EXPECT_EQ(start("en_US").TL(1, "Speichern"), "Speichern");
    }
}

TEST_F(TextsOf, EachLanguageComeFromItsOwnLibraryAndTheSettingsFolderFirst) {
    library("swe.dll", "[1]\nen=Save\nsv=Packaged\n");
    stored("29");
    EXPECT_EQ(start("").TL(1, "Speichern"), "Packaged");
    writeFile(dir.path() + "/swe.dll", "[1]\nsv=Mine\n");
    EXPECT_EQ(start("").TL(1, "Speichern"), "Mine");
    EXPECT_EQ(storedNow(), "29");
}

TEST_F(TextsOf, ALibraryThatTellsItsNumberIsALanguageMore) {
    library("aaa.dll", "[1]\nen=No language\n");
    library("pol.dll", "[Language]\nLang=21\ncode=pl\nname=Polski\n[1]\npl=Zapisz\n");
    library("qqq.dll", "[Language]\nLang=9\ncode=qq\n[1]\nqq=A number that is taken\n");
    EXPECT_EQ(start("pl_PL.UTF-8").TL(1, "Speichern"), "Zapisz");
    EXPECT_EQ(storedNow(), "21");
    ASSERT_EQ(texts->languages().size(), 7U);
    EXPECT_EQ(texts->languages()[6].name, "Polski");
}

TEST_F(TextsOf, ABadNumberOfALanguageAreReportedAndGerman) {
    for (const char* bad : {"english", "70000"}) {
        sink.shown.clear();
        stored(bad);
        EXPECT_EQ(start("en_US").TL(1, "Speichern"), "Speichern");
        ASSERT_EQ(sink.shown.size(), 1U) << bad;
        EXPECT_TRUE(has(sink.shown[0], "Modul: z_Translate\r\nFunc: Init_Sprache"));
        EXPECT_EQ(storedNow(), bad);
    }
}

TEST_F(TextsOf, AllLanguagesTakeTheirArguments) {
    const std::array<const char*, 4> cases[] = {{"%1 %2", "3", "x", "3 x"},  {"%1-%1", "a", "", "a-a"},
                                                {"%1 %2", "%2", "b", "b b"}, {"%1 %2", "b", "%1", "b %1"},
                                                {"a%!b", "", "", "a\r\nb"},  {"%1", "%!", "", "%!"},
                                                {"%10", "a", "", "a0"},      {"100 %", "", "", "100 %"}};
    for (const auto& [text, first, second, result] : cases)
        EXPECT_EQ(start("de_DE").TL(1, text, {first, second}), result);
    EXPECT_EQ(start("de_DE").TL(1, "%1 %2", {3}), "3 %2");
    stored("9");
    EXPECT_EQ(english("%2 of %1%!").TL(1, "%1 %2", {"a", "b"}), "b of a\r\n");
}

TEST_F(TextsOf, IdsThatNoTextHasAreTheDefault) {
    const Texts& some = english("Save");
    for (const int id : {0, -1, 2, 2147483647}) EXPECT_EQ(some.TL(id, "Vorgabe"), "Vorgabe") << id;
    for (const char* id : {"", "x", "0", "-1", "2", "99999999999999999999"})
        EXPECT_EQ(some.TranslateControlText(id), "") << id;
    EXPECT_EQ(some.TranslateControlText("1"), "Save");
}

TEST_F(TextsOf, TheTranslatorsFileAreShownInGermanTooWhenAsked) {
    writeFile(dir.path() + "/HarborlanternTL.txt",
              "# a list\n1,Speichern,\"Save, please\"\n1,Speichern,Store\n2,Leer,\nabc,x,nobody\n");
    EXPECT_EQ(start("de_DE", "-tlmodus").TL(1, "Speichern"), "Speichern");
    Texts& translated = start("de_DE", "\"/a\" -TLMODUS");
    EXPECT_EQ(translated.TL(1, "Speichern"), "Store") << "the later of two counts";
    EXPECT_EQ(translated.TL(2, "Leer"), "Leer");
    EXPECT_EQ(translated.TL(0, "Null"), "Null");
    EXPECT_EQ(translated.TranslateControlText("1") + translated.TranslateControlText("2"), "Store");

    writeFile(dir.path() + "/other.txt", "2,b,zwei\n");
    translated.LoadTextFromFile(dir.path() + "/other.txt");
    translated.LoadTextFromFile(dir.path() + "/missing.txt");
    EXPECT_EQ(translated.TL(1, "a") + translated.TL(2, "b"), "azwei");
}

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

TEST(Language, FollowsTheLocaleOfTheSystemAndIsElseEnglish) {
    LinuxFiles files;
    const std::vector<Language> all = findLanguages(files, {});
    const std::pair<const char*, int> cases[] = {{"de_DE.UTF-8", 7},   {"de_AT@euro", 7}, {"de", 7},
                                                 {"DE_ch", 7},         {"it_IT", 16},     {"nl_BE.UTF-8", 19},
                                                 {"ru_RU.KOI8-R", 25}, {"sv_SE", 29},     {"de-DE", 7},
                                                 {"fr_FR.UTF-8", 9},   {"C.UTF-8", 9},    {"", 9},
                                                 {"deutsch", 9},       {"_", 9},          {"\xFF", 9}};
    for (const auto& [locale, id] : cases) EXPECT_EQ(systemLanguageId(all, locale), id) << locale;
}

TEST(Language, ReadsEveryOtherIdAsEnglish) {
    LinuxFiles files;
    const std::vector<Language> all = findLanguages(files, {});
    for (const int id : {7, 9, 16, 19, 25, 29}) EXPECT_EQ(languageOf(all, id).id, id);
    for (const int id : {0, 8, -7, 1031}) EXPECT_EQ(languageOf(all, id).id, kEnglish);
}

TEST(Language, TakesTheFirstVariableThatIsNotEmpty) {
    std::map<std::string, std::string> environment = {{"LC_ALL", "a"}, {"LC_MESSAGES", "b"}, {"LANG", "c"}};
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const std::string value = environment[name];
        EXPECT_EQ(messageLocale([&](const std::string& asked) { return environment[asked]; }), value);
        environment[name] = "";
    }
}

}  // namespace
}  // namespace hl::test
