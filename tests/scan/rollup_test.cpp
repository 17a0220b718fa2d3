#include "scan/rollup.h"

#include "support/scan_fixture.h"

namespace hl {
namespace {

using test::file, test::folder;

class Rollup : public test::ScanFixture {
  protected:
    Row add(Row parent, std::string_view text, double size = 0) {
        const Row row = report.addRow(parent, text);
        report.setNumber(row, kSize, size);
        return row;
    }
};

TEST_F(Rollup, WritesSizeAndFilesAndNothingElse) {
    const Row row = add(kNoRow, "a");
    report.setNumber(row, kFolders, 4);
    report.setNumber(row, kPercent, 12.5);
    Report_SetNodeSizeAndFilecount(report, row, SizeValue::fromBytes(1536), 7);
    EXPECT_EQ(numbersOf(row), "a 1536 7/4");
    EXPECT_EQ(report.number(row, report.cell("sizeK")), 1.5);
    EXPECT_EQ(report.number(row, kPercent), 12.5);
}

TEST_F(Rollup, GivesEachChildItsShareOfTheParentRoundedToEven) {
    struct Case {
        double whole;
        std::vector<double> parts, percents;
    };
    for (const Case& c :
         {Case{3, {1, 2}, {33.33, 66.67}}, Case{0, {0, 0}, {0, 0}}, Case{5, {0, 5}, {0, 100}},
          Case{0, {7}, {0}}, Case{800, {1, 3, 796}, {0.12, 0.38, 99.5}}, Case{1e12, {1}, {0}}}) {
        const Row parent = add(kNoRow, "p", c.whole);
        for (const double part : c.parts) add(add(parent, "c", part), "grandchild", part);
        Report_ChangePercentValue(scan, parent);
        Row child = report.firstChild(parent);
        for (const double percent : c.percents) {
            EXPECT_EQ(report.number(child, kPercent), percent) << c.whole;
            EXPECT_EQ(report.number(report.firstChild(child), kPercent), 0) << "only direct children";
            EXPECT_EQ(report.barPicture(child), -1);
            child = report.nextSibling(child);
        }
    }
}

TEST_F(Rollup, ChoosesTheBarByTheWholePartOfThePercent) {
    options.FolderShowPercentBar = 1;
    const Row parent = add(kNoRow, "p", 1e5);
    for (const double part : {0.0, 900.0, 1000.0, 99'990.0, 99'999.0, 1e5}) add(parent, "c", part);
    Report_ChangePercentValue(scan, parent);
    std::vector<int> bars;
    for (Row row = report.firstChild(parent); row != kNoRow; row = report.nextSibling(row))
        bars.push_back(report.barPicture(row));
    EXPECT_EQ(bars, (std::vector{0, 0, 1, 99, 100, 100}));
}

TEST_F(Rollup, ReportsAShareFarBeyondTheWholeAndGoesOn) {
    struct Case {
        double part;
        Flag bars;
        std::size_t faults;
    };
    for (const Case& c :
         {Case{101.99, 1, 0}, Case{102, 0, 0}, Case{102, 1, 1}, Case{300, 1, 1}, Case{1e9, 0, 1}}) {
        options.FolderShowPercentBar = c.bars;
        errors.log.clear();
        const Row parent = add(kNoRow, "p", 100);
        add(parent, "c", c.part);
        Report_ChangePercentValue(scan, parent);
        EXPECT_EQ(errors.log.size(), c.faults) << c.part;
    }
}

TEST_F(Rollup, SortsAllLevelsAndLetsWaitingInputIn) {
    const Row a = add(kNoRow, "a", 1), b = add(kNoRow, "b", 2);
    for (const Row parent : {a, b})
        for (const double size : {5.0, 7.0, 6.0}) add(parent, std::to_string(static_cast<int>(size)), size);
    state.DeepestLevel = 1;
    pump.input = true;
    Report_Sort(scan);
    EXPECT_EQ(textsOf(report), (Lines{"b", "7", "6", "5", "a", "7", "6", "5"}));
    EXPECT_GE(pump.pumps, 2);
}

TEST_F(Rollup, JoinsThePathOfARowFromItsTexts) {
    const auto check = [&](const PathRules& rules, std::string_view source, std::string_view inner,
                           std::string_view deep) {
        const Row root = add(kNoRow, source);
        const Row child = add(root, "b c");
        const Row below = add(child, "d");
        EXPECT_EQ(Report_GetFullpathOfNode(report, child, false, rules), inner);
        EXPECT_EQ(Report_GetFullpathOfNode(report, below, true, rules), deep);
        EXPECT_EQ(Report_GetFullpathOfNode(report, root, false, rules), source);
        EXPECT_EQ(Report_GetFullpathOfNode(report, root, true, rules), AddTrailingSlash(source, rules));
    };
    check(kPosixPaths, "/", "/b c", "/b c/d/");
    check(kPosixPaths, "/s", "/s/b c", "/s/b c/d/");
    check(kDrivePaths, "C:", "C:\\b c", "C:\\b c\\d\\");
    check(kDrivePaths, "\\\\srv\\share", "\\\\srv\\share\\b c", "\\\\srv\\share\\b c\\d\\");
}

TEST_F(Rollup, RemovesTheWholeSourceOfTheCurrentRow) {
    options.CreateListTOP = 1;
    disk.sources = {folder("/s", {folder("b", {folder("c")}), file("f", 5)}),
                    folder("/t", {folder("d"), file("g", 6)})};
    readSources({"/s/", "/t/"});
    host.calls.clear();
    report.setCurrentRow(rowOf("c"));
    state.currentFolder = "/s/b/";
    Report_RemoveFolders(scan);
    EXPECT_EQ(rows(), (Lines{"/t 6 1/1", "  Dateien 6 1/0", "  d 0 0/0"}));
    EXPECT_EQ(host.calls, (Lines{"files of ''", "preview", "clear status"}));
    EXPECT_EQ(state.currentFolder, "/s/b/") << "another folder than the source itself";
    EXPECT_EQ(textsOf(top), Lines{"g"}) << "the lists keep what they hold";
    EXPECT_EQ(state.DeepestLevel, 2U);
    EXPECT_TRUE(report.enabled());
    Report_RemoveFolders(scan);
    EXPECT_EQ(report.rowCount(), 3U) << "no row is current";

    paths.foldsCase = true;
    report.setCurrentRow(rowOf("/t"));
    state.currentFolder = "/T/";
    Report_RemoveFolders(scan);
    EXPECT_EQ(report.rowCount(), 0U);
    EXPECT_EQ(state.DeepestLevel, 0U);
    EXPECT_EQ(state.currentFolder, "");
    Report_RemoveFolders(scan);
    EXPECT_EQ(errors.log.size(), 0U);
}

}  // namespace
}  // namespace hl
