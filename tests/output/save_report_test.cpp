#include "output/save_report.h"

#include <pthread.h>

#include "base/size_text.h"
#include "output/csv_writer.h"
#include "output/report_number.h"
#include "output/save_bench.h"
#include "platform/linux/process/system_error.h"

namespace hl::test {
namespace {

std::size_t linesIn(const std::string& text) {
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

class SaveReport : public testing::Test, public SaveBench {};

TEST_F(SaveReport, LevelsTakeDigitsAndBackspaceOnly) {
    std::u32string passed;
    for (char32_t key = 1; key < 0x3000; ++key)
        if (const char32_t kept = SaveForm::txtLevels_KeyPress(key); kept != 0) passed += kept;
    EXPECT_EQ(passed, U"\b0123456789");
}

TEST_F(SaveReport, OkSavesWhereTheDialogSaysOrNothingIfItIsCancelled) {
    report.setExpanded(sampleTree("/srv/data"), true);  // The unfolded row lies within a folded one.
    const std::string filters[] = {"TXT (*.txt)|*.txt", "CSV (*.csv)|*.csv"};
    for (const int format : {kFormatTxt, kFormatCsv}) {
        SaveForm frmSave(scan, *this);
        frmSave.cboFormat.index = format;
        frmSave.OKButton_Click();
        EXPECT_EQ(asked.back().filter, filters[format]);
        EXPECT_EQ(asked.back().defaultExtension, format == kFormatTxt ? "txt" : "csv");
        EXPECT_FALSE(frmSave.loaded || frmSave.hourglass);
        EXPECT_TRUE(frmSave.OKButton.enabled && sink.shown.empty());
        answer = pathOf("chosen.csv");
    }
    EXPECT_EQ(linesIn(contentOf(answer)), 2U) << "the view is folded: header and source";
}

TEST_F(SaveReport, TheNameDecidesTheFormatAndTheListTheDelimiter) {
    sampleTree("/srv/data");
    for (const char* name : {"a.txt", "A.TXT"}) EXPECT_TRUE(saved(name).starts_with("Größe")) << name;
    for (const char* name : {"a.csv", "a", "a.txt.bak", "txt"})
        EXPECT_TRUE(saved(name, 0, 4).starts_with("\"Pfad\"\t")) << name << ", no delimiter has number 4";
    SaveForm frmSave(scan, *this);
    frmSave.cboFormat.index = kFormatCsv;
    frmSave.cboFormat_Click();
    EXPECT_TRUE(savedBy(frmSave, "r.txt").starts_with("Größe (MB);Dateien;Ordner;Pfad\r\n"));
}

TEST_F(SaveReport, LevelsComeFromTheOrderOrTheControls) {
    sampleTree("/srv/data");
    const std::pair<std::int32_t, std::size_t> orders[] = {{0, 8}, {2, 6}, {1, 4}, {-7, 1}};
    for (const auto& [levels, rows] : orders)
        EXPECT_EQ(linesIn(saved("r.csv", levels)), 1 + rows) << levels << ", 0 means everything";
    const std::tuple<FolderLevels, std::string, std::size_t> cases[] = {
        {kAllFolderLevels, "", 8},
        {kUnfoldedLevels, "3", 1},
        {kSomeFolderLevels, "1", 4},
        {kSomeFolderLevels, "0", 1},  // 0 means what is unfolded.
        {kSomeFolderLevels, "77", 8}};
    for (const auto& [option, typed, rows] : cases) {
        SaveForm frmSave(scan, *this);
        selectOption(frmSave.optLevels, static_cast<std::size_t>(option));
        frmSave.txtLevels.text = typed;
        EXPECT_EQ(linesIn(savedBy(frmSave, "r.csv")), 1 + rows) << option << " '" << typed << "'";
    }
    for (const char* typed : {"", "1x", "2147483648"}) {
        SaveForm frmSave(scan, *this);
        selectOption(frmSave.optLevels, kSomeFolderLevels);
        frmSave.txtLevels.text = typed;
        EXPECT_EQ(savedBy(frmSave, "r.csv"), kNotWritten) << typed;
    }
    EXPECT_EQ(reports("Type mismatch") + reports("Overflow"), 3U);
}

TEST_F(SaveReport, AllLevelsEndAtLevel999AndMessagesRunMeanwhile) {
    chain(1200);
    pump.input = true;
    EXPECT_EQ(linesIn(saved("r.csv")), 1U + 1000U);
    EXPECT_GE(pump.pumps, 10);
}

TEST_F(SaveReport, AnErrorThatCostsRowsLeavesTheOlderFile) {
    chain(1200);
    writeFile(pathOf("r.csv"), "older");
    pump.input = true;
    pump.onPump = [] { throw std::bad_alloc(); };
    SaveForm frmSave(scan, *this);
    selectOption(frmSave.optLevels, kAllFolderLevels);
    for (const std::string& result : {saved("r.csv"), savedBy(frmSave, "r.csv")}) {
        EXPECT_EQ(result, kNotWritten);
        EXPECT_EQ(contentOf(pathOf("r.csv")), "older");
    }
    EXPECT_EQ(reports("r.csv was not written"), 1U) << "in the window";
}

// The whole chain is saved on a stack with room for only a few levels of a recursive function.
TEST_F(SaveReport, DepthTakesNoStack) {
    chain(3000);
    const auto save = [](void* bench) -> void* {
        static_cast<SaveBench*>(bench)->saved("deep.csv", 20000);
        return nullptr;
    };
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, 256 << 10), 0);
    pthread_t thread{};
    ASSERT_EQ(pthread_create(&thread, &attributes, save, static_cast<SaveBench*>(this)), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
    EXPECT_EQ(linesIn(contentOf(pathOf("deep.csv"))), 1U + 3000U);
}

TEST_F(SaveReport, AnUnfinishedFileThatCannotBeRemovedIsNamed) {
    struct Stuck : ReplacingFile {
        Result<> write(std::string_view) override { return {}; }
        Result<> commit() override { return systemError(EPERM); }
        std::string leftBehind() const override { return "/far/rest\n"; }
    };
    struct StuckFiles : LinuxFiles {
        Result<std::unique_ptr<ReplacingFile>> replace(const std::string&) override {
            return std::make_unique<Stuck>();
        }
    } stuck;
    sampleTree("/srv/data");
    const Services other{store, texts, log, stuck, disk, pump, console, diagnostics, paths, numbers};
    ScanContext full{other, state, options, combo, report, top, hardlinks, junctions, host, host};
    SaveForm frmSave(full, *this);
    EXPECT_EQ(savedBy(frmSave, "r.csv"), kNotWritten);
    EXPECT_EQ(reports("not permitted Die unfertige Datei /far/rest\u240A ließ sich nicht löschen."), 1U);
}

TEST_F(SaveReport, AFailureIsReportedWithItsCauseOrTheNameOfTheFile) {
    const auto fails = [&](const std::string& path, const std::string& cause) {
        SaveForm frmSave(scan, *this);
        answer = path;
        EXPECT_FALSE(frmSave.SPEICHERN());
        EXPECT_EQ(reports(cause), 1U) << cause;
        return frmSave.OKButton.enabled;
    };
    fails(pathOf("r.csv"), "Nothing was read");
    EXPECT_EQ(saved("r.csv"), kNotWritten);
    EXPECT_FALSE(fs::exists(pathOf("r.csv")));
    sampleTree("/srv/data");
    EXPECT_FALSE(fails("/dev/full", "/dev/full: No space left on device")) << "the form serves once";
    EXPECT_EQ(reports("FileSizeFormat=2"), 1U) << "the local values";
    fails(pathOf("no/such/folder/r.csv"), "folder/r.csv: No such file or directory");
}

std::string appended(const ReportNumber& number, std::int64_t value) {
    std::string out = "before";
    number.append(out, value);
    return out.substr(6);
}

/// Compares with the slow routine at the values where a text changes, and at values of every size.
void expectSame(const ReportNumber& number, const std::function<std::string(SizeValue)>& slow) {
    std::vector<std::int64_t> values = {0, 9, 10, 999, 1000, SizeValue::kMaxBytes};
    for (const int mode : {1, 2, 3}) {
        const std::int64_t unit = sizeUnit(mode).divisor;
        for (const std::int64_t base : {unit / 200, unit / 2, unit * 999, unit * 1000 - unit / 200})
            for (const std::int64_t around : {-1, 0, 1}) values.push_back(base + around);
    }
    std::mt19937_64 random(7);  // The number of bits is chosen first, then the number.
    for (int i = 0; i < 2000; ++i)
        values.push_back(static_cast<std::int64_t>(random() >> (15 + random() % 49)));
    std::erase_if(values, [](std::int64_t value) { return value > SizeValue::kMaxBytes; });
    for (const std::int64_t value : values)
        ASSERT_EQ(appended(number, value), slow(SizeValue::fromBytes(static_cast<std::uint64_t>(value))));
}

TEST(ReportNumber, AreTheTextsOfTheSlowRoutinesForEveryModeAndLocale) {
    for (const char* locale : {"de_DE", "en_US", "ru_RU", "de_CH"}) {
        const NumberFormat format = numberFormatOf(locale);
        for (int mode = 0; mode <= 6; ++mode) {
            for (const int decimals : {0, 1}) {
                SCOPED_TRACE(locale + std::to_string(mode) + std::to_string(decimals));
                const int places = decimals == 1 && sizeUnit(mode).decimals ? 2 : 0;
                expectSame(
                    ReportNumber(sizeUnit(mode).divisor, {.grouped = true, .decimals = places}, format, 12),
                    [&](SizeValue size) {
                        return xFormatFileSizeWithSpacer(mode, size, 12, false, decimals, format);
                    });
                if (sizeUnit(mode).divisor == 0) continue;
                // CSV has the quotients without separators of thousands.
                expectSame(FormatFileSizeSave(mode, decimals, format), [&](SizeValue size) {
                    return formatQuotient(size, sizeUnit(mode).divisor,
                                          {.grouped = false, .decimals = places}, format);
                });
            }
        }
    }
}

TEST(ReportNumber, HasASignBelowZeroUnlessItIsRoundedToZero) {
    const NumberFormat format;
    const ReportNumber number(1024, {.grouped = true, .decimals = 2}, format, 8);
    EXPECT_EQ(appended(number, -1536), "   -1.50");
    EXPECT_EQ(appended(number, -1), "    0.00");
    EXPECT_EQ(appended(number, -1024LL * 1234567), "-1,234,567.00");
}

}  // namespace
}  // namespace hl::test
