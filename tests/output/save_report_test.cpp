#include "output/save_report.h"

#include <gtest/gtest.h>
#include <pthread.h>

#include <random>

#include "base/size_text.h"
#include "output/report_lines.h"
#include "output/report_number.h"
#include "output/save_bench.h"
#include "support/scripted_pump.h"

namespace hl {
namespace {

namespace fs = std::filesystem;

std::size_t linesIn(const std::string& text) {
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

/// Answers with a path and records what it was asked.
struct FakeDialog : SaveDialog {
    std::string answer;
    std::vector<SaveQuestion> asked;
    std::string askSavePath(const SaveQuestion& question) override {
        asked.push_back(question);
        return answer;
    }
};

class SaveReport : public testing::Test, public test::SaveBench {};

TEST_F(SaveReport, LevelsTakeDigitsAndBackspaceOnly) {
    std::u32string passed;
    for (char32_t key = 1; key < 0x3000; ++key)
        if (const char32_t kept = SaveForm::txtLevels_KeyPress(key); kept != 0) passed += kept;
    EXPECT_EQ(passed, U"\b0123456789");
}

TEST_F(SaveReport, OkSavesWhereTheDialogSaysOrNothingIfItIsCancelled) {
    grid.setExpanded(sampleTree("/srv/data"), true);  // The unfolded row lies within a folded one.
    FakeDialog answers;
    dialog = &answers;
    const std::string filters[] = {"TXT (*.txt)|*.txt", "CSV (*.csv)|*.csv"};
    for (const int format : {kFormatTxt, kFormatCsv}) {
        SaveForm frmSave(services());
        frmSave.cboFormat.index = format;
        frmSave.OKButton_Click();
        EXPECT_EQ(answers.asked.back().filter, filters[format]);
        EXPECT_EQ(answers.asked.back().defaultExtension, format == kFormatTxt ? "txt" : "csv");
        EXPECT_FALSE(frmSave.loaded || frmSave.hourglass);
        EXPECT_TRUE(frmSave.OKButton.enabled && texts->sink.shown.empty());
        answers.answer = pathOf("chosen.csv");
    }
    EXPECT_EQ(linesIn(test::contentOf(answers.answer)), 2U) << "the view is folded: header and source";
}

TEST_F(SaveReport, TheNameDecidesTheFormatAndTheListTheDelimiter) {
    sampleTree("/srv/data");
    for (const char* name : {"a.txt", "A.TXT"}) EXPECT_TRUE(saved(name).starts_with("Größe")) << name;
    for (const char* name : {"a.csv", "a", "a.txt.bak", "txt"})
        EXPECT_TRUE(saved(name, 0, 4).starts_with("\"Pfad\"\t")) << name << ", no delimiter has number 4";
    SaveForm frmSave(services());
    frmSave.cboFormat.index = kFormatCsv;
    frmSave.cboFormat_Click();
    EXPECT_TRUE(savedBy(frmSave, "r.txt").starts_with("Größe (MB);Dateien;Ordner;Pfad\r\n"));
}

TEST_F(SaveReport, LevelsComeFromTheOrderOrTheControls) {
    sampleTree("/srv/data");
    const std::tuple<std::int32_t, FolderLevels, std::string, std::size_t> cases[] = {
        {0, kUnfoldedLevels, "", 8},  // In a silent run 0 means everything.
        {2, kUnfoldedLevels, "", 6},     {1, kAllFolderLevels, "", 4},  {-7, kUnfoldedLevels, "", 1},
        {-1, kAllFolderLevels, "", 8},   {-1, kUnfoldedLevels, "3", 1}, {-1, kSomeFolderLevels, "1", 4},
        {-1, kSomeFolderLevels, "0", 1},  // 0 means what is unfolded.
        {-1, kSomeFolderLevels, "77", 8}};
    for (const auto& [levels, option, typed, rows] : cases) {
        SaveForm frmSave(services());
        selectOption(frmSave.optLevels, static_cast<std::size_t>(option));
        frmSave.txtLevels.text = typed;
        EXPECT_EQ(linesIn(savedBy(frmSave, "r.csv", levels)), 1 + rows)
            << levels << " " << option << " '" << typed << "'";
    }
    for (const char* typed : {"", "1x", "2147483648"}) {
        SaveForm frmSave(services());
        selectOption(frmSave.optLevels, kSomeFolderLevels);
        frmSave.txtLevels.text = typed;
        EXPECT_EQ(savedBy(frmSave, "r.csv"), test::kNotWritten) << typed;
    }
    EXPECT_EQ(texts->reports("Type mismatch") + texts->reports("Overflow"), 3U);
}

TEST_F(SaveReport, AllLevelsEndAtLevel999AndMessagesRunMeanwhile) {
    chain(1200);
    test::ScriptedPump counting;
    counting.input = true;
    pump = &counting;
    EXPECT_EQ(linesIn(saved("r.csv")), 1U + 1000U);
    EXPECT_GE(counting.pumps, 10);
}

TEST_F(SaveReport, AnErrorThatCostsRowsLeavesTheOlderFile) {
    chain(1200);
    test::writeFile(pathOf("r.csv"), "older");
    test::ScriptedPump failing;
    failing.input = true;
    failing.onPump = [] { throw std::bad_alloc(); };
    pump = &failing;
    FakeDialog window;
    for (const bool inWindow : {false, true}) {
        dialog = inWindow ? &window : nullptr;
        EXPECT_EQ(saved("r.csv"), test::kNotWritten);
        EXPECT_EQ(test::contentOf(pathOf("r.csv")), "older");
    }
    EXPECT_EQ(texts->reports("r.csv was not written"), 1U) << "in the window";
}

// The whole chain is saved on a stack with room for only a few levels of a recursive function.
TEST_F(SaveReport, DepthTakesNoStack) {
    chain(3000);
    const auto save = [](void* bench) -> void* {
        SaveForm frmSave(static_cast<SaveBench*>(bench)->services());
        std::string path = static_cast<SaveBench*>(bench)->pathOf("deep.csv");
        frmSave.SPEICHERN(path, 20000, -1);
        return nullptr;
    };
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, 256 << 10), 0);
    pthread_t thread{};
    ASSERT_EQ(pthread_create(&thread, &attributes, save, static_cast<SaveBench*>(this)), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
    EXPECT_EQ(linesIn(test::contentOf(pathOf("deep.csv"))), 1U + 3000U);
}

TEST_F(SaveReport, AnUnfinishedFileThatCannotBeRemovedIsNamed) {
    struct Stuck : ReplacingFile {
        int write(std::string_view) override { return 0; }
        int commit() override { return EPERM; }
        std::string leftBehind() const override { return "/far/rest\n"; }
    } stuck;
    FakeDialog window;
    sampleTree("/srv/data");
    target = &stuck;
    dialog = &window;
    EXPECT_EQ(saved("r.csv"), test::kNotWritten);
    EXPECT_EQ(texts->reports("not permitted Die unfertige Datei /far/rest\u240A ließ sich nicht löschen."),
              1U);
}

TEST_F(SaveReport, AFailureIsReportedWithItsCauseOrTheNameOfTheFile) {
    FakeDialog window;
    dialog = &window;
    EXPECT_EQ(saved("r.csv"), test::kNotWritten);
    EXPECT_FALSE(fs::exists(pathOf("r.csv")));
    EXPECT_EQ(texts->reports("Nothing was read"), 1U);
    sampleTree("/srv/data");
    std::string path = "/dev/full";
    SaveForm frmSave(services());
    EXPECT_FALSE(frmSave.SPEICHERN(path, 0, 0));
    EXPECT_EQ(texts->reports("/dev/full: No space left on device"), 1U);
    EXPECT_EQ(texts->reports("FileSizeFormat=2"), 1U) << "the local values";
    EXPECT_FALSE(frmSave.OKButton.enabled) << "the form serves once";
    EXPECT_EQ(saved("no/such/folder/r.csv"), test::kNotWritten);
    EXPECT_EQ(texts->reports("folder/r.csv: No such file or directory"), 1U);
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
        const std::int64_t unit = divisorOf(mode);
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
                const int places = decimals == 1 && mode != 0 ? 2 : 0;
                expectSame(ReportNumber(divisorOf(mode), {.grouped = true, .decimals = places}, format, 12),
                           [&](SizeValue size) {
                               return xFormatFileSizeWithSpacer(mode, size, 12, false, decimals, format);
                           });
                if (divisorOf(mode) == 0) continue;
                // CSV has the quotients without separators of thousands.
                expectSame(savedSize(mode, decimals, format), [&](SizeValue size) {
                    return formatQuotient(size, divisorOf(mode), {.grouped = false, .decimals = places},
                                          format);
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
}  // namespace hl
