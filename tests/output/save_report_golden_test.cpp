// Whole reports, one for each feature of the formats.
#include <gtest/gtest.h>

#include "output/save_bench.h"
#include "support/golden.h"

namespace hl {
namespace {

class SaveReportGolden : public testing::Test, protected test::SaveBench {
  protected:
    void expectGolden(const std::string& name, const std::string& report) {
        ASSERT_NE(report, test::kNotWritten) << name;
        test::expectGolden(name, report);
    }
};

TEST_F(SaveReportGolden, TextTableIsPaddedAndEndsInThePath) {
    paths = kDrivePaths;
    sampleTree("C:\\Data");
    expectGolden("table.txt", saved("r.txt", 0, kDelimiterTab));
}

TEST_F(SaveReportGolden, CsvBeginsWithThePathAndGroupsNoDigits) {
    paths = kDrivePaths;
    sampleTree("C:\\Data");
    expectGolden("values.csv", saved("r.csv", 0, kDelimiterSemicolon));
}

TEST_F(SaveReportGolden, EnglishTextsAndSeparators) {
    english();
    sampleTree("/srv/data", "Files");
    expectGolden("english.txt", saved("r.txt"));
    expectGolden("english.csv", saved("r.csv"));
}

TEST_F(SaveReportGolden, SeparatorsOfSeveralBytesKeepTheColumns) {
    numbers = numberFormatOf("ru_RU.UTF-8");
    options.FileSizeFormat = 0;
    sampleTree("/srv/data");
    expectGolden("wide_separators.txt", saved("r.txt", 0, kDelimiterTab));
}

TEST_F(SaveReportGolden, OneLevelIsTheSourceAndWhatIsDirectlyInIt) {
    sampleTree("/srv/data");
    expectGolden("levels_1.csv", saved("r.csv", 1));
}

TEST_F(SaveReportGolden, TwoLevels) {
    sampleTree("/srv/data");
    expectGolden("levels_2.csv", saved("r.csv", 2));
}

TEST_F(SaveReportGolden, UnfoldedViewShowsWhatIsUnfoldedWithItsFilesRows) {
    const Row bilder = sampleTree("/srv/data");
    grid.setExpanded(grid.firstRoot(), true);
    grid.setExpanded(bilder, true);
    SaveForm frmSave(services());
    expectGolden("unfolded.csv", savedBy(frmSave, "r.csv"));
}

TEST_F(SaveReportGolden, EverySizeModeWithAndWithoutDecimals) {
    sampleTree("/srv/data");
    for (std::uint8_t mode = 0; mode <= 5; ++mode) {
        for (const Flag decimals : {Flag{0}, Flag{1}}) {
            options.FileSizeFormat = mode;
            options.SizeFormatNachkommastellenFolders = decimals;
            const std::string name = "mode" + std::to_string(mode) + (decimals == 1 ? "_decimals" : "");
            expectGolden(name + ".txt", saved("r.txt", 1));
            expectGolden(name + ".csv", saved("r.csv", 1));
        }
    }
}

TEST_F(SaveReportGolden, OddNames) {
    const Row root = folder(kNoRow, "/srv/\xFC\xE4", 4096, 9, 8);
    for (const char* name : {"say \"hi\"", "line\nbreak", "carriage\r\nreturn", "bad \xFF\xFE bytes",
                             "tab\there", "Überraschung", "\xF0\x9F\x98\x80", "semi;colon"})
        folder(root, name, 512, 1, 0);
    expectGolden("odd_names.txt", saved("r.txt"));
    expectGolden("odd_names.csv", saved("r.csv"));
}

TEST_F(SaveReportGolden, TheRootOfTheFileSystemDoublesNoSeparator) {
    const Row root = folder(kNoRow, "/", 2097152, 3, 1);
    folder(root, "usr", 1048576, 2, 0);
    filesRow(root, "Dateien", 1048576, 1);
    expectGolden("root.txt", saved("r.txt"));
    expectGolden("root.csv", saved("r.csv"));
}

TEST_F(SaveReportGolden, CountsWidenTheirColumnsByTheirTextInTheSizeMode) {
    const Row root = folder(kNoRow, "/srv", 1099511627776, 12345678, 1234567);
    folder(root, "one", 1, 1, 0);
    for (const std::uint8_t mode : {std::uint8_t{0}, std::uint8_t{1}}) {
        options.FileSizeFormat = mode;
        expectGolden("large_counts_mode" + std::to_string(mode) + ".txt", saved("r.txt"));
    }
}

TEST_F(SaveReportGolden, TwoSourcesInOneReportAndNothingIsCut) {
    folder(kNoRow, "/small", 1024, 1, 0);
    const Row large = folder(kNoRow, "/large", 549755813888000, 123456789, 98765432);
    filesRow(large, "Dateien", 549755813887999, 123456788);
    expectGolden("two_sources.txt", saved("r.txt"));
}

TEST_F(SaveReportGolden, ASelectedFolderIsReportedAloneAndUnderItsOwnName) {
    const Row bilder = sampleTree("/srv/data");
    folder(kNoRow, "/other", 1, 1, 0);
    grid.setSelected(bilder, true);
    grid.setExpanded(bilder, true);
    SaveForm frmSave(services());
    selectOption(frmSave.optWasSpeichern, kSaveSelected);
    expectGolden("selected.txt", savedBy(frmSave, "r.txt"));
}

TEST_F(SaveReportGolden, EveryDelimiter) {
    sampleTree("/srv/data");
    for (std::int32_t delimiter = 0; delimiter < 4; ++delimiter) {
        const std::string name = "delimiter" + std::to_string(delimiter);
        expectGolden(name + ".txt", saved("r.txt", 1, delimiter));
        expectGolden(name + ".csv", saved("r.csv", 1, delimiter));
    }
}

}  // namespace
}  // namespace hl
