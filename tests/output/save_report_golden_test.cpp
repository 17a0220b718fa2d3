// Tests whole reports, one for each feature of the formats, against files in tests/golden/.

#include "output/save_bench.h"

namespace hl::test {
namespace {

/// Compares `actual` with the file, byte by byte. With HARBORLANTERN_RENEW_GOLDEN=1 a file that differs or is
/// missing is written; the test fails even then, so that nobody takes a renewed file for a passed test.
void expectGolden(const std::string& name, const std::string& actual) {
    const std::string path = HARBORLANTERN_SOURCE_DIR "/tests/golden/" + name;
    const std::string expected = contentOf(path);
    EXPECT_NE(expected, "") << name << " is missing";
    EXPECT_EQ(actual, expected) << name;
    const char* renew = getenv("HARBORLANTERN_RENEW_GOLDEN");
    if (actual != expected && renew != nullptr && *renew == '1') writeFile(path, actual);
}

struct SaveReportGolden : testing::Test, SaveBench {
    using SaveBench::SaveBench;
    void expectBoth(const std::string& name) {
        expectGolden(name + ".txt", saved("r.txt"));
        expectGolden(name + ".csv", saved("r.csv"));
    }
};

TEST_F(SaveReportGolden, TextIsATableThatEndsInThePathAndCsvBeginsWithIt) {
    paths = kDrivePaths;
    sampleTree("C:\\Data");
    expectGolden("table.txt", saved("r.txt", 0, kDelimiterTab));
    expectGolden("values.csv", saved("r.csv", 0, kDelimiterSemicolon));
}

struct SaveReportEnglish : SaveReportGolden {
    SaveReportEnglish() : SaveReportGolden("en_US.UTF-8") {}
};

TEST_F(SaveReportEnglish, TextsAndSeparatorsFollowTheLocaleAndKeepTheColumns) {
    sampleTree("/srv/data", "Files");
    expectBoth("english");
    numbers = numberFormatOf("ru_RU.UTF-8");  // Its separators have several bytes.
    options.FileSizeFormat = 0;
    expectGolden("wide_separators.txt", saved("r.txt", 0, kDelimiterTab));
}

TEST_F(SaveReportGolden, EverySizeModeWithAndWithoutDecimals) {
    sampleTree("/srv/data");
    std::string text, csv;
    for (std::uint8_t i = 0; i < 12; ++i) {
        options.FileSizeFormat = i / 2;
        options.SizeFormatNachkommastellenFolders = i % 2;
        text += saved("r.txt", 1);
        csv += saved("r.csv", 1);
    }
    options.FileSizeFormat = 0;
    const std::string bytes = saved("r.txt", 1) + saved("r.csv", 1);
    options.FileSizeFormat = kModeAuto;
    EXPECT_EQ(saved("r.txt", 1) + saved("r.csv", 1), bytes);
    expectGolden("size_modes.txt", text);
    expectGolden("size_modes.csv", csv);
}

TEST_F(SaveReportGolden, OddNames) {
    const Row root = folder(kNoRow, "/srv/\xFC\xE4", 4096, 9, 8);
    for (const char* name : {"say \"hi\"", "line\nbreak", "carriage\r\nreturn", "bad \xFF\xFE bytes",
                             "tab\there", "Überraschung", "\xF0\x9F\x98\x80", "semi;colon"})
        folder(root, name, 512, 1, 0);
    expectBoth("odd_names");
}

TEST_F(SaveReportGolden, NothingOfASecondSourceIsCutAndTheRootDoublesNoSeparator) {
    const Row root = folder(kNoRow, "/", 2097152, 3, 1);
    folder(root, "usr", 1048576, 2, 0);
    filesRow(root, "Dateien", 1048576, 1);
    const Row large = folder(kNoRow, "/large", 549755813888000, 123456789, 98765432);
    filesRow(large, "Dateien", 549755813887999, 123456788);
    expectBoth("sources");
}

TEST_F(SaveReportGolden, CountsWidenTheirColumnsByTheirTextInTheSizeMode) {
    folder(folder(kNoRow, "/srv", 1099511627776, 12345678, 1234567), "one", 1, 1, 0);
    options.FileSizeFormat = 0;
    const std::string bytes = saved("r.txt");
    options.FileSizeFormat = 1;
    expectGolden("large_counts.txt", bytes + saved("r.txt"));
}

TEST_F(SaveReportGolden, ASelectedFolderIsReportedAloneAndUnderItsOwnName) {
    const Row bilder = sampleTree("/srv/data");
    folder(kNoRow, "/other", 1, 1, 0);
    report.setSelected(bilder, true);
    report.setExpanded(bilder, true);
    SaveForm frmSave(scan, *this);
    selectOption(frmSave.optWasSpeichern, kSelectedFolder);
    expectGolden("selected.txt", savedBy(frmSave, "r.txt"));
}

TEST_F(SaveReportGolden, EveryDelimiter) {
    sampleTree("/srv/data");
    std::string all;
    for (std::int32_t delimiter = 0; delimiter < 4; ++delimiter)
        all += saved("r.txt", 1, delimiter) + saved("r.csv", 1, delimiter);
    expectGolden("delimiters.txt", all);
}

}  // namespace
}  // namespace hl::test
