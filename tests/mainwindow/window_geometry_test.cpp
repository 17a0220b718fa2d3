#include "mainwindow/window_geometry.h"

#include "app/settings_fixture.h"

namespace hl {
namespace {

class WindowGeometry : public test::SettingsFixture {
  protected:
    static constexpr Rect kScreen{0, 0, 1920, 1080};
    static std::string shown(const WindowPlace& place) {
        const Rect& rect = place.rect;
        std::string text;
        for (const int number : {rect.left, rect.top, rect.width, rect.height, place.splitter})
            text += std::to_string(number) + " ";
        return text;
    }
};

TEST_F(WindowGeometry, OpensWhereItFitsWhateverTheFileHolds) {
    const std::pair<const char*, const char*> cases[] = {
        {"", "570 267 781 546 245 "},
        {"Width=15000\nHeight=7500", "460 290 1000 500 245 "},
        {"Left=99999\nTop=450", "0 30 781 546 245 "},
        {"Left=-15\nTop=16200", "0 0 781 546 245 "},
        {"Left=28785\nTop=16185", "1919 1079 781 546 245 "},
        {"Width=45000\nHeight=30000", "0 0 3000 2000 245 "},
        {"TVW=11716", "570 267 781 546 146 "},
        {"TVW=-1", "570 267 781 546 146 "},
        {"TVW=11715", "570 267 781 546 781 "},
        {"Left=x\nTop=\nWidth=0\nHeight=-15\nTVW=1e9", "570 267 781 546 245 "},
        {"Left=99999999999\nWidth=99999999999", "570 267 781 546 245 "}};
    for (const auto& [lines, place] : cases)
        EXPECT_EQ(shown(savedPlace(IniText(std::string("[Form]\n") + lines), kScreen)), place) << lines;
    const Rect second{-1920, 40, 1920, 1040};
    EXPECT_EQ(shown(savedPlace(IniText("[Form]\nLeft=-1500\nTop=0"), second)), "-100 40 781 546 245 ");
}

TEST_F(WindowGeometry, ComesBackAsItWasSaved) {
    for (const WindowState state : {WindowState::kNormal, WindowState::kMinimized, WindowState::kMaximized}) {
        FensterpositionSpeichern(store, state, {33, 44, 801, 603}, 207);
        EXPECT_EQ(shown(savedPlace(store.read(), kScreen)), "33 44 801 603 207 ");
        EXPECT_EQ(savedState(store.read()), state == WindowState::kMinimized ? WindowState::kNormal : state);
    }
    EXPECT_NE(test::contentOf(path).find("Width=12015"), std::string::npos) << "twips";
    EXPECT_EQ(savedState(IniText("[Form]\nWindowState=7")), WindowState::kNormal);
}

}  // namespace
}  // namespace hl
