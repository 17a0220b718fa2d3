#include "robustness/trap.h"

#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <stdexcept>
#include <system_error>

#include "robustness/fakes.h"

namespace hl {
namespace {

class Trap : public testing::Test {
  protected:
    bool shows(const std::string& text) const {
        return !sink.shown.empty() && sink.shown.back().find(text) != std::string::npos;
    }
    /// Runs `body` in a trap.
    template <class Body>
    auto run(Body body) {
        return guarded(diagnostics, "SomeRoutine", "SomeModule", body);
    }

    AppFacts app;
    test::FakeSystemFacts system;
    test::FakeErrorSink sink;
    Diagnostics diagnostics{app, system, sink};
};

TEST_F(Trap, LeavesTheResultOfARoutineThatSucceedsAlone) {
    EXPECT_EQ(run([] { return std::string("done"); }), "done");
    EXPECT_EQ(*run([] { return std::make_unique<int>(7); }), 7);
    EXPECT_EQ(diagnostics.errcount(), 0U);
    EXPECT_TRUE(sink.log.empty());
    EXPECT_TRUE(sink.shown.empty());
}

TEST_F(Trap, ReturnsAnEmptyResultAfterAnErrorAndKeepsWhatWasDone) {
    int done = 0;
    const std::string text = run([&]() -> std::string {
        done = 1;
        throw Fault(13, "", "Type mismatch");
    });
    EXPECT_EQ(text, "");
    EXPECT_EQ(done, 1);
    EXPECT_EQ(run([]() -> int { throw Fault(13, "", ""); }), 0);
    run([] { throw Fault(13, "", ""); });
    EXPECT_EQ(diagnostics.errcount(), 3U);
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
        {[] { throw 42; }, "Err: 5 - Unknown exception"},
        {[] { raiseOverflow("SizeValue"); }, "Err: 6 - Overflow"},
    };
    for (const auto& [body, text] : cases) {
        run(body);
        EXPECT_TRUE(shows(text)) << sink.shown.back();
    }
}

TEST_F(Trap, HidesAnInnerErrorFromTheRoutineAround) {
    const bool wentOn = run([&] {
        run([] { throw Fault(5, "", ""); });
        return true;
    });
    EXPECT_TRUE(wentOn);
    EXPECT_EQ(diagnostics.errcount(), 1U);
}

TEST_F(Trap, MarksItsRoutineAsGuardedForItsExtentOnly) {
    const int before = GuardedRoutine::depth();
    run([&] {
        EXPECT_EQ(GuardedRoutine::depth(), before + 1);
        throw Fault(5, "", "");
    });
    EXPECT_EQ(GuardedRoutine::depth(), before);
}

TEST_F(Trap, AsksForDebugValuesOnlyAfterAnError) {
    int asked = 0;
    const auto values = [&]() -> DebugValues {
        ++asked;
        return {"/home", "7"};
    };
    guarded(
        diagnostics, "f", "m", [] {}, values);
    EXPECT_EQ(asked, 0);
    guarded(
        diagnostics, "f", "m", [] { throw Fault(5, "", ""); }, values);
    EXPECT_EQ(asked, 1);
    EXPECT_TRUE(shows("\r\nDebug0: /home\r\nDebug1: 7"));
}

TEST_F(Trap, SurvivesDebugValuesThatThrow) {
    guarded(
        diagnostics, "f", "m", [] { throw Fault(5, "", "first"); },
        []() -> DebugValues { throw Fault(6, "", "second"); });
    EXPECT_TRUE(shows("Err: 5 - first"));
    EXPECT_EQ(diagnostics.errcount(), 1U);
}

TEST_F(Trap, ReportsTheStateOfTheProgramBehindTheReport) {
    app.dataFolder = "/opt/data";
    app.languageId = [] { return 9; };
    app.cancelState = [] { return 3; };
    run([] { throw Fault(5, "", ""); });
    run([] { throw Fault(5, "", ""); });
    EXPECT_TRUE(
        shows("\r\nComp: engine\r\nApptitle: Harborlantern\r\nDatapath: /opt/data\r\nAdmin: True"
              "\r\nErrcount: 2\r\nLang: 9\r\nStop:3,0"))
        << sink.shown.back();
    EXPECT_TRUE(sink.shown.back().ends_with("Stop:3,0"));
}

TEST_F(Trap, LogsWithTimeAndBlankLineWhatItShows) {
    run([] { throw Fault(5, "", ""); });
    ASSERT_EQ(sink.log.size(), 1U);
    EXPECT_EQ(sink.log[0].text, sink.shown.at(0));
    EXPECT_TRUE(sink.log[0].blankLine);
    EXPECT_TRUE(sink.log[0].stamp);
}

TEST_F(Trap, ShowsTheReportWhenTheLogCannotBeWritten) {
    sink.broken = true;
    run([] { throw Fault(5, "", "the cause"); });
    EXPECT_TRUE(shows("the cause"));
}

TEST_F(Trap, NamesTheErrorWhenTheReportCannotBeMade) {
    app.languageId = []() -> int { throw std::runtime_error("no language yet"); };
    run([] { throw Fault(5, "", "the cause"); });
    EXPECT_TRUE(shows("SomeModule.SomeRoutine: the cause"));
    EXPECT_EQ(diagnostics.errcount(), 1U);
}

}  // namespace
}  // namespace hl
