// Tests with what the preview shows a file, and how large.
#include "views/preview.h"

#include "platform/picture_size.h"
#include "support/scan_fixture.h"

namespace hl::test {
namespace {

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

struct PreviewWithoutAPane : ScanFixture, PreviewHost {
    bool previewShows() override { return true; }
    std::string selectedFile() override { return "/s/a.txt"; }
};

TEST_F(PreviewWithoutAPane, IsQuietWhenTheWindowIsGone) {
    Preview preview{*this, texts, log, diagnostics};
    preview.Preview_ShowFile(true);
    preview.Preview_Reset_View();
    EXPECT_TRUE(sink.shown.empty());
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
