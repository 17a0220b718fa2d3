#include "views/cell_text.h"

#include "platform/linux/change/files.h"
#include "scan/file_columns.h"
#include "support/environment.h"
#include "support/test_texts.h"
#include "views/changes_list.h"
#include "views/drive_list.h"
#include "views/list_columns.h"
#include "views/report_columns.h"
#include "views/type_names.h"

namespace hl::test {
namespace {

struct CellText : testing::Test {
    std::string of(const Grid& grid, Row row, std::size_t column) {
        return ColumnText(grid, column, numbers).of(row);
    }

    TestTexts texts;
    Options options;
    NumberFormat numbers = numberFormatOf("de_DE");
};

TEST_F(CellText, OfTheReportFollowsTheUnit) {
    Grid grid(kFolderCells);
    Init_Tree(grid, options, texts.texts);
    const Row row = grid.addRow(kNoRow, "/srv/a\nx\xFF");
    EXPECT_EQ(of(grid, row, kReportRowName), "/srv/a\u240Ax\uFFFD");
    EXPECT_EQ(of(grid, row, kReportSize) + of(grid, row, kReportFolders), "") << "0 shows nothing";
    EXPECT_EQ(of(grid, row, kReportPercent), "0%");
    grid.setNumber(row, kSize, 1288490188);
    grid.setNumber(row, kPercent, 12.35);
    grid.setNumber(row, kFiles, 1234567);
    EXPECT_EQ(of(grid, row, kReportSize), "1.288.490.188");
    EXPECT_EQ(of(grid, row, kReportFiles), "1.234.567");
    const std::pair<Flag, std::string> cases[] = {{1, "1.228,80 12,35%"}, {0, "1.229 12%"}};
    for (const auto& [decimals, text] : cases) {
        options.FileSizeFormat = 2;
        options.SizeFormatNachkommastellenFolders = decimals;
        showSizes(grid, kReportTable, options, texts.texts);
        EXPECT_EQ(of(grid, row, kReportSize) + " " + of(grid, row, kReportPercent), text);
    }
}

// What lists save and show is rounded to hundredths first, with ties to even; what the drives show is not.
TEST_F(CellText, OfASizeIsRoundedInItsUnitAsItsListWantsIt) {
    Grid grid(kFileCells), drives(kDriveCells);
    Init_List(grid, kTopTable, options, texts.texts);
    Init_List(drives, kDrivesTable, options, texts.texts);
    options.SizeFormatNachkommastellenDrive = 1;
    const std::size_t column = kTopTable.columnOf(kFileSize);
    const Row row = grid.addRow(kNoRow, "a"), drive = drives.addRow(kNoRow, "/");
    const std::tuple<double, std::array<double, 3>, const char*> cases[] = {
        {128, {0.12, 0, 0}, "0,13 KB"},
        {384, {0.38, 0, 0}, "0,38 KB"},
        {131072, {128, 0.12, 0}, "128,00 KB"},
        {1610612736, {1572864, 1536, 1.5}, "1.572.864,00 KB"}};
    for (const auto& [bytes, inUnits, ofDrive] : cases) {
        grid.setNumber(row, kFileSize, bytes);
        for (const int mode : {1, 2, 3}) {
            options.FileSizeFormatTop = static_cast<Flag>(mode);
            showSizes(grid, kTopTable, options, texts.texts);
            EXPECT_EQ(ColumnText(grid, column, numbers).number(row), inUnits.at(mode - 1)) << bytes;
        }
        options.FileSizeFormatDrive = 1;
        showSizes(drives, kDrivesTable, options, texts.texts);
        drives.setNumber(drive, kGsize, bytes);
        EXPECT_EQ(of(drives, drive, kDriveListTotal), ofDrive);
    }
}

TEST_F(CellText, OfASizeTooSmallForItsUnitSaysSo) {
    Grid grid(kFolderCells), drives(kDriveCells);
    Init_Tree(grid, options, texts.texts);
    Init_List(drives, kDrivesTable, options, texts.texts);
    const Row row = grid.addRow(kNoRow, "a"), drive = drives.addRow(kNoRow, "/");
    // Sizes are in KB; half of a hundredth of one is 5.12 bytes. 508 bytes are less than half of one.
    const std::tuple<int, const char*, const char*> cases[] = {
        {0, "", ""}, {5, "< 0,01", "< 1"}, {6, "0,01", "< 1"}, {508, "0,50", "< 1"}, {512, "0,50", "1"}};
    for (const auto& [bytes, withDecimals, without] : cases)
        for (const Flag decimals : {Flag{1}, Flag{0}}) {
            const std::string text = decimals == 1 ? withDecimals : without;
            options.FileSizeFormat = 1;
            options.SizeFormatNachkommastellenFolders = decimals;
            showSizes(grid, kReportTable, options, texts.texts);
            grid.setNumber(row, kSize, bytes);
            EXPECT_EQ(of(grid, row, kReportSize), text) << bytes;
            options.FileSizeFormatDrive = 1;
            options.SizeFormatNachkommastellenDrive = decimals;
            showSizes(drives, kDrivesTable, options, texts.texts);
            drives.setNumber(drive, kFsize, bytes);
            EXPECT_EQ(of(drives, drive, kDriveListFree), text.empty() ? "" : text + " KB") << bytes;
        }
}

TEST_F(CellText, OfASizeInTheUnitThatFitsItIsSavedInBytes) {
    const std::tuple<double, const char*, const char*> cases[] = {{0, "", ""},
                                                                  {214, "214 Bytes", "214 Bytes"},
                                                                  {12897485, "12,30 MB", "12 MB"},
                                                                  {1, "1 Bytes", "1 Bytes"}};
    options.FileSizeFormat = options.FileSizeFormatDrive = options.FileSizeFormatFiles =
        options.FileSizeFormatTop = options.FileSizeFormatHardlinks = 6;
    const std::tuple<const ListTable&, std::span<const CellSpec>, CellId> lists[] = {
        {kReportTable, kFolderCells, kSize},
        {kDrivesTable, kDriveCells, kGsize},
        {kFilesTable, kFileCells, kFileSize},
        {kTopTable, kFileCells, kFileSize},
        {kHardlinksTable, kFileCells, kFileSize}};
    for (const auto& [table, cells, cell] : lists) {
        Grid grid(cells);
        Init_List(grid, table, options, texts.texts);
        const Row row = grid.addRow(kNoRow, "a");
        const std::size_t column = table.columnOf(cell);
        for (const Flag decimals : {Flag{1}, Flag{0}}) {
            options.*table.decimals = decimals;
            showSizes(grid, table, options, texts.texts);
            for (const auto& [bytes, with, without] : cases) {
                grid.setNumber(row, cell, bytes);
                EXPECT_EQ(of(grid, row, column), decimals == 1 ? with : without);
                EXPECT_EQ(ColumnText(grid, column, numbers).number(row), bytes);
            }
        }
        if (&table == &kDrivesTable) continue;
        EXPECT_EQ(grid.columns()[column].title + grid.columns()[column].savedTitle, "GrößeGröße (Bytes)");
    }
}

TEST_F(CellText, OfADifferenceHasItsSignInEveryUnit) {
    Grid grid(kChangeCells);
    Init_List(grid, kChangesTable, options, texts.texts);
    const Row row = grid.addRow(kNoRow, "a");
    const std::size_t column = kChangesTable.columnOf(kChangeSize);
    constexpr int kKb = kModeKilobytes;
    // Half of a hundredth of a KB is 5.12 bytes.
    const std::tuple<int, Flag, double, const char*, double> cases[] = {
        {kModeBytes, 1, 1234, "+1.234", 1234},
        {kModeBytes, 1, -1234, "-1.234", -1234},
        {kModeBytes, 1, 0, "", 0},
        {kKb, 1, 1536, "+1,50", 1.5},
        {kKb, 1, -1536, "-1,50", -1.5},
        {kKb, 1, -5, "> -0,01", 0},
        {kKb, 1, 5, "< +0,01", 0},
        {kKb, 0, -512, "-1", -0.5},
        {kKb, 0, -508, "> -1", -0.5},
        {kModeMegabytes, 1, -1572864, "-1,50", -1.5},
        {kModeGigabytes, 0, 5368709120, "+5", 5},
        {kModeAuto, 1, 1572864, "+1,50 MB", 1572864},
        {kModeAuto, 1, -1572864, "-1,50 MB", -1572864},
        {kModeAuto, 0, -3298534883328, "-3 TB", -3298534883328},
        {kModeAuto, 0, -1, "-1 Bytes", -1},
        {kModeAuto, 1, 0, "", 0}};
    for (const auto& [mode, decimals, bytes, text, saved] : cases) {
        options.FileSizeFormatChanges = static_cast<std::uint8_t>(mode);
        options.SizeFormatNachkommastellenChanges = decimals;
        showSizes(grid, kChangesTable, options, texts.texts);
        grid.setNumber(row, kChangeSize, bytes);
        EXPECT_EQ(of(grid, row, column), text) << mode << " " << bytes;
        EXPECT_EQ(ColumnText(grid, column, numbers).number(row), saved) << mode << " " << bytes;
    }
    grid.setNumber(row, kChangeSize, std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(of(grid, row, column), "") << "not compared";
}

TEST_F(CellText, OfADateIsLocalTimeAndEmptyWhereThereIsNone) {
    const Environment zone({{"TZ", "UTC-2"}});  // The zone is two hours ahead.
    options.DateFormat = "dd/MM/yyyy hh:nn:ss";
    Grid grid(kFileCells);
    Init_List(grid, kTopTable, options, texts.texts);
    const Row row = grid.addRow(kNoRow, "file");
    grid.setNumber(row, kFileDate, 1700000000);
    grid.setNumber(row, kFileDateCreated, -86400);
    EXPECT_EQ(of(grid, row, kTopTable.columnOf(kFileDate)), "15/11/2023 00:13:20 ");
    EXPECT_EQ(of(grid, row, kTopTable.columnOf(kFileDateCreated)), "31/12/1969 02:00:00 ")
        << "before 1970 is a date";
    EXPECT_EQ(of(grid, row, kTopTable.columnOf(kFileDateAccessed)), "") << "not set";
}

TEST_F(CellText, OfTextsIsWhatTheyHoldAndOfAJunctionsKindAWord) {
    Grid links(kJunctionCells);
    Init_List(links, kJunctionsTable, options, texts.texts);
    for (const auto& [type, word] : {std::pair(0, "Symbolischer Link"), {1, "Abzweigungspunkt"}}) {
        const Row link = links.addRow(kNoRow, "/srv/link");
        links.setNumber(link, kJunctionType, type);
        EXPECT_EQ(of(links, link, kJunctionsTable.columnOf(kJunctionType)), word);
    }
    Grid grid(kFileCells);
    Init_List(grid, kHardlinksTable, options, texts.texts);
    const Row row = grid.addRow(kNoRow, "file");
    grid.setCellText(row, kFilePath, "/srv/\x1b[31m/");
    grid.setNumber(row, kFileLinks, 1234);
    EXPECT_EQ(of(grid, row, kHardlinksTable.columnOf(kFilePath)), "/srv/\xE2\x90\x9B[31m/");
    EXPECT_EQ(of(grid, row, kHardlinksTable.columnOf(kFileLinks)), "1.234");
}

struct DecidesDots : FileTypes {
    std::optional<std::string> typeName(std::string_view fileName) override {
        if (fileName.find('.') == std::string_view::npos) return std::nullopt;
        return "by name";
    }
    std::string typeName(std::string_view, std::string_view beginning) override {
        return beginning.empty() ? "" : "by " + std::string(beginning);
    }
    std::string iconName(std::string_view) override { return "icon"; }
};

TEST(TypeNames, LookIntoSoManyFilesOfAListWhoseNamesDecideNothingAndCallTheOthersFiles) {
    const TempDir folder;
    writeFile(folder.path() + "/plain", "content");
    writeFile(folder.path() + "/x.y", "content");
    LinuxFiles files;
    DecidesDots types;
    const TestTexts texts;
    TypeNames names(types, files, texts.texts);
    for (int list = 0; list < 2; ++list) {
        names.restart();
        int looked = 0, called = 0;
        for (int i = 0; i < TypeNames::kMostLooks + 9; ++i) {
            EXPECT_EQ(names.of(folder.path() + "/x.y"), "by name");
            const std::string name = names.of(folder.path() + "/plain");
            looked += name == "by content" ? 1 : 0;
            called += name == "Datei" ? 1 : 0;
        }
        EXPECT_EQ(looked, TypeNames::kMostLooks);
        EXPECT_EQ(called, 9);
    }
    names.restart();
    writeFile(folder.path() + "/unknown", "");
    EXPECT_EQ(names.of(folder.path() + "/unknown"), "Datei");
    EXPECT_EQ(names.of(folder.path() + "/missing"), "");
}

}  // namespace
}  // namespace hl::test
