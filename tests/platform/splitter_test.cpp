#include "platform/splitter.h"

namespace hl {
namespace {

constexpr int kHuge = std::numeric_limits<int>::max();

// Two grids, a bar of 4, no limits, and a record of what the window ("c") and the form ("r") are told.
struct Splitter : testing::Test {
    Splitter() {
        for (const int index : {1, 2}) splitter.setMinimumSize(index, 0);
        splitter.Bind({PaneRef::Kind::kGrid, 0}, {PaneRef::Kind::kGrid, 1});
        splitter.changed = [this] { told += 'c'; };
        splitter.AfterResize = [this] { told += 'r'; };
    }
    void start(int total, int position) {
        splitter.setTotal(total);
        splitter.setPosition(position);
        told.clear();
    }
    /// Returns the start and size of what is visible: "0+100 |100+4 104+96".
    std::string panes() const {
        const auto part = [](const cSplitter::Span& span) {
            return span.visible ? std::to_string(span.start) + "+" + std::to_string(span.size) : "-";
        };
        const cSplitter::Layout layout = splitter.layout();
        return part(layout.first) + " |" + part(layout.bar) + " " + part(layout.second);
    }
    cSplitter splitter;
    std::string told;
};

TEST_F(Splitter, KeepsThePositionWithinItsLimitsAndTheFirstMinimumAboveAll) {
    struct Case {
        const char* what;
        int minimum1, maximum1, minimum2, maximum2, position, expected;
    };
    // The total is 200 and the bar 4, so the panes share 196.
    const Case cases[] = {{"no limits", 0, -1, 0, 0, 120, 120},
                          {"second too large", 0, -1, 0, 50, 100, 146},
                          {"first too large", 0, 60, 0, -1, 100, 60},
                          {"second too small", 0, -1, 50, -1, 170, 146},
                          {"maximum of the first beats that of the second", 0, 60, 0, 50, 100, 60},
                          {"minimum of the second beats the maximum of the first", 0, 160, 50, -1, 190, 146},
                          {"minimum of the first beats that of the second", 160, -1, 50, -1, 100, 160},
                          {"minimum of the first beats its maximum", 90, 60, 0, -1, 10, 90},
                          {"exactly at the limits", 30, 146, 50, 166, 146, 146},
                          {"limits larger than any window", 0, -1, kHuge, kHuge, -kHuge, 196 - kHuge}};
    for (const Case& c : cases) {
        cSplitter one;
        one.setTotal(200);
        one.setMinimumSize(1, c.minimum1);
        one.setMaximumSize(1, c.maximum1);
        one.setMinimumSize(2, c.minimum2);
        one.setMaximumSize(2, c.maximum2);
        one.setPosition(c.position);
        EXPECT_EQ(one.Position(), c.expected) << c.what;
    }
}

TEST_F(Splitter, RemembersThePositionWhileTheContainerIsTooSmallForIt) {
    splitter.setMinimumSize(2, 50);
    splitter.setPosition(120);
    EXPECT_EQ(panes() + told, "- |- -") << "the total is not known yet";
    splitter.setTotal(200);
    splitter.setTotal(121);
    EXPECT_EQ(panes(), "0+120 |120+1 121+0");
    splitter.setTotal(0);
    splitter.setTotal(100);
    EXPECT_EQ(panes(), "0+100 |- 100+0");
    splitter.setTotal(200);
    EXPECT_EQ(panes(), "0+120 |120+4 124+76");
    splitter.setOrientation(Orientation::kSideBySide);
    splitter.setTotal(150);
    EXPECT_EQ(panes(), "0+96 |96+4 100+50") << "the new axis is another container";
}

TEST_F(Splitter, ShowsOnePaneAlways) {
    start(200, 100);
    splitter.setControl1Visible(false);
    EXPECT_EQ(panes(), "- |- 0+200");
    splitter.setControl2Visible(false);
    EXPECT_EQ(panes(), "0+200 |- -");
    splitter.MouseDown(100);
    EXPECT_FALSE(splitter.dragging()) << "there is no bar to drag";
    splitter.setControl2Visible(true);
    EXPECT_EQ(panes(), "0+100 |100+4 104+96");
    EXPECT_EQ(told, "crcrcr");
}

TEST_F(Splitter, FollowsThePointerWithinContainerAndLimits) {
    splitter.setMinimumSize(2, 50);
    start(200, 100);
    splitter.MouseMove(150);
    splitter.MouseUp(150);
    EXPECT_EQ(splitter.Position(), 100) << "not without a button down";
    splitter.MouseDown(102);
    splitter.MouseMove(112);
    EXPECT_EQ(panes(), "0+110 |110+4 114+86");
    splitter.MouseMove(-5000);
    EXPECT_EQ(panes(), "0+0 |0+4 4+196");
    splitter.MouseMove(kHuge);
    EXPECT_EQ(splitter.Position(), 146);
    EXPECT_EQ(told, "ccc") << "the form hears of the end alone";
    splitter.MouseUp(92);
    EXPECT_EQ(splitter.Position(), 90);
    EXPECT_EQ(told, "ccccr");
}

}  // namespace
}  // namespace hl
