// Tests the report of an error, and the texts that it and its mail consist of.
#include "robustness/error_report.h"

#include "robustness/api_error_text.h"
#include "robustness/error_mail.h"
#include "robustness/fakes.h"
#include "robustness/time_spans.h"
#include "robustness/trap.h"

namespace hl::test {
namespace {

using namespace std::chrono_literals;

struct ErrorReport : testing::Test, protected FakeDiagnostics {
    ErrorReport() {
        app.minor = 4;
        app.revision = 2;
        app.executable = "/opt/bin/harborlantern";
        app.screen = [] { return ScreenFacts{1920, 1080, 32}; };
        app.startTime = now - 3725s;
    }
    std::string build() {
        return BuildErrorReport({"QuelleEinlesen", "frmMain", 42}, Fault(13, "", "Type mismatch"), app,
                                system, now);
    }
    /// Returns the line that begins with `label`, or an empty text.
    std::string line(const std::string& label) {
        const std::string report = "\r\n" + build() + "\r\n";
        const std::size_t at = report.find("\r\n" + label);
        return at == std::string::npos ? "" : report.substr(at + 2, report.find("\r\n", at + 2) - at - 2);
    }

    std::chrono::system_clock::time_point now = std::chrono::system_clock::now();
};

TEST_F(ErrorReport, TellsAllItsLinesInOrderWithNoLineEndBehindTheLast) {
    app.commandLine = "\"/home\" -s";
    EXPECT_EQ(build(),
              "Time: " + formatDate(localTime(now), app.dates.general()) +
                  "\r\nApp: Harborlantern 0.4.2\r\nModul: frmMain\r\nFunc: QuelleEinlesen\r\nLine: 42"
                  "\r\nErr: 13 - Type mismatch\r\nPath: /opt/bin/harborlantern"
                  "\r\nAppUp: 1:02:05\r\nSysUp: 1 day 1:01:01"
                  "\r\nOS: Debian GNU/Linux 12 (bookworm) Version: 6.1 ID: debian 12 B6.1.0-18-amd64"
                  "\r\n64bit: False\r\nIE: 0.0.0\r\nPhysRAM: 1.00 MB Free / 4.00 MB Total"
                  "\r\nMemLoad: 75%\r\nRAM used: 1.50 MB"
                  "\r\nPagefile: 2.00 MB Free / 8.00 MB Total\r\nVirtMem: 3.00 MB Free / 16.00 MB Total"
                  "\r\nCPU: Some CPU\r\nScreen: 1920x1080x4294967296 (32)"
                  "\r\nCommand: \"/home\" -s\r\nPortable: 1\r\nUser: ada\r\nComp: engine");
}

TEST_F(ErrorReport, VariesItsLinesWithWhatItIsTold) {
    app.numbers = {".", ","};
    system.memoryFacts.physicalTotal = std::uint64_t{5} << 40;
    EXPECT_EQ(line("PhysRAM: "), "PhysRAM: 1,00 MB Free / 5.242.880,00 MB Total");
    system.memoryFacts.virtualTotal = UINT64_MAX;
    EXPECT_NE(line("VirtMem: "), "") << "far beyond the largest size";
    EXPECT_EQ(line("Command: "), "") << "there was none";
}

TEST_F(ErrorReport, ComesOutWithAllItsLinesWhenNothingCanBeLearned) {
    system.broken = true;
    const std::string report = build();
    EXPECT_EQ(std::count(report.begin(), report.end(), '\n'), 21);
    EXPECT_EQ(line("SysUp: "), "SysUp: 0:00:00");
}

TEST(ApiErrorText, ReadsAsTheUserSeesIt) {
    const std::tuple<bool, Error, const char*> cases[] = {
        {false, {13, "Permission denied"}, "Permission denied"},
        {true, {13, "Permission denied"}, "#13 - Permission denied"},
        {false, {}, "#0 - No information available"},
        {true, {0, "a tool's own words"}, "a tool's own words"},
        {false, {14, std::string("  Bad\r\n address.\r\n\0", 20)}, "Bad address."},
        {true, {-7}, "#-7 - Formatmessage Error 22 (-7)"}};
    for (const auto& [withNumber, error, text] : cases) EXPECT_EQ(ApiErrorText(withNumber, error), text);
}

TEST(ErrorMail, EscapesByItsTableAndNothingElse) {
    const std::pair<const char*, const char*> cases[] = {
        {"%20", "%25%2520"},       {"a\r\nb\rc\nd", "a%0Ab%0Ac%0Ad"},
        {"\n\r\r\n", "%0A%0A%0A"}, {"a b!#*/?&\"", "a%20b%21%23%2A%2F%3F%26%22"},
        {"é+=:<>'", "é+=:<>'"},    {"ÄÖÜßäöü", "%C4%D6%DC%DF%E4%F6%FC"}};
    for (const auto& [text, escaped] : cases) EXPECT_EQ(escapeMailBody(text), escaped);
}

using std::chrono::seconds;

constexpr std::int64_t kDay = 86400;
constexpr std::chrono::system_clock::time_point kStart(seconds(1'700'000'000));

TEST(TimeSpans, ReadInDaysAndAClock) {
    const std::tuple<std::int64_t, const char*, const char*> cases[] = {
        {kDay - 1, "23:59:59", "23:59:59"},
        {kDay, "1 Tag 0:00:00", "1 day 0:00:00"},
        {365 * kDay - 1, "364 Tage 23:59:59", "364 days 23:59:59"},
        {733 * kDay + 3725, "2 Jahr(e) 3 Tag(e) 1:02:05", "2year(s) 3 day(s) 1:02:05"}};
    for (const auto& [length, german, english] : cases) {
        EXPECT_EQ(GetDateFromDiff(kStart, kStart + seconds(length)), german);
        EXPECT_EQ(GetSystemUpTime(static_cast<std::uint64_t>(length)), english);
    }
    EXPECT_EQ(GetDateFromDiff(kStart, kStart - seconds(5)), "0:00:00") << "the clock was put back";
    const SpanWords dutch{.oneDay = "1 dag", .days = "%1 dagen", .years = "%2 dag(en), %1 jaar"};
    EXPECT_EQ(GetDateFromDiff(kStart, kStart + seconds(365 * kDay), dutch), "0 dag(en), 1 jaar 0:00:00");
}

void fail() {
    throw Fault(5, "", "the cause");
}

constexpr int kTrapLine = __LINE__ + 2;
void QuelleEinlesen(Diagnostics& diagnostics) {
    guarded(diagnostics, [] { throw Fault(9, "", "Subscript out of range"); });
}

struct Trap : testing::Test, protected FakeDiagnostics {
    bool shows(const std::string& text) const {
        return !sink.shown.empty() && sink.shown.back().find(text) != std::string::npos;
    }
    /// Runs `body` in a trap.
    template <class Body>
    auto run(Body body) {
        return guarded(diagnostics, {.routine = "SomeRoutine", .module = "SomeModule"}, body);
    }
};

TEST_F(Trap, ReturnsTheResultOrAfterAnErrorAnEmptyOneAndHidesItFromTheRoutineAround) {
    const int before = GuardedRoutine::depth();
    const auto result = run([&] {
        EXPECT_EQ(run([]() -> std::string { throw Fault(13, "", "Type mismatch"); }), "");
        EXPECT_EQ(run([]() -> int { throw Fault(13, "", ""); }), 0);
        EXPECT_EQ(GuardedRoutine::depth(), before + 1);
        return std::make_unique<int>(7);
    });
    EXPECT_EQ(*result, 7);
    EXPECT_EQ(GuardedRoutine::depth(), before);
    EXPECT_EQ(sink.shown.size(), 2U);
}

TEST_F(Trap, ReportsRoutineModuleAndTheLineOfTheTrap) {
    QuelleEinlesen(diagnostics);
    EXPECT_TRUE(shows("\r\nModul: frmMain\r\nFunc: QuelleEinlesen\r\nLine: " + std::to_string(kTrapLine) +
                      "\r\nErr: 9 - Subscript out of range\r\n"))
        << sink.shown.back();
}

TEST_F(Trap, CatchesWhateverEscapes) {
    const std::pair<void (*)(), const char*> cases[] = {
        {[] { throw std::bad_alloc(); }, "Err: 12 - Out of memory"},
        {[] { throw std::system_error(13, std::generic_category(), "opening"); }, "Err: 13 - opening"},
        {[] { throw std::out_of_range("vector::at"); }, "Err: 5 - vector::at"},
        {[] { throw 42; }, "Err: 5 - Unknown exception"}};
    for (const auto& [body, text] : cases) {
        run(body);
        EXPECT_TRUE(shows(text)) << sink.shown.back();
    }
}

TEST_F(Trap, LogsWhatItShowsWithTheStateOfTheProgramAndWithValuesAskedForOnlyAfterAnError) {
    app.dataFolder = "/opt/data";
    app.languageId = [] { return 9; };
    app.cancelState = [] { return 3; };
    int asked = 0;
    const auto values = [&] { return DebugValues{"/home", std::to_string(++asked)}; };
    guarded(
        diagnostics, {}, [] {}, values);
    guarded(diagnostics, {}, fail, values);
    EXPECT_TRUE(sink.shown.back().ends_with(
        "\r\nComp: engine\r\nApptitle: Harborlantern\r\nDatapath: /opt/data\r\nAdmin: True"
        "\r\nErrcount: 1\r\nLang: 9\r\nStop:3,0\r\nDebug0: /home\r\nDebug1: 1"))
        << sink.shown.back();
    EXPECT_EQ(sink.log.at(0).text, sink.shown.at(0));
    EXPECT_TRUE(sink.log[0].blankLine && sink.log[0].stamp);
}

TEST_F(Trap, ShowsTheErrorWhateverElseFails) {
    const auto noValues = []() -> DebugValues { throw Fault(6, "", "second"); };
    guarded(diagnostics, {}, fail, noValues);
    EXPECT_TRUE(shows("Err: 5 - the cause"));
    sink.broken = true;
    run(fail);
    EXPECT_TRUE(shows("Err: 5 - the cause"));
    app.languageId = []() -> int { throw std::runtime_error("no language yet"); };
    run(fail);
    EXPECT_TRUE(shows("SomeModule.SomeRoutine: the cause"));
    EXPECT_EQ(diagnostics.errcount(), 3U);
    EXPECT_EQ(sink.shown.size(), 3U);
}

}  // namespace
}  // namespace hl::test
