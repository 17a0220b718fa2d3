#include "app/options.h"

#include <gtest/gtest.h>

#include <set>

#include "app/option_table.h"
#include "app/watched_files.h"
#include "robustness/fakes.h"
#include "support/temp_dir.h"
#include "support/whole_files.h"

namespace hl {
namespace {

class OptionsFile : public testing::Test {
  protected:
    void holds(const std::string& lines) { test::writeFile(path, "[Optionen]\r\n" + lines); }

    Options load(bool onlyDateFormat = false) {
        Options options;
        OptionenLadenMain(options, store, diagnostics, onlyDateFormat);
        return options;
    }
    Options loadBar(OptionBar bar) {
        Options options;
        loadBarOptions(options, store, diagnostics, bar);
        return options;
    }
    bool reported(const std::string& text) const {
        return sink.shown.size() == 1 && sink.shown[0].find(text) != std::string::npos;
    }

    test::TempDir dir;
    test::WatchedFiles files;
    std::string path = dir.path() + "/Harborlantern.ini";
    SettingsStore store{files, path};
    AppFacts app;
    test::FakeSystemFacts system;
    test::FakeErrorSink sink;
    Diagnostics diagnostics{app, system, sink};
};

TEST_F(OptionsFile, GivesTheDefaultsOfAFirstStart) {
    const Options options = load();
    EXPECT_EQ(options.DiskinfoVisible, 1);
    EXPECT_EQ(options.FilelistVisible, 1);
    EXPECT_EQ(options.ToplistVisible, 0);
    EXPECT_EQ(options.ColFileVisible + options.ColFolderVisible + options.ColPercentVisible, 3);
    EXPECT_EQ(options.FileSizeFormat, 0);
    EXPECT_EQ(options.FileSizeFormatDrive, 3);
    EXPECT_EQ(options.FileSizeFormatTop, 2);
    EXPECT_EQ(options.SizeFormatNachkommastellenFolders, 1);
    EXPECT_EQ(options.CreateListTOP, 0);
    EXPECT_EQ(options.FontSizeJunctions, 9.0F);
    EXPECT_EQ(options.FontName, "Tahoma");
    EXPECT_EQ(options.DateFormat, "dd/MM/yyyy hh:nn:ss");
    EXPECT_EQ(options.HardlinkColumn, (std::array<Flag, 10>{1, 1, 1, 1, 1, 1, 1, 1, 1, 1}));
    EXPECT_EQ(loadBar(OptionBar::kTop).TOPmaxcount, 100);
    EXPECT_TRUE(sink.shown.empty());
}

TEST_F(OptionsFile, IsReadOnceForAllOptions) {
    load();
    EXPECT_EQ(files.reads, 1);
}

TEST_F(OptionsFile, LeavesToTheBarsWhatTheyRead) {
    holds("BigIcons=1\nTOPmaxcount=7\nFilePreview=1\nHardlinksTile=1\nComboText=/a\n");
    const Options options = load();
    EXPECT_EQ(options.BigIcons + options.TOPmaxcount + options.FilePreview + options.HardlinksTile, 0);
    EXPECT_EQ(options.ComboText, "");
    EXPECT_EQ(loadBar(OptionBar::kMain).BigIcons, 1);
    EXPECT_EQ(loadBar(OptionBar::kMain).FilePreview, 0);
    EXPECT_EQ(loadBar(OptionBar::kFiles).FilePreview, 1);
    EXPECT_EQ(loadBar(OptionBar::kTop).TOPmaxcount, 7);
    EXPECT_EQ(loadBar(OptionBar::kHardlinks).HardlinksTile, 1);
}

TEST_F(OptionsFile, StopsAtABadNumberAndLeavesTheRestAtZero) {
    holds("CreateListTOP=1\nCreateListHardlink=yes\nCreateListJunction=1\nFontName=Sans\nDateFormat=yyyy\n");
    const Options options = load();
    EXPECT_EQ(options.DateFormat, "yyyy");
    EXPECT_EQ(options.CreateListTOP, 1);
    EXPECT_EQ(options.CreateListHardlink, 0);
    EXPECT_EQ(options.CreateListJunction, 0);
    EXPECT_EQ(options.DiskinfoVisible, 0);
    EXPECT_EQ(options.FontName, "");
    EXPECT_EQ(options.FontSize, 0.0F);
    EXPECT_TRUE(reported("Err: 13 - Type mismatch"));
    EXPECT_TRUE(reported("Func: OptionenLadenMain"));
    EXPECT_TRUE(reported("Modul: frmMain"));
}

TEST_F(OptionsFile, ReadsInAnOrderOfItsOwn) {
    // Icons come before size modes, size modes before panels, columns before fonts.
    holds("FileSizeFormatTop=x\nShowIcons=1\nDiskinfoVisible=1\n");
    const Options options = load();
    EXPECT_EQ(options.ShowIcons, 1);
    EXPECT_EQ(options.FileSizeFormatFiles, 2);
    EXPECT_EQ(options.DiskinfoVisible, 0);
    holds("FontSizeFiles=x\n");
    const Options fonts = load();
    EXPECT_EQ(fonts.HardlinkColumn[9], 1);
    EXPECT_EQ(fonts.FontSizeDisk, 9.0F);
    EXPECT_EQ(fonts.FontSizeTOP, 0.0F);
    EXPECT_EQ(fonts.FontName, "");
}

TEST_F(OptionsFile, TakesWhatIsANumberAndFitsAByte) {
    const struct {
        const char* text;
        int value;
        const char* error;
    } cases[] = {
        {"0", 0, ""},
        {"255", 255, ""},
        {" 7 ", 7, ""},
        {"1.5", 2, ""},
        {"2.5", 2, ""},
        {"\"3\"", 3, ""},
        {"256", 0, "Overflow"},
        {"-1", 0, "Overflow"},
        {"255.6", 0, "Overflow"},
        {"", 0, "Type mismatch"},
        {"1,5", 0, "Type mismatch"},
        {"nan", 0, "Type mismatch"},
        {"1x", 0, "Type mismatch"},
    };
    for (const auto& c : cases) {
        sink.shown.clear();
        holds(std::string("FileSizeFormat=") + c.text + "\n");
        EXPECT_EQ(load().FileSizeFormat, c.value) << c.text;
        EXPECT_EQ(sink.shown.empty(), *c.error == '\0') << c.text;
        EXPECT_TRUE(*c.error == '\0' || reported(c.error)) << c.text;
    }
}

TEST_F(OptionsFile, ReadsALengthOfAListThatIsNoneAsTheDefault) {
    const struct {
        const char* text;
        int value;
    } cases[] = {{"0", 0}, {"4", 4}, {"-1", 100}, {"many", 100}, {"", 100}, {"99999999999", 2147483647}};
    for (const auto& c : cases) {
        holds(std::string("TOPmaxcount=") + c.text + "\nFilePreviewTOP=1\n");
        EXPECT_EQ(loadBar(OptionBar::kTop).TOPmaxcount, c.value) << c.text;
        EXPECT_EQ(loadBar(OptionBar::kTop).FilePreviewTOP, 1) << c.text;
    }
    EXPECT_TRUE(sink.shown.empty());
}

TEST_F(OptionsFile, TrapsABadNumberOfABarUnderTheNameOfItsBuilder) {
    holds("FilelistTile=?\n");
    loadBar(OptionBar::kFiles);
    EXPECT_TRUE(reported("Func: Init_Toolbar_Files"));
}

TEST_F(OptionsFile, GivesTheDateFormatAloneAfterTheDialog) {
    holds("DateFormat=yyyy\nDiskinfoVisible=bad\n");
    const Options options = load(true);
    EXPECT_EQ(options.DateFormat, "yyyy");
    EXPECT_EQ(options.FontName, "");
    EXPECT_TRUE(sink.shown.empty());
}

TEST_F(OptionsFile, BringsBackWhatWasSaved) {
    Options options = load();
    options.CreateListTOP = 1;
    options.FontSizeDisk = 8.25F;
    options.FontNameTOP = "Noto Sans";
    options.FileColumn[6] = 0;
    options.SymbolText = 1;
    options.TOPmaxcount = 50;
    OptionenSpeichernMain(options, store);
    EXPECT_EQ(files.replacements, 1);
    const Options again = load();
    EXPECT_EQ(again.CreateListTOP, 1);
    EXPECT_EQ(again.FontSizeDisk, 8.25F);
    EXPECT_EQ(again.FontNameTOP, "Noto Sans");
    EXPECT_EQ(again.FileColumn, (std::array<Flag, 7>{1, 1, 1, 1, 1, 1, 0}));
    EXPECT_EQ(loadBar(OptionBar::kMain).SymbolText, 1);
    EXPECT_EQ(loadBar(OptionBar::kTop).TOPmaxcount, 50);
    EXPECT_EQ(store.GetSettings("Optionen", "FontSizeDisk"), "8.25");
    EXPECT_EQ(store.GetSettings("Optionen", "FontSize"), "9");
}

TEST_F(OptionsFile, SavesEightOfTheTenColumnsOfHardlinks) {
    holds("8HardlinkColumn=5\n");
    OptionenSpeichernMain(Options(), store);
    EXPECT_EQ(store.GetSettings("Optionen", "7HardlinkColumn", "none"), "0");
    EXPECT_EQ(store.GetSettings("Optionen", "8HardlinkColumn", "none"), "5");
    EXPECT_EQ(store.GetSettings("Optionen", "9HardlinkColumn", "none"), "none");
    EXPECT_EQ(load().HardlinkColumn, (std::array<Flag, 10>{0, 0, 0, 0, 0, 0, 0, 0, 5, 1}));
}

TEST_F(OptionsFile, KeepsWhatBelongsToTheDialogWhenItIsSaved) {
    holds("Kontextmenu=1\nInstanz=0\nDateFormat=yyyy\nUnknown=kept\n");
    OptionenSpeichernMain(Options(), store);
    EXPECT_EQ(store.GetSettings("Optionen", "Kontextmenu"), "1");
    EXPECT_EQ(store.GetSettings("Optionen", "Instanz"), "0");
    EXPECT_EQ(store.GetSettings("Optionen", "DateFormat"), "yyyy");
    EXPECT_EQ(store.GetSettings("Optionen", "Unknown"), "kept");
}

TEST_F(OptionsFile, IsSavedInTheOrderOfTheTable) {
    OptionenSpeichernMain(Options(), store);
    const std::string text = test::contentOf(path);
    EXPECT_TRUE(text.starts_with("[Optionen]\r\nCreateListTOP=0\r\nCreateListHardlink=0\r\n")) << text;
    EXPECT_TRUE(text.ends_with("HardlinksTile=0\r\nTOPmaxcount=0\r\n")) << text;
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1 + 42 + 7 + 8 + 8 + 9);
}

TEST(OptionTable, NamesEachKeyOnceAndHasDefaultsThatCanBeRead) {
    std::set<std::string_view> keys;
    for (const OptionKey& key : kOptionTable) {
        EXPECT_TRUE(keys.insert(key.key).second) << key.key;
        const bool text = std::holds_alternative<std::string Options::*>(key.field);
        EXPECT_TRUE(text || key.defaultValue.find_first_not_of("0123456789") == std::string_view::npos)
            << key.key;
    }
}

}  // namespace
}  // namespace hl
