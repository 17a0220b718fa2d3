#include "robustness/trap.h"

#include <gtest/gtest.h>

#include <new>
#include <system_error>

#include "robustness/fakes.h"

namespace hl {
namespace {

void fail() {
    throw Fault(5, "", "the cause");
}

class Trap : public testing::Test, protected test::FakeDiagnostics {
  protected:
    bool shows(const std::string& text) const {
        return !sink.shown.empty() && sink.shown.back().find(text) != std::string::npos;
    }
    /// Runs `body` in a trap.
    template <class Body>
    auto run(Body body) {
        return guarded(diagnostics, "SomeRoutine", "SomeModule", body);
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
    guarded(diagnostics, "QuelleEinlesen", "frmMain", [] { throw Fault(9, "", "Subscript out of range"); });
    EXPECT_TRUE(shows("\r\nModul: frmMain\r\nFunc: QuelleEinlesen\r\nLine: " + std::to_string(__LINE__ - 1) +
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
        diagnostics, "f", "m", [] {}, values);
    guarded(diagnostics, "f", "m", fail, values);
    EXPECT_TRUE(sink.shown.back().ends_with(
        "\r\nComp: engine\r\nApptitle: Harborlantern\r\nDatapath: /opt/data\r\nAdmin: True"
        "\r\nErrcount: 1\r\nLang: 9\r\nStop:3,0\r\nDebug0: /home\r\nDebug1: 1"))
        << sink.shown.back();
    EXPECT_EQ(sink.log.at(0).text, sink.shown.at(0));
    EXPECT_TRUE(sink.log[0].blankLine && sink.log[0].stamp);
}

TEST_F(Trap, ShowsTheErrorWhateverElseFails) {
    const auto noValues = []() -> DebugValues { throw Fault(6, "", "second"); };
    guarded(diagnostics, "f", "m", fail, noValues);
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
}  // namespace hl
