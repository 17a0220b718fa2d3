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

TEST_F(Rollup, GivesEachChildItsShareOfTheParentRoundedToEvenAndTheBarOfItsWholePart) {
    using Numbers = std::vector<double>;
    using Case = std::tuple<double, Numbers, Numbers, Numbers>;
    for (const auto& [whole, parts, shares, filled] :
         {Case{3, {1, 2}, {33.33, 66.67}, {33, 66}}, Case{0, {0, 7}, {0, 0}, {0, 0}},
          Case{800, {1, 3, 796}, {0.12, 0.38, 99.5}, {0, 0, 99}},
          Case{1e5, {0, 99'990, 99'999, 1e5}, {0, 99.99, 100, 100}, {0, 99, 100, 100}}}) {
        for (const Flag bars : {Flag{0}, Flag{1}}) {
            options.FolderShowPercentBar = bars;
            const Row parent = add(kNoRow, "p", whole);
            for (const double part : parts) add(add(parent, "c", part), "grandchild", part);
            Report_ChangePercentValue(scan, parent);
            Numbers percents, pictures;
            for (Row row = report.firstChild(parent); row != kNoRow; row = report.nextSibling(row)) {
                percents.push_back(report.number(row, kPercent));
                pictures.push_back(report.barPicture(row));
                EXPECT_EQ(report.number(report.firstChild(row), kPercent), 0) << "only direct children";
            }
            EXPECT_EQ(percents, shares);
            EXPECT_EQ(pictures, bars == 1 ? filled : Numbers(filled.size(), -1));
        }
    }
}

TEST_F(Rollup, SortsAllLevelsAndLetsWaitingInputIn) {
    add(add(kNoRow, "a", 1), "deep"), add(kNoRow, "b", 2);
    state.DeepestLevel = 1;
    pump.input = true;
    Report_Sort(scan);
    EXPECT_EQ(textsOf(report), (Lines{"b", "a", "deep"}));
    EXPECT_GE(pump.pumps, 2);
}

TEST_F(Rollup, RemovesTheWholeSourceOfTheCurrentRow) {
    options.CreateListTOP = 1;
    disk.sources = {folder("/s", {folder("b", {folder("c")}), file("f", 5)}),
                    folder("/t", {folder("d"), file("g", 6)})};
    readSources({"/s/", "/t/"});
    host.calls.clear();
    report.setCurrentRow(rowOf("c"));
    state.currentFolder = "/s/b/";
    for (int i = 0; i < 2; ++i) Report_RemoveFolders(scan);  // The second time no row is current.
    EXPECT_EQ(rows(), (Lines{"/t 6 1/1", "  Dateien 6 1/0", "  d 0 0/0"}));
    EXPECT_EQ(host.calls, (Lines{"files of ''", "preview", "clear status"}));
    EXPECT_EQ(state.currentFolder, "/s/b/") << "another folder than the source itself";
    EXPECT_EQ(textsOf(top), Lines{"g"}) << "the lists keep what they hold";
    report.setCurrentRow(rowOf("/t"));
    state.currentFolder = "/t/";
    Report_RemoveFolders(scan);
    EXPECT_EQ(report.rowCount() + state.DeepestLevel + errors.log.size(), 0U);
    EXPECT_TRUE(state.currentFolder.empty() && report.enabled());
}

}  // namespace
}  // namespace hl
