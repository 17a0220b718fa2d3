// Tests which file the preview shows and with what, and when it stops showing it.
#include "views/preview.h"

#include "app/product.h"
#include "platform/picture_size.h"
#include "support/scan_fixture.h"

namespace hl::test {
namespace {

struct RecordingPane : PreviewPane {
    std::vector<std::string> calls;
    Result<> opened;
    PreviewEvents* events = nullptr;

    void setEvents(PreviewEvents* to) override { events = to; }
    Result<> showFile(PreviewViewer viewer, const std::string& path) override {
        calls.push_back(std::to_string(static_cast<int>(viewer)) + " " + path);
        return opened;
    }
    void showNotice(const std::string& text) override { calls.push_back(text); }
    void clear() override { calls.emplace_back("-"); }
};

struct PreviewTest : ScanFixture, PreviewHost {
    RecordingPane pane;
    bool shows = true;
    std::string selected = "/s/a.txt";
    Preview preview{*this, texts, log, diagnostics};

    PreviewTest() { preview.setPane(&pane); }
    bool previewShows() override { return shows; }
    std::string selectedFile() override { return selected; }

    /// Shows the file and returns what the pane was told.
    std::vector<std::string> show(const std::string& path, bool force = false) {
        selected = path;
        preview.Preview_ShowFile(force);
        return std::exchange(pane.calls, {});
    }
};

using Calls = std::vector<std::string>;
const std::string kNotice = " - Unbekanntes Dateiformat - \r\n";

TEST(PreviewViewers, FollowTheExtensionOfTheNameInAnyCase) {
    using V = PreviewViewer;
    const std::pair<std::optional<V>, std::vector<const char*>> cases[] = {
        {V::kText, {"a.txt", "a.tar.log", "LIESMICH.1ST", ".txt"}},
        {V::kRichText, {"a.rtf"}},
        {V::kWebPage, {"a.HTML"}},
        {V::kPicture, {"a.png", "a.JPG"}},
        {V::kPages, {"a.pdf"}},
        {V::kOffice, {"a.docx"}},
        {V::kPcx, {"a.PCX"}},
        {V::kMetafile, {"a.emf", "a.wmf"}},
        {V::kMedia, {"a.Mp3", "a.mp4"}},
        {std::nullopt, {"a", "a.", "txt", "a.tx", "a.txt/bat", "a.swf", "a.\xFF\xFE"}}};
    for (const auto& [viewer, names] : cases)
        for (const char* name : names) EXPECT_EQ(previewViewerOf(name), viewer) << name;
}

TEST_F(PreviewTest, AFileThatIsShownIsReadAgainOnlyWhenForced) {
    EXPECT_EQ(show("/s/a.txt"), (Calls{"-", "0 /s/a.txt"}));
    EXPECT_EQ(show("/s/a.txt"), Calls());
    EXPECT_EQ(show("/s/a.txt", true), (Calls{"-", "0 /s/a.txt"}));
    EXPECT_EQ(show("/s/b\xFF.txt"), (Calls{"-", "0 /s/b\xFF.txt"}));
    EXPECT_EQ(show("/s/a.txt"), (Calls{"-", "0 /s/a.txt"}));
}

TEST_F(PreviewTest, AnUnknownFileIsToldOfEachTimeItIsSelected) {
    for (const char* path : {"/s.txt/a", "/s/a.swf", "/s/a.swf"}) {
        EXPECT_EQ(show(path), (Calls{"-", kNotice})) << path;
        EXPECT_EQ(preview.shownPath(), "");
    }
}

TEST_F(PreviewTest, WithNothingSelectedOrNoPaneTheFileIsLeftAndComesBack) {
    show("/s/a.txt");
    EXPECT_EQ(show(""), Calls{"-"});
    EXPECT_EQ(show("/s/a.txt"), (Calls{"-", "0 /s/a.txt"}));
    shows = false;
    EXPECT_EQ(show("/s/a.txt", true), Calls{"-"}) << "a hidden preview opens nothing";
    shows = true;
    EXPECT_EQ(show("/s/a.txt"), (Calls{"-", "0 /s/a.txt"}));
    preview.setPane(nullptr);
    EXPECT_EQ(show("/s/b.txt", true), Calls()) << "the window is gone";
}

TEST_F(PreviewTest, AFileThatCannotBeOpenedIsToldInThePaneAndTheLogOneThatIsNoneInThePaneAlone) {
    pane.opened = Error{.kind = ErrorKind::kUnsuited};
    EXPECT_EQ(show("/s/pipe\n.txt"),
              (Calls{"-", "0 /s/pipe\n.txt", "'/s/pipe\u240A.txt' ist keine gewöhnliche Datei."}));
    pane.opened = Error{.number = 13, .text = "Keine Berechtigung"};
    const std::string text =
        "Die Datei '/s/a\u240A.txt' kann nicht angezeigt werden!\r\n\r\nKeine Berechtigung";
    EXPECT_EQ(show("/s/a\n.txt"), (Calls{"-", "0 /s/a\n.txt", text}));
    EXPECT_EQ(show("/s/a\n.txt"), Calls()) << "each key and click would log it again";
    EXPECT_EQ(protocol(), Calls{"ERROR: Preview_ShowFile Keine Berechtigung (/s/a\u240A.txt)"});
    EXPECT_TRUE(has(pane.events->previewFailed("/s/a.jpg", {}), "'/s/a.jpg'")) << "later";
    EXPECT_EQ(protocol().back(),
              "ERROR: Preview_ShowFile Sie ist beschädigt oder zu groß, oder es dauert zu lange. (/s/a.jpg)");
}

TEST(ZoomPicture, KeepsAllOfThePictureInTheBox) {
    const std::tuple<PictureSize, PictureSize, bool, ZoomedPicture> cases[] = {
        {{100, 50}, {200, 200}, false, {{100, 50}, {200, 200}}},
        {{100, 50}, {200, 200}, true, {{100, 50}, {100, 50}}},
        {{400, 100}, {200, 200}, false, {{200, 50}, {200, 200}}},
        {{100, 400}, {200, 200}, true, {{50, 200}, {50, 200}}},
        {{201, 10}, {200, 200}, false, {{200, 10}, {200, 200}}},
        {{10'000, 3}, {100, 100}, true, {{100, 1}, {100, 1}}},
        {{60'000, 60'000}, {1, 1}, false, {{1, 1}, {1, 1}}}};
    for (const auto& [source, target, shrink, result] : cases) {
        const ZoomedPicture zoomed = ZoomPicture(source, target, shrink);
        EXPECT_EQ(zoomed.drawn, result.drawn) << source.width << "x" << source.height;
        EXPECT_EQ(zoomed.target, result.target) << source.width << "x" << source.height;
    }
}

}  // namespace
}  // namespace hl::test
