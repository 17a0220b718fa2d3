#include "views/drive_list.h"

#include "app/setting_keys.h"
#include "platform/icons.h"
#include "platform/window.h"
#include "support/fake_window.h"
#include "support/test_scan.h"
#include "views/cell_text.h"
#include "views/drive_combo.h"
#include "views/list_columns.h"

namespace hl::test {
namespace {

/// Drives that answer when they are told to.
struct ScriptedDrives final : Drives {
    std::vector<Drive> table;
    std::map<std::string, Drive, std::less<>> shares;  ///< By their UNC texts.
    std::deque<std::pair<std::string, std::function<void(const DriveAnswer&)>>> questions;
    std::map<std::string, DriveSpace> space;  ///< By root; a root that is missing here does not answer.

    std::vector<Drive> drives() override { return table; }
    std::optional<Drive> network(std::string_view unc) override {
        const auto found = shares.find(unc);
        return found == shares.end() ? std::nullopt : std::optional(found->second);
    }
    void ask(const Drive& drive, std::function<void(const DriveAnswer&)> answered) override {
        questions.emplace_back(drive.root, std::move(answered));
    }
    void takeAnswers() override {
        for (auto& [root, answered] : std::exchange(questions, {}))
            answered(space.contains(root) ? DriveAnswer(space[root]) : Error());
    }
    int answersDescriptor() override { return -1; }
};

struct RecordingDriveHost final : DriveListHost {
    std::vector<std::string> sources;

    void Drives_ResizeTableHeight() override {}
    void readSources(const std::vector<std::string>& read) override { sources = read; }
    void openDriveMenu(Row, Point) override {}
    void copyPaths(const std::vector<std::string>& paths) override { copied = paths; }
    std::vector<std::string> copied;
};

/// A numbered list of the settings.
struct SavedList {
    SettingsStore& store;
    std::string_view section, suffix;
    std::vector<std::string> now() const { return readNumberedList(store.read(), section, suffix); }
    void become(const std::vector<std::string>& texts) {
        store.change([&](IniText& ini) { writeNumberedList(ini, section, suffix, texts); });
    }
};

struct DriveListTest : testing::Test, TestScan {
    DriveListTest() {
        numbers = {};
        Init_List(grid, kDrivesTable, options, texts);
        options.FileSizeFormatDrive = 3;
        options.SizeFormatNachkommastellenDrive = 1;
        drives.table = {{"/", DriveType::kFixed, "ext4", "root"},
                        {"/media/stick", DriveType::kRemovable, "vfat", ""},
                        {"/media/stick2", DriveType::kDisc, "udf", Error{2}}};
    }
    ~DriveListTest() override { EXPECT_EQ(diagnostics.errcount(), 0U); }

    std::string cellText(std::size_t row, std::size_t column) const {
        return ColumnText(grid, column, numbers).of(grid.rowAt(row));
    }
    /// Returns all columns of a row with "|" between them.
    std::string rowText(std::size_t row) const {
        std::string text;
        for (std::size_t column = 0; column < grid.columns().size(); ++column)
            text += (column > 0 ? "|" : "") + cellText(row, column);
        return text;
    }
    std::vector<std::string> roots() const {
        std::vector<std::string> all;
        for (std::size_t i = 0; i < grid.rowCount(); ++i) all.emplace_back(grid.text(grid.rowAt(i)));
        return all;
    }

    SavedList saved{store, kSectionDriveFolders, kDriveFolderSuffix};
    Grid grid{kDriveCells};
    ScriptedDrives drives;
    FakeWindow window;
    RecordingDriveHost host;
    DriveList list{scan, grid, drives, window, host};
};

constexpr std::uint64_t kGiB = std::uint64_t{1} << 30;

TEST_F(DriveListTest, HasARowForEachDriveAtOnceAndItsSizesLater) {
    drives.space["/"] = DriveSpace{10 * kGiB, 4 * kGiB, 4096};
    list.Drives_GetAllDrives();
    EXPECT_EQ(rowText(0), "/||||||root|ext4|Lokaler Datenträger|");
    EXPECT_EQ(rowText(1), "/media/stick||||||(no label)|vfat|Wechseldatenträger|");
    EXPECT_EQ(rowText(2), "/media/stick2|||||||udf|CD/DVD|") << "labels could not be read";
    for (const auto& [row, icon] :
         {std::pair(0U, kIconDriveFixed), {1U, kIconDriveRemovable}, {2U, kIconDriveDisc}})
        EXPECT_EQ(grid.picture(grid.rowAt(row)), icon) << row;
    list.takeAnswers();
    EXPECT_EQ(rowText(0),
              "/|10,737,418,240|4,294,967,296|40%|6,442,450,944|60%|root|ext4|Lokaler Datenträger|4.00 KB");
    EXPECT_EQ(rowText(1), "/media/stick|||||||vfat|Wechseldatenträger|") << "a drive that does not answer";
    EXPECT_TRUE(grid.redraw() && TestScan::host.calls.back() == "not busy");
}

TEST_F(DriveListTest, DropsAnswersForRowsThatAreGoneOrAskedAnew) {
    drives.space["/"] = DriveSpace{100, 50, 0};
    list.Drives_GetAllDrives();
    const auto old = std::exchange(drives.questions, {});
    ASSERT_EQ(old.size(), 3U);
    drives.table.resize(2);
    list.Drives_GetAllDrives();             // The rows are the same and have the same numbers.
    list.Drives_AddUNCpath("//not/there");  // It gets the place of the third drive and is not asked.
    for (const auto& [root, answered] : old) answered(DriveSpace{7, 1, 0});
    for (const std::size_t row : {0U, 1U, 2U}) EXPECT_EQ(cellText(row, kDriveListTotal), "");
    list.takeAnswers();
    EXPECT_EQ(cellText(0, kDriveListTotal), "100");
    {
        DriveList other(scan, grid, drives, window, host);
        other.Drives_GetAllDrives();
    }
    drives.takeAnswers();  // The row that asked is gone.
    EXPECT_EQ(cellText(0, kDriveListTotal), "");
}

TEST_F(DriveListTest, ShowsSizesOfAllMagnitudes) {
    constexpr std::uint64_t kMost = 922337203685477;
    const std::pair<DriveSpace, const char*> cases[] = {
        {{1000, 0, 512}, "1,000||0%|1,000|100%|512 Bytes"},  // The drive is full: there is a bar, though no
                                                             // size.
        {{1000, 375, 0}, "1,000|375|38%|625|62%|"},          // Halves are rounded to the even number.
        {{1000, 375, 0, 50}, "1,000|375|38%|575|58%|"},      // The rest is reserved.
        {{1000, 375, 0, 5000}, "1,000|375|38%||0%|"},
        {{kMost, 1, 0}, "922,337,203,685,477|1|0%|922,337,203,685,476|100%|"},
        {{kMost + 1, 1, 4096}, "|||||"},
        {{0, 5, 4096}, "|||||4.00 KB"}};
    for (const auto& [space, expected] : cases) {
        drives.space["/"] = space;
        list.Drives_GetAllDrives();
        list.takeAnswers();
        std::string shown;
        for (const std::size_t column : {kDriveListTotal, kDriveListFree, kDriveListFreeBar, kDriveListUsed,
                                         kDriveListUsedBar, kDriveListCluster})
            shown += (column == kDriveListTotal ? "" : "|") + cellText(0, column);
        EXPECT_EQ(shown, expected);
    }
}

TEST_F(DriveListTest, HidesLabelsOfMoreThanThirteenCharacters) {
    const std::tuple<Result<std::string>, const char*, bool> cases[] = {
        {"1234567890123", "1234567890123", false},
        {"12345678901234", "", true},
        {"äöüäöüäöüäöüä", "äöüäöüäöüäöüä", false},
        {"", "(no label)", false},
        {Error{13}, "", true}};
    for (const auto& [label, shown, fails] : cases) {
        const auto result = xGetDriveLabel({"/", DriveType::kFixed, "", label}, texts);
        EXPECT_EQ(result.valueOr(""), shown);
        EXPECT_EQ(!result, fails) << shown;
    }
}

TEST_F(DriveListTest, ChangesTheUnitOfItsThreeSizeColumnsAndTheBar) {
    drives.space["/"] = DriveSpace{kGiB * 3 / 2, kGiB / 2, 0};
    list.Drives_GetAllDrives();
    list.takeAnswers();
    const std::tuple<std::uint8_t, Flag, const char*> cases[] = {
        {0, 1, "1,610,612,736|536,870,912|1,073,741,824"},
        {1, 0, "1,572,864 KB|524,288 KB|1,048,576 KB"},
        {3, 1, "1.50 GB|0.50 GB|1.00 GB"},
        {3, 0, "2 GB|1 GB|1 GB"},
        {4, 1, "1.50|0.50|1.00"},  // There is no such unit: the cells stay.
    };
    for (const auto& [mode, decimals, shown] : cases) {
        options.FileSizeFormatDrive = mode;
        options.SizeFormatNachkommastellenDrive = decimals;
        list.Drives_ChangeSizeFormat();
        EXPECT_EQ(cellText(0, kDriveListTotal) + "|" + cellText(0, kDriveListFree) + "|" +
                      cellText(0, kDriveListUsed),
                  shown);
        EXPECT_TRUE(grid.enabled() && grid.redraw());
    }
}

TEST_F(DriveListTest, AddsWhatIsAUncTextAndNothingElse) {
    drives.shares["//nas/data/"] = {"/net", DriveType::kRemote, "nfs", "nas:/data"};
    for (const char* answer : {"", "\\\\", "//", "C:\\", "/mnt", "\\server"}) {
        window.answer = answer;
        list.Drives_AddUNCpath("");
        EXPECT_EQ(grid.rowCount(), 0U) << answer;
    }
    EXPECT_EQ(window.prompt, "UNC-Pfad einer Laufwerksfreigabe im Netzwerk:");
    EXPECT_EQ(window.preset, "\\\\");
    window.answer = "\\\\server\\share";
    list.Drives_AddUNCpath("");
    list.Drives_AddUNCpath("\\\\server\\share\\");  // Adding it a second time is allowed.
    list.Drives_AddUNCpath("//nas/data");
    EXPECT_EQ(rowText(0), "\\\\server\\share\\||||||||?|");
    EXPECT_EQ(rowText(2), "//nas/data/||||||nas:/data|nfs|Netzlaufwerk|");
    EXPECT_EQ(roots().size(), 3U);
    EXPECT_EQ(drives.questions.size(), 1U) << "what is not mounted is not asked";
}

TEST_F(DriveListTest, KeepsSharesInTheSettingsAndLosesThoseNotSaved) {
    saved.become({"\\\\a\\1", "//b/2/"});
    list.Drives_SaveNetworkFolders();
    EXPECT_EQ(saved.now().size(), 2U) << "none was loaded yet";
    list.Drives_GetAllDrives();
    list.Drives_AddUNCpath("\\\\c\\3");
    EXPECT_EQ(roots(), (std::vector<std::string>{"/", "/media/stick", "/media/stick2", "\\\\a\\1\\", "//b/2/",
                                                 "\\\\c\\3\\"}));
    grid.setSelected(grid.rowAt(3), true);
    list.Shortcut(GridShortcut::kCopy);
    EXPECT_EQ(host.copied.size(), 1U);
    list.deletePressed(false);
    list.deletePressed(false);  // Nothing is selected any more.
    EXPECT_EQ(grid.rowCount(), 5U);
    list.Drives_SaveNetworkFolders();
    list.Drives_AddUNCpath("\\\\d\\4");
    list.Drives_GetAllDrives();
    EXPECT_EQ(saved.now(), (std::vector<std::string>{"//b/2/", "\\\\c\\3\\"}));
    EXPECT_EQ(roots().back(), "\\\\c\\3\\");
    grid.setSelected(grid.rowAt(0), true);
    list.deletePressed(false);
    EXPECT_EQ(grid.rowCount(), 5U) << "a local drive stays";
}

TEST_F(DriveListTest, SelectsTheDriveThatASourceLiesOnAndRefreshesOneThatIsAWholeSource) {
    drives.shares["\\\\S\\a\\"] = {"/net/a", DriveType::kRemote, "cifs", "//s/a"};
    list.Drives_GetAllDrives();
    list.Drives_AddUNCpath("\\\\S\\a");
    list.takeAnswers();
    const char* const cases[][3] = {// Each case has the source, the row that is selected, and the drive that
                                    // is asked.
                                    {"/", "0", "/"},
                                    {"/home/x", "0", ""},
                                    {"/media/stick", "1", "/media/stick"},
                                    {"/media/stick/deep", "1", ""},
                                    {"/media/stick2/d", "2", ""},
                                    {"/media/stic", "0", ""},
                                    {"\\\\S\\a", "", "/net/a"}};
    for (const auto& [source, expected, asked] : cases) {
        grid.selectNone();
        report.clear();
        drives.questions.clear();
        const Row below = report.addRow(report.addRow(kNoRow, source), "below");
        list.Drives_SelectDrive(below);
        list.Drives_RefreshDrive(below);
        std::string selected;
        for (const Row row : grid.selectedRows()) selected += std::to_string(grid.indexOf(row));
        EXPECT_EQ(selected, expected) << source;
        EXPECT_EQ(drives.questions.empty() ? "" : drives.questions[0].first, asked) << source;
    }
}

TEST_F(DriveListTest, ReadsTheFirstSelectedDriveOrAllOfThem) {
    list.Drives_ScanDrives(false);
    list.Drives_ScanDrives(true);
    EXPECT_TRUE(host.sources.empty());
    drives.shares["//s/a/"] = {"/net/a", DriveType::kRemote, "cifs", "//s/a"};
    list.Drives_GetAllDrives();
    list.Drives_AddUNCpath("//s/a");
    list.Drives_AddUNCpath("//not/there");
    list.Drives_ScanDrives(true);
    EXPECT_TRUE(host.sources.empty()) << "nothing is selected";
    grid.setSelected(grid.rowAt(2), true);
    grid.setSelected(grid.rowAt(1), true);
    list.Drives_ScanDrives(true);
    EXPECT_EQ(host.sources, std::vector<std::string>{"/media/stick"});
    for (const bool locked : {true, false}) {
        state.ScanActive = locked;
        for (const bool key : {true, false}) {
            host.sources.clear();
            key ? list.KeyUp(kKeyReturn) : list.DblClick();
            EXPECT_EQ(host.sources.empty(), locked) << "Return and a double click read the drive";
        }
    }
    list.Drives_ScanDrives(false);
    EXPECT_EQ(host.sources,
              (std::vector<std::string>{"/", "/media/stick", "/media/stick2", "/net/a", "//not/there/"}));
}

const std::vector<Drive> kDrives = {
    {"/boot", DriveType::kFixed, "ext4", ""},      {"/", DriveType::kFixed, "ext4", "root"},
    {"/net", DriveType::kRemote, "nfs", "nas:/x"}, {"/tmp", DriveType::kRam, "tmpfs", ""},
    {"/no", DriveType::kNoRoot, "", ""},           {"/what", DriveType::kUnknown, "", ""}};

struct DriveCombo : testing::Test {
    std::string selected() const { return combo.selected() == nullptr ? "" : combo.selected()->text; }
    void load(const std::string& comboText) {
        GetAllSavedComboFolders(
            combo, texts.store, kDrives, comboText,
            [&](const std::string& folder) {
                asked.push_back(folder);
                return folder.find("gone") == std::string::npos;
            },
            kPosixPaths);
    }

    TestTexts texts;
    SavedList saved{texts.store, kSectionComboFolders, kComboFolderSuffix};
    SourceCombo combo;
    std::vector<std::string> asked;
};

TEST_F(DriveCombo, ShowsDrivesWithTheirLabels) {
    GetAllDrives(combo, kDrives, "", kPosixPaths);
    std::string shown;
    for (const SourceItem& item : combo.items())
        shown += item.text + "|" + item.key + "|" + item.tag + "|" + std::to_string(item.image) + "\n";
    EXPECT_EQ(shown,
              "/boot|/boot/|/boot/|2\n/ [root]|/|/|2\n/net [nas:/x]|/net/|/net/|3\n/tmp|/tmp/|/tmp/|5\n");
    combo.addOrSelect("/net", kPosixPaths);
    EXPECT_EQ(combo.items().size(), 4U) << "a drive that is typed is the drive";
}

TEST_F(DriveCombo, SelectsTheLastOfTheStoredTextAndTheRoot) {
    const char* const cases[][2] = {
        {"", "/ [root]"}, {"/net [nas:/x]", "/net [nas:/x]"}, {"/boot", "/ [root]"}, {"/net", "/ [root]"}};
    for (const auto& [stored, expected] : cases) {
        combo = {};
        GetAllDrives(combo, kDrives, stored, kPosixPaths);
        EXPECT_EQ(selected(), expected) << stored;
        EXPECT_EQ(combo.text, expected) << stored;
    }
}

TEST_F(DriveCombo, TakesBackSavedFoldersThatExistOnce) {
    saved.become({"/a/", "/gone/", "/net/gone/", "/a/", "/tmp/", "/b \xFF/"});
    GetAllDrives(combo, kDrives, "/tmp/", kPosixPaths);
    load("/a/");
    std::string shown;
    for (std::size_t i = 4; i < combo.items().size(); ++i) shown += combo.items()[i].tag + "|";
    EXPECT_EQ(shown, "/a/|/net/gone/|/b \xFF/|");
    EXPECT_EQ(selected(), "/a/");
    EXPECT_EQ(combo.items()[4].image, kPictureSource);
    EXPECT_EQ(std::count(asked.begin(), asked.end(), "/net/gone/"), 0) << "its server may be dead";
}

TEST_F(DriveCombo, SavesTheLastTenFoldersFromTheEnd) {
    GetAllDrives(combo, kDrives, "", kPosixPaths);
    for (int i = 0; i < 12; ++i) combo.addOrSelect("/f" + std::to_string(i), kPosixPaths);
    combo.add({"  ", "  ", "  ", kPictureSource});
    SaveAllComboFolders(combo, texts.store);
    ASSERT_EQ(saved.now().size(), 10U);
    EXPECT_EQ(saved.now().front(), "/f11/");
    EXPECT_EQ(saved.now().back(), "/f2/");
    SaveAllComboFolders(SourceCombo(), texts.store);
    EXPECT_TRUE(saved.now().empty());
}

}  // namespace
}  // namespace hl::test
