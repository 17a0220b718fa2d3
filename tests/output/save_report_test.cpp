#include "output/save_report.h"

#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>
#include <stdexcept>

#include "output/save_bench.h"

namespace hl {
namespace {

namespace fs = std::filesystem;

std::size_t linesIn(const std::string& text) {
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

bool holdsPath(const std::string& csv, const std::string& path) {
    return csv.find("\"" + path + "\"") != std::string::npos;
}

/// Answers with a path and keeps what it was asked.
struct FakeDialog : SaveDialog {
    std::string answer;
    std::vector<SaveQuestion> asked;
    std::string askSavePath(const SaveQuestion& question) override {
        asked.push_back(question);
        return answer;
    }
};

/// Files that take `room` bytes and then fail with ENOSPC. What they took is counted and dropped, unless
/// there is a real file below.
struct SmallDisk : Files {
    SmallDisk(Files* below, std::size_t bytes) : real(below), room(bytes) {}

    struct File : ReplacingFile {
        SmallDisk& disk;
        std::unique_ptr<ReplacingFile> real;
        File(SmallDisk& owner, std::unique_ptr<ReplacingFile> file) : disk(owner), real(std::move(file)) {}
        int write(std::string_view bytes) override {
            ++disk.writes;
            if (disk.taken + bytes.size() > disk.room) return ENOSPC;
            disk.taken += bytes.size();
            return real ? real->write(bytes) : 0;
        }
        int commit() override { return real ? real->commit() : 0; }
    };

    std::unique_ptr<ReplacingFile> replace(const std::string& path, int& error) override {
        return std::make_unique<File>(*this, real != nullptr ? real->replace(path, error) : nullptr);
    }
    std::optional<std::string> readWhole(const std::string&, std::size_t, int&) override { return {}; }
    int append(const std::string&, std::string_view) override { return ENOSYS; }
    bool exists(const std::string&) override { return false; }
    std::shared_ptr<void> lockFolderOf(const std::string&) override { return {}; }

    Files* real;
    std::size_t room;
    std::size_t taken = 0;
    int writes = 0;
};

/// Input waits every time it is asked; the handler fails once.
struct FailingPump : MessagePump {
    int failAt = 0;
    int pumped = 0;
    void PumpMessages() override {
        if (++pumped == failAt) throw std::runtime_error("a handler failed");
    }
    bool GetInputState() override { return true; }
    std::uint64_t GetTickCount() override { return 0; }
};

class SaveReport : public testing::Test, protected test::SaveBench {};

// --- the form

TEST_F(SaveReport, FormOpensWithItsPresets) {
    sampleTree("/srv/data");
    const SaveForm frmSave(services());
    EXPECT_EQ(frmSave.caption, "Speichern");
    EXPECT_EQ(GetOptionButtonSelectedIndex(frmSave.optWasSpeichern), kSaveAll);
    EXPECT_EQ(GetOptionButtonSelectedIndex(frmSave.optLevels), kSaveUnfolded);
    EXPECT_EQ(frmSave.txtLevels, "");
    EXPECT_EQ(frmSave.cboFormat.items.at(static_cast<std::size_t>(frmSave.cboFormat.index)), "TXT");
    EXPECT_EQ(frmSave.cboDelimiter.items.at(static_cast<std::size_t>(frmSave.cboDelimiter.index)),
              "Tabulator");
    EXPECT_FALSE(frmSave.optWasSpeichern[kSaveSelected].enabled);
}

TEST_F(SaveReport, SelectedFolderIsOfferedOnlyWhereOneIsSelected) {
    grid.setSelected(sampleTree("/srv/data"), true);
    EXPECT_TRUE(SaveForm(services()).optWasSpeichern[kSaveSelected].enabled);
}

TEST_F(SaveReport, FormSpeaksTheUsersLanguage) {
    english();
    const SaveForm frmSave(services());
    EXPECT_EQ(frmSave.caption, "Save");
    EXPECT_EQ(frmSave.cboDelimiter.items, (std::vector<std::string>{"Comma", "Semicolon", "Tab", "Space"}));
}

TEST_F(SaveReport, EachFormatHasItsDelimiter) {
    SaveForm frmSave(services());
    frmSave.cboFormat.index = kFormatCsv;
    frmSave.cboFormat_Click();
    EXPECT_EQ(frmSave.cboDelimiter.index, kDelimiterSemicolon);
    frmSave.cboFormat.index = kFormatTxt;
    frmSave.cboFormat_Click();
    EXPECT_EQ(frmSave.cboDelimiter.index, kDelimiterTab);
}

TEST_F(SaveReport, LevelsTakeDigitsAndBackspaceOnly) {
    std::u32string passed;
    for (char32_t key = 1; key < 0x3000; ++key)
        if (const char32_t kept = SaveForm::txtLevels_KeyPress(key); kept != 0) passed += kept;
    EXPECT_EQ(passed, U"\b0123456789");
}

TEST_F(SaveReport, AGroupHasOneSelectedButtonAtMost) {
    std::array<OptionButton, 3> group;
    EXPECT_EQ(GetOptionButtonSelectedIndex(group), -1);
    selectOption(group, 2);
    selectOption(group, 1);
    EXPECT_EQ(GetOptionButtonSelectedIndex(group), 1);
    EXPECT_FALSE(group[2].selected);
}

TEST_F(SaveReport, DialogIsAskedForTheFormatOfTheList) {
    sampleTree("/srv/data");
    FakeDialog answers;
    dialog = &answers;
    for (const int format : {kFormatTxt, kFormatCsv}) {
        SaveForm frmSave(services());
        frmSave.cboFormat.index = format;
        frmSave.OKButton_Click();
    }
    ASSERT_EQ(answers.asked.size(), 2U);
    EXPECT_EQ(answers.asked[0].filter, "TXT (*.txt)|*.txt");
    EXPECT_EQ(answers.asked[0].defaultExtension, "txt");
    EXPECT_EQ(answers.asked[1].filter, "CSV (*.csv)|*.csv");
    EXPECT_EQ(answers.asked[1].defaultExtension, "csv");
    EXPECT_EQ(answers.asked[1].initialFolder, "/");
}

TEST_F(SaveReport, ACancelledDialogWritesNothingAndEndsTheForm) {
    sampleTree("/srv/data");
    FakeDialog answers;
    dialog = &answers;
    SaveForm frmSave(services());
    std::string path;
    EXPECT_FALSE(frmSave.SPEICHERN(path, -1, -1));
    EXPECT_FALSE(frmSave.loaded);
    EXPECT_FALSE(frmSave.hourglass);
    EXPECT_TRUE(frmSave.OKButton.enabled);
    EXPECT_EQ(texts->sink.shown.size(), 0U);
}

TEST_F(SaveReport, OkSavesWhereTheDialogSaysAndEndsTheForm) {
    sampleTree("/srv/data");
    FakeDialog answers;
    answers.answer = pathOf("chosen.txt");
    dialog = &answers;
    SaveForm frmSave(services());
    frmSave.OKButton_Click();
    EXPECT_EQ(linesIn(test::contentOf(answers.answer)), 2U) << "the view is folded: header and source";
    EXPECT_FALSE(frmSave.loaded);
    EXPECT_TRUE(frmSave.OKButton.enabled && frmSave.CancelButton.enabled && frmSave.optLevels[0].enabled);
}

// --- what is written

TEST_F(SaveReport, TheNameDecidesTheFormat) {
    sampleTree("/srv/data");
    const struct {
        std::string name;
        bool text;
    } cases[] = {{"a.txt", true}, {"A.TXT", true},      {"a.csv", false},
                 {"a", false},    {"a.txt.bak", false}, {"txt", false}};
    for (const auto& c : cases) EXPECT_EQ(saved(c.name).starts_with("Größe"), c.text) << c.name;
}

TEST_F(SaveReport, AListThatSaysCsvGivesItsDelimiterToATextFile) {
    sampleTree("/srv/data");
    SaveForm frmSave(services());
    frmSave.cboFormat.index = kFormatCsv;
    frmSave.cboFormat_Click();
    EXPECT_TRUE(savedBy(frmSave, "r.txt").starts_with("Größe (MB);Dateien;Ordner;Pfad\r\n"));
}

TEST_F(SaveReport, LevelsComeFromTheOrderOrTheControls) {
    sampleTree("/srv/data");
    const struct {
        std::int32_t levels;
        SaveLevels option;
        std::string typed;
        std::size_t rows;
    } cases[] = {
        {0, kSaveUnfolded, "", 8},  // A silent run's 0: everything.
        {2, kSaveUnfolded, "", 6},      {1, kSaveAllLevels, "", 4},  {-7, kSaveUnfolded, "", 1},
        {-1, kSaveAllLevels, "", 8},    {-1, kSaveUnfolded, "3", 1}, {-1, kSaveSomeLevels, "1", 4},
        {-1, kSaveSomeLevels, "0", 1},  // As far as unfolded.
        {-1, kSaveSomeLevels, "77", 8},
    };
    for (const auto& c : cases) {
        SaveForm frmSave(services());
        selectOption(frmSave.optLevels, static_cast<std::size_t>(c.option));
        frmSave.txtLevels = c.typed;
        EXPECT_EQ(linesIn(savedBy(frmSave, "r.csv", c.levels)), 1 + c.rows)
            << c.levels << " " << c.option << " '" << c.typed << "'";
    }
}

TEST_F(SaveReport, ADelimiterThatDoesNotExistIsPassedOver) {
    sampleTree("/srv/data");
    for (const std::int32_t delimiter : {-1, 4, 99})
        EXPECT_TRUE(saved("r.csv", 0, delimiter).starts_with("\"Pfad\"\t")) << delimiter;
}

TEST_F(SaveReport, UnfoldedRowsWithinAFoldedOneStayOut) {
    const Row bilder = sampleTree("/srv/data");
    grid.setExpanded(bilder, true);
    SaveForm frmSave(services());
    EXPECT_EQ(linesIn(savedBy(frmSave, "r.csv")), 2U);
}

TEST_F(SaveReport, AllLevelsEndAtLevel999) {
    chain(1200);
    EXPECT_EQ(linesIn(saved("r.csv")), 1U + 1000U);
}

TEST_F(SaveReport, AChainOf100000FoldersIsWrittenToTheLevelAskedFor) {
    chain(100000);
    const std::string report = saved("r.csv", 3);
    EXPECT_EQ(linesIn(report), 1U + 4U);
    EXPECT_TRUE(holdsPath(report, "/c/f/f/f"));
}

// The whole chain on a stack that has room for a few levels of anything that calls itself.
TEST_F(SaveReport, DepthTakesNoStack) {
    chain(10000);
    SmallDisk disk(nullptr, SIZE_MAX);
    files = &disk;
    bool written = false;
    const auto save = [&] {
        SaveForm frmSave(services());
        std::string path = "/nowhere.csv";
        written = frmSave.SPEICHERN(path, 20000, -1);
    };
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, 256 << 10), 0);
    const auto run = [](void* routine) -> void* {
        (*static_cast<decltype(save)*>(routine))();
        return nullptr;
    };
    pthread_t thread{};
    ASSERT_EQ(pthread_create(&thread, &attributes, run, const_cast<void*>(static_cast<const void*>(&save))),
              0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
    EXPECT_TRUE(written);
    EXPECT_GT(disk.taken, 10000U * 10000U);
}

TEST_F(SaveReport, RowsAreWrittenInLargeBlocks) {
    const Row root = folder(kNoRow, "/srv", 0, 0, 5000);
    for (int i = 0; i < 5000; ++i) folder(root, "a folder with a name", 4096, 1, 0);
    SmallDisk disk(nullptr, SIZE_MAX);
    files = &disk;
    saved("r.csv");
    EXPECT_GT(disk.taken, 200000U);
    EXPECT_LE(static_cast<std::size_t>(disk.writes), disk.taken / (64U << 10) + 1);
}

TEST_F(SaveReport, SizesForCsvFollowTheMode) {
    SaveForm frmSave(services());
    const struct {
        std::uint8_t mode;
        Flag decimals;
        const char* text;
    } cases[] = {{0, 1, "1610612736"}, {1, 1, "1572864,00"}, {2, 0, "1536"}, {3, 1, "1,50"}, {3, 0, "2"},
                 {3, 2, "2"},          {4, 1, ""},           {5, 1, "0,00"}, {9, 1, ""}};
    for (const auto& c : cases) {
        options.FileSizeFormat = c.mode;
        options.SizeFormatNachkommastellenFolders = c.decimals;
        std::string text = "old";
        frmSave.FormatFileSizeSave(SizeValue::fromBytes(1610612736), text);
        EXPECT_EQ(text, c.text) << int{c.mode} << " " << int{c.decimals};
    }
}

// --- failures

TEST_F(SaveReport, NothingReadIsAnErrorThatSaysSo) {
    EXPECT_EQ(saved("r.csv"), test::kNotWritten);
    EXPECT_EQ(texts->reports("Nothing was read"), 1U);
    EXPECT_FALSE(fs::exists(pathOf("r.csv")));
}

TEST_F(SaveReport, LevelsThatAreNoNumberAreAnError) {
    sampleTree("/srv/data");
    for (const char* typed : {"", "x", "1x"}) {
        SaveForm frmSave(services());
        selectOption(frmSave.optLevels, kSaveSomeLevels);
        frmSave.txtLevels = typed;
        EXPECT_EQ(savedBy(frmSave, "r.csv"), test::kNotWritten) << typed;
    }
    EXPECT_EQ(texts->reports("Type mismatch"), 3U);
    SaveForm frmSave(services());
    selectOption(frmSave.optLevels, kSaveSomeLevels);
    frmSave.txtLevels = "2147483648";
    EXPECT_EQ(savedBy(frmSave, "r.csv"), test::kNotWritten);
    EXPECT_EQ(texts->reports("Overflow"), 1U);
}

TEST_F(SaveReport, AFullDeviceIsReportedWithItsName) {
    sampleTree("/srv/data");
    std::string path = "/dev/full";
    SaveForm frmSave(services());
    EXPECT_FALSE(frmSave.SPEICHERN(path, 0, 0));
    EXPECT_EQ(texts->reports("/dev/full: No space left on device"), 1U);
    EXPECT_EQ(texts->reports("SPEICHERN"), 1U);
    EXPECT_EQ(texts->reports("FileSizeFormat=2"), 1U) << "the local values";
    EXPECT_FALSE(frmSave.OKButton.enabled) << "the form serves once";
}

TEST_F(SaveReport, AMissingFolderIsReportedWithItsName) {
    sampleTree("/srv/data");
    EXPECT_EQ(saved("no/such\nfolder/r.csv"), test::kNotWritten);
    EXPECT_EQ(texts->reports("/no/such\xE2\x90\x8A"
                             "folder/r.csv: No such file or directory"),
              1U);
}

TEST_F(SaveReport, ADiskThatFillsUpLeavesTheOlderReport) {
    const Row root = folder(kNoRow, "/srv", 0, 0, 5000);
    for (int i = 0; i < 5000; ++i) folder(root, "a folder with a name", 4096, 1, 0);
    test::writeFile(pathOf("r.csv"), "older");
    SmallDisk disk(files, 100000);
    files = &disk;
    EXPECT_EQ(saved("r.csv"), test::kNotWritten);
    EXPECT_EQ(test::contentOf(pathOf("r.csv")), "older");
    EXPECT_EQ(texts->reports("No space left on device"), 1U) << "one report for one full disk";
    EXPECT_EQ(texts->reports("rows=5001"), 0U) << "the walk ends there";
    EXPECT_EQ(disk.writes, 2) << "nothing is tried after the failure";
    EXPECT_EQ(std::distance(fs::directory_iterator(texts->dir.path()), {}), 1) << "nothing else is left";
}

TEST_F(SaveReport, AnErrorInALevelCostsThatLevelAlone) {
    const Row root = folder(kNoRow, "/srv", 0, 0, 2);
    const Row first = folder(root, "first", 0, 0, 200);
    for (int i = 0; i < 200; ++i) folder(first, "f" + std::to_string(i), 0, 0, 0);
    folder(root, "second", 0, 0, 0);
    FailingPump failing;
    failing.failAt = 2;  // Messages run every 64 rows.
    pump = &failing;
    const std::string report = saved("r.csv");
    EXPECT_TRUE(holdsPath(report, "/srv/first/f100"));
    EXPECT_FALSE(holdsPath(report, "/srv/first/f199"));
    EXPECT_TRUE(holdsPath(report, "/srv/second"));
    EXPECT_EQ(texts->reports("TreeViewSpeichernR"), 1U);
    EXPECT_EQ(texts->reports("a handler failed"), 1U);
}

TEST_F(SaveReport, ASizeOutOfRangeCostsItsLevelOnEveryDepth) {
    const Row root = folder(kNoRow, "/srv", 0, 0, 2);
    const Row deep = folder(folder(root, "a", 0, 0, 2), "b", 0, 0, 1);
    folder(deep, "too large", std::int64_t{1} << 60, 0, 0);
    folder(deep, "behind it", 0, 0, 0);
    folder(grid.parent(deep), "beside b", 0, 0, 0);
    const std::string report = saved("r.csv");
    EXPECT_FALSE(holdsPath(report, "/srv/a/b/behind it"));
    EXPECT_TRUE(holdsPath(report, "/srv/a/beside b"));
    EXPECT_EQ(texts->reports("Overflow"), 1U);
    EXPECT_EQ(linesIn(report), 1U + 4U);
}

TEST_F(SaveReport, MessagesRunWhileRowsAreWritten) {
    const Row root = folder(kNoRow, "/srv", 0, 0, 0);
    for (int i = 0; i < 1000; ++i) folder(root, "f", 0, 0, 0);
    FailingPump listening;
    pump = &listening;
    saved("r.csv");
    EXPECT_GE(listening.pumped, 10);
}

}  // namespace
}  // namespace hl
