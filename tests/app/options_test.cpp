#include "app/options.h"

#include "app/option_table.h"
#include "app/settings_fixture.h"
#include "base/text.h"

namespace hl::test {
namespace {

struct OptionsFile : SettingsFixture {
    void holds(const std::string& lines) { writeFile(path, "[Optionen]\r\n" + lines); }
    std::string stored(const char* key) { return store.GetSettings("Optionen", key, "none"); }

    Options load(bool onlyDateFormat = false) {
        Options options;
        OptionenLadenMain(options, store.read(), diagnostics, onlyDateFormat);
        return options;
    }
    Options loadBar(OptionBar bar) {
        Options options;
        loadBarOptions(options, store.read(), diagnostics, bar);
        return options;
    }
    /// Reads everything that a session reads.
    Options loadAll() {
        Options options = load();
        for (const OptionBar bar :
             {OptionBar::kMain, OptionBar::kFiles, OptionBar::kTop, OptionBar::kHardlinks})
            loadBarOptions(options, store.read(), diagnostics, bar);
        loadComboText(options, store);
        return options;
    }
    bool reported(const std::string& text) const {
        return sink.shown.size() == 1 && sink.shown[0].find(text) != std::string::npos;
    }
};

TEST_F(OptionsFile, LeavesToTheBarsWhatTheyRead) {
    holds("BigIcons=1\nTOPmaxcount=7\nFilePreview=1\nHardlinksTile=1\nComboText=/a\n");
    const Options options = load();
    EXPECT_EQ(options.BigIcons + options.TOPmaxcount + options.FilePreview + options.HardlinksTile, 0);
    EXPECT_EQ(options.ComboText, "");
    EXPECT_TRUE(loadBar(OptionBar::kMain).BigIcons == 1 && loadBar(OptionBar::kFiles).FilePreview == 1);
    EXPECT_TRUE(loadBar(OptionBar::kTop).TOPmaxcount == 7 &&
                loadBar(OptionBar::kHardlinks).HardlinksTile == 1);
    holds("TOPmaxcount=many\nFilelistTile=?\n");
    EXPECT_EQ(loadBar(OptionBar::kTop).TOPmaxcount, 100) << "what is no length is the default";
    EXPECT_TRUE(sink.shown.empty());
    loadBar(OptionBar::kFiles);
    EXPECT_TRUE(reported("Func: Init_Toolbar_Files"));
}

TEST_F(OptionsFile, StopsAtABadNumberAndLeavesTheRestAtZero) {
    holds("CreateListTOP=1\nCreateListHardlink=yes\nCreateListJunction=1\nFontName=Sans\nDateFormat=yyyy\n");
    const Options options = load();
    EXPECT_EQ(options.DateFormat, "yyyy");
    EXPECT_EQ(options.CreateListTOP, 1);
    EXPECT_EQ(options.CreateListHardlink + options.CreateListJunction + options.DiskinfoVisible, 0);
    EXPECT_EQ(options.FontName, "");
    EXPECT_TRUE(reported("Err: 13 - Type mismatch"));
    EXPECT_TRUE(reported("Modul: frmMain\r\nFunc: OptionenLadenMain"));
    EXPECT_TRUE(reported("Debug0: CreateListHardlink=yes"));
    for (const auto& [text, value] : {std::pair("255", 255), {" 7 ", 7}, {"2.5", 2}, {"256", 0}, {"", 0}}) {
        sink.shown.clear();
        holds("FileSizeFormat=" + std::string(text) + "\nDateFormat=yyyy\n");
        EXPECT_EQ(load().FileSizeFormat, value) << text;
        EXPECT_EQ(sink.shown.empty(), value != 0) << text;
    }
    EXPECT_EQ(load(true).DateFormat, "yyyy");
    EXPECT_EQ(sink.shown.size(), 1U) << "the date format alone meets no bad number";
}

TEST_F(OptionsFile, BringsBackWhatWasSaved) {
    Options options = load();
    options.FontSizeDisk = 8.25F;
    options.FontNameTOP = "Noto Sans";
    options.FileColumn[6] = 0;
    options.TOPmaxcount = 50;
    OptionenSpeichernMain(options, store);
    EXPECT_EQ(files.replacements, 1);
    const Options again = loadAll();
    EXPECT_EQ(stored("FontSizeDisk") + again.FontNameTOP, "8.25Noto Sans");
    EXPECT_EQ(std::pair(again.FontSizeDisk, again.TOPmaxcount), std::pair(8.25F, 50));
    EXPECT_EQ(again.FileColumn, (ColumnFlags{1, 1, 1, 1, 1, 1, 0}));
}

TEST_F(OptionsFile, KeepsWhatBelongsToTheDialogAndTheLastTwoColumnsOfHardlinksWhenItIsSaved) {
    holds("8HardlinkColumn=5\nInstanz=1\nDateFormat=yyyy\nUnknown=kept\n");
    OptionenSpeichernMain(load(), store);
    EXPECT_EQ(stored("7HardlinkColumn"), "1");
    EXPECT_EQ(stored("8HardlinkColumn") + stored("9HardlinkColumn"), "5none");
    EXPECT_EQ(stored("Instanz") + stored("DateFormat") + stored("Unknown"), "1yyyykept");
}

/// Sets the default of a key, or of a column, if it is the one that makes no sense.
void fallBack(const OptionKey& key, const std::string& bad, std::map<std::string, std::string>& file) {
    if (lowerCase(key.key) == bad) file[bad] = key.defaultValue;
    for (std::size_t i = 0; i < key.columns; ++i)
        if (std::to_string(i) + lowerCase(key.key) == bad)
            file[bad] = (key.off >> i & 1U) != 0 ? "0" : key.defaultValue;
}

// Each key in turn is made no number. At the end the file must still hold everything but what was set
// meanwhile.
TEST_F(OptionsFile, LosesNothingToAReadingThatEndsEarly) {
    std::map<std::string, std::string> before;
    Options options = loadAll();
    options.ComboText = "/source";
    OptionenSpeichernMain(options, store);
    for (auto& [key, value] : store.read().section("Optionen")) before[key] = value == "0" ? "1" : value;
    EXPECT_GT(before.size(), 60U);
    for (const auto& [bad, value] : before) {
        auto file = before;
        file[bad] = "many";
        std::string text;
        for (const auto& [key, each] : file) text += key + "=" + each + "\n";
        holds(text);
        options = loadAll();
        options.FileSizeFormat = 2;
        OptionenSpeichernMain(options, store);
        file["filesizeformat"] = "2";
        if (bad == "topmaxcount") file[bad] = "100";
        for (const OptionKey& key : kOptionTable)
            if (key.step > LoadStep::kElsewhere) fallBack(key, bad, file);
        const auto after = store.read().section("Optionen");
        EXPECT_TRUE(std::equal(file.begin(), file.end(), after.begin(), after.end())) << bad;
    }
}

TEST(OptionTable, NamesEachKeyOnce) {
    std::set<std::string_view> keys;
    for (const OptionKey& key : kOptionTable) EXPECT_TRUE(keys.insert(key.key).second) << key.key;
}

/// Returns the default that the page tells for each key: `.BR Key ", " Other " (default)"`, or `.B Key`
/// without a default. A row of columns has the index in front of its key.
std::map<std::string, std::string, std::less<>> toldDefaults(const std::string& page) {
    std::map<std::string, std::string, std::less<>> told;
    std::istringstream lines(page);
    for (std::string line; std::getline(lines, line);) {
        if (!line.starts_with(".B")) continue;
        const std::size_t open = line.find('('), close = line.rfind(')');
        const bool has = open != std::string::npos && close != std::string::npos && close > open;
        std::istringstream words(line.substr(line.find(' ') + 1));
        for (std::string word; words >> word;) {
            const std::size_t key = word.find_first_not_of("0123456789");
            if (key != std::string::npos)
                told[word.substr(key)] = has ? line.substr(open + 1, close - open - 1) : "";
        }
    }
    return told;
}

TEST(Manual, TellsOfEverySettingWithItsDefault) {
    for (const char* file : {"/man/harborlantern.1", "/man/de/harborlantern.1"}) {
        const auto told = toldDefaults(contentOf(std::string(HARBORLANTERN_SOURCE_DIR) + file));
        for (const OptionKey& option : kOptionTable) {
            const auto found = told.find(option.key);
            EXPECT_EQ(found == told.end() ? "not told" : found->second, option.defaultValue)
                << file << ": " << option.key;
        }
    }
}

}  // namespace
}  // namespace hl::test
