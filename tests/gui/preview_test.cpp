// Tests the preview's pane with real files of each kind, and with files that try to harm it.
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>

#include "platform/linux/preview/preview_tools.h"
#include "platform/qt/preview/preview_area.h"
#include "platform/qt/preview/preview_pages.h"
#include "platform/qt/preview/preview_picture.h"
#include "platform/qt/preview/preview_texts.h"
#include "recording_events.h"
#include "support/few_descriptors.h"
#ifdef HARBORLANTERN_PLAYER
#include <gst/gst.h>
#endif

namespace hl::test {
namespace {

using V = PreviewViewer;

const std::string kPrograms = fs::path(HARBORLANTERN_PROGRAM).parent_path().string();

/// A port of this machine, to which nobody may connect.
struct Listener {
    int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    std::string host;
    Listener() {
        sockaddr_in address{};  // It has a free port.
        socklen_t size = sizeof address;
        auto* plain = reinterpret_cast<sockaddr*>(&address);
        EXPECT_TRUE(listen(socket, 5) == 0 && getsockname(socket, plain, &size) == 0);
        host = "http://127.0.0.1:" + std::to_string(ntohs(address.sin_port));
    }
    ~Listener() { close(socket); }
    bool wasAsked() const {
        pollfd asked{socket, POLLIN, 0};
        return ::poll(&asked, 1, 50) != 0;
    }
};

struct PreviewPaneTest : testing::Test, PreviewEvents {
    TempDir dir, commands, programs;
    RecordingEvents told;
    std::unique_ptr<LinuxPreviewTools> tools;
    PreviewParts parts;
    std::unique_ptr<PreviewArea> area;
    std::vector<std::string> failures, reasons, missing;

    void SetUp() override {
        // These are the helpers of earlier tests, whose tools are gone.
        ASSERT_TRUE(soon([] { return waitpid(-1, nullptr, WNOHANG) < 0; }));
        open();
    }
    /// Makes a pane whose helpers are in `folder`.
    void open(const std::string& folder = kPrograms) {
        area.reset();
        tools = std::make_unique<LinuxPreviewTools>(folder, commands.path(), dir.path(), dir.path());
        parts.tools = tools.get();
        parts.texts = {"Vorschau", "[cut]", "converting", {}, "waiting", "silent", {}, {}, {}, {}, {}};
        area = std::make_unique<PreviewArea>(parts, told, nullptr);
        area->setEvents(this);
        area->resize(400, 300);
        area->show();
        QTest::qWait(1);
    }
    ~PreviewPaneTest() override {
        area.reset();
        EXPECT_EQ(told.told, std::vector<std::string>()) << "faults of the window";
    }

    std::string previewFailed(const std::string& path, const Error& error) override {
        failures.push_back(fs::path(path).filename().string());
        reasons.push_back(error.text);
        return "failed";
    }
    std::string previewNoFile(const std::string&) override { return "no file"; }
    void previewMissing(const std::string& what) override { missing.push_back(what); }
    std::string previewUnknown() override { return "unknown"; }
    std::string previewNeeds(const std::string& program, const std::string& suite) override {
        return "needs " + program + " of " + suite;
    }

    std::string path(const std::string& name) const { return dir.path() + "/" + name; }
    std::string file(const std::string& name, const std::string& content) const {
        writeFile(path(name), content);
        return path(name);
    }
    void command(const std::string& name, const std::string& body) const {
        writeScript(commands.path() + "/" + name, "PATH=/usr/bin:/bin\n" + body);
    }
    void show(V viewer, const std::string& file) { EXPECT_TRUE(area->showFile(viewer, file)) << file; }
    template <class Viewer>
    Viewer* viewer() {
        return dynamic_cast<Viewer*>(area->viewer());
    }
    std::string text() {
        auto* view = viewer<TextView>();
        return view != nullptr ? view->toPlainText().toStdString() : "no text";
    }
    static bool soon(const std::function<bool()>& what) { return QTest::qWaitFor(what, 20'000); }
    /// Tells whether the library has nothing to play with. If its module does not load, that is a fault.
    bool hasNoPlayer() const { return !missing.empty() && missing[0].ends_with("(QtMultimedia)"); }
    /// Tells whether it fails, or nothing can show it.
    bool failsSoon() const {
        return soon([this] { return !failures.empty() || !missing.empty(); });
    }
    bool isTextSoon(const std::string& wanted) {
        return soon([&] { return text().starts_with(wanted); });
    }
    /// Returns what the viewer of pictures shows, once it shows one.
    QImage shownPicture(V kind, const std::string& file) {
        show(kind, file);
        EXPECT_TRUE(soon([this] {
            auto* view = viewer<PictureView>();
            return !failures.empty() || (view != nullptr && !view->image().isNull());
        })) << file;
        return viewer<PictureView>() != nullptr ? viewer<PictureView>()->image() : QImage();
    }
    bool pageIsDrawn(std::size_t page) {
        return viewer<PagesView>() != nullptr && viewer<PagesView>()->isDrawn(page);
    }
    /// Makes a picture of one colour.
    std::string picture(const std::string& name, int width, int height, const QColor& color) const {
        QImage image(width, height, QImage::Format_RGB32);
        image.fill(color);
        EXPECT_TRUE(image.save(QString::fromStdString(path(name))));
        return path(name);
    }
    /// Returns the text of a page of the web, once it is shown.
    QString shownPage(V kind, const std::string& file) {
        show(kind, file);
        EXPECT_TRUE(soon([&] { return viewer<WebView>() != nullptr; }));
        return viewer<WebView>() != nullptr ? viewer<WebView>()->toPlainText().trimmed() : QString();
    }
    bool hasPdf() const { return !tools->helper("harborlantern-preview-pdf").empty(); }
    void helperDoes(const std::string& body) {
        writeScript(programs.path() + "/harborlantern-preview", "PATH=/usr/bin:/bin\n" + body);
        open(programs.path());
    }
    /// Makes a few pages, each with a large dot of the colour.
    std::string pdf(const std::string& name, int pages) const {
        QPdfWriter writer(QString::fromStdString(path(name)));
        QPainter painter(&writer);
        for (int page = 0; page < pages; ++page) {
            if (page > 0) writer.newPage();
            painter.fillRect(0, 0, writer.width(), writer.height(), page % 2 == 0 ? Qt::red : Qt::blue);
        }
        return path(name);
    }
    static bool hasColor(QWidget& widget, const QColor& color) {
        const QImage image = widget.grab().toImage();
        for (int y = 0; y < image.height(); y += 2)
            for (int x = 0; x < image.width(); x += 2)
                if (image.pixelColor(x, y) == color) return true;
        return false;
    }
    /// Tells whether the only helper has ended; it is left for the tools to reap.
    static bool helperEnded() {
        siginfo_t info{};
        return waitid(P_ALL, 0, &info, WEXITED | WNOHANG | WNOWAIT) != 0 || info.si_pid != 0;
    }
    /// Expects that the only helper ends, and that the tools reap it when they start something.
    void expectEndAndBurial() const {
        EXPECT_TRUE(soon([] { return helperEnded(); }));
        const auto process = tools->start({.program = "/bin/true"});
        EXPECT_EQ(tools->ending(), 0);
    }
};

TEST_F(PreviewPaneTest, ATextIsShownInItsEncodingAndCannotBeChanged) {
    show(V::kText, file("a.txt", "gr\xF6\xDFs\r\nx"));
    EXPECT_EQ(text(), "größs\nx");
    QTest::keyClicks(area->viewer(), QStringLiteral("abc"));
    EXPECT_EQ(text(), "größs\nx");
    EXPECT_EQ(area->viewer()->accessibleName(), QStringLiteral("Vorschau"));
}

TEST_F(PreviewPaneTest, OfAVeryLongTextTheBeginningIsShown) {
    const std::string name = file("a.log", "first\n" + std::string(100'000, 'x'));
    fs::resize_file(name, std::uintmax_t{4} << 30);
    show(V::kText, name);
    EXPECT_TRUE(text().starts_with("first\nxxx") && text().ends_with("[cut]"));
    EXPECT_LT(text().size(), std::size_t{4} << 20);
}

TEST_F(PreviewPaneTest, OfManyLinesTheFirstAreShown) {
    for (const std::string end : {"\n", "\r", "\r\n", "\u2028", "\u2029"}) {
        std::string ends;
        while (ends.size() < 900'000) ends += end;
        show(V::kText, file("a.txt", ends));
        EXPECT_TRUE(text().ends_with("[cut]"));
        EXPECT_LT(text().size(), 200'000U) << testing::PrintToString(end);
    }
}

TEST_F(PreviewPaneTest, APageOfTheWebFetchesNothing) {
    const Listener server;
    picture("red.png", 50, 50, Qt::red);
    file("red.css", "p { color: #ff0000; background-color: #ff0000 }");
    ASSERT_EQ(mkfifo(path("fifo.png").c_str(), 0600), 0);
    std::string page = "<style>@import url('" + path("red.css") + "');</style><body background='" +
                       path("red.png") + "'><script>x</script><h1>Title</h1><p>Text</p>";
    for (const std::string& sheet : {server.host + "/a.css", "file://" + path("red.css"), path("red.css")})
        page = "<link rel=stylesheet href='" + sheet + "'>" + page;
    for (const std::string& source : {server.host + "/a.png", "file://" + path("red.png"), path("red.png"),
                                      std::string("red.png"), path("fifo.png")})
        page += "<img src='" + source + "' width=50 height=50><a href='" + source + "'>link</a>";
    const QString shown = shownPage(V::kWebPage, file("a.html", page));
    ASSERT_TRUE(shown.startsWith(QStringLiteral("Title\nText"))) << shown.toStdString();
    auto* view = viewer<WebView>();
    const QString before = view->toPlainText();
    EXPECT_FALSE(hasColor(*view, Qt::red));
    for (int x = 2; x < 400; x += 7)
        for (int y = 60; y < 200; y += 7) QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, {x, y});
    EXPECT_EQ(view->toPlainText(), before) << "a link was followed";
    EXPECT_FALSE(server.wasAsked()) << "it came over the network";
}

TEST_F(PreviewPaneTest, OfALongPageTheBeginningIsShownInItsEncoding) {
    std::string page = "<p>gr\xC3\xBCn</p><!--";
    page.resize(kMostMarkup - 8, 'x');
    page += "--><p>";
    page.resize(kMostMarkup - 1, 'y');
    page += "\xC3\xBC</p>";  // The first byte of the letter is the last byte of the part.
    const QString shown = shownPage(V::kWebPage, file("a.html", page));
    EXPECT_TRUE(shown.startsWith(QStringLiteral("grün\n"))) << shown.left(100).toStdString();
    EXPECT_TRUE(shown.endsWith(QStringLiteral("[cut]"))) << shown.right(100).toStdString();
}

TEST_F(PreviewPaneTest, APageThatWouldTakeTooLongIsShownAsText) {
    // The time doubles with each nested table, and grows with the square of the floats.
    for (const auto& [piece, times] : std::initializer_list<std::pair<std::string, int>>{
             {"<table><tr><td>", 30}, {"<table style='float:left'><tr><td>x</table>", 10'000}}) {
        std::string page;
        for (int i = 0; i < times; ++i) page += piece;
        show(V::kWebPage, file("a.html", page));
        EXPECT_TRUE(isTextSoon(piece)) << piece;
    }
}

TEST_F(PreviewPaneTest, RichTextGoesThroughItsConverter) {
    command("unrtf", "read line; echo \"<b>$line</b>\"");
    EXPECT_EQ(shownPage(V::kRichText, file("a.rtf", "{rich}\n")), QStringLiteral("{rich}"));
    command("unrtf", "kill -SEGV $$");
    show(V::kRichText, path("a.rtf"));
    EXPECT_TRUE(isTextSoon("{rich}\n"));
    fs::remove(commands.path() + "/unrtf");
    for (int i = 0; i < 2; ++i) {
        show(V::kRichText, path("a.rtf"));
        EXPECT_EQ(text(), "{rich}\n");
    }
    EXPECT_EQ(missing, std::vector<std::string>{"unrtf"}) << "it is told once";
}

TEST_F(PreviewPaneTest, PicturesAreAsLargeAsFitsAndSharp) {
    for (const char* name : {"photo.png", "photo.jpg", "photo.bmp"})
        EXPECT_EQ(shownPicture(V::kPicture, picture(name, 2000, 1000, Qt::blue)).size(),
                  QSize(400, 200) * area->devicePixelRatioF())
            << name;
    area->resize(200, 300);
    EXPECT_TRUE(soon([&] { return viewer<PictureView>()->image().width() == 200; }));
    EXPECT_EQ(shownPicture(V::kPicture, picture("small.png", 20, 10, Qt::blue)).size(), QSize(20, 10));
}

TEST_F(PreviewPaneTest, WhatIsNoneOfItsKindOrTooLargeCostsAMessage) {
    // These are a BMP of 60,000 x 60,000 with a header and no pixels, and a truncated PNG of that size.
    std::string bmp("BM\0\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\x60\xEA\0\0\x60\xEA\0\0\1\0\x20\0\0\0\0\0", 34);
    bmp += std::string(20, '\0');
    const std::string png("\x89PNG\r\n\x1A\n\0\0\0\rIHDR\0\0\xEA\x60\0\0\xEA\x60\x08\2\0\0\0\x0C\xC6\x50\x8C",
                          33);
    const std::string svg = "<svg xmlns='http://www.w3.org/2000/svg'><rect width='9' height='9'/></svg>";
    const std::string film("\0\0\0\30ftypmp42\0\0\0\0mp42isom\0\0\1\0moov", 32);
    // A sound that no decoder is known for.
    std::string sound(
        "RIFF\x24\x10\0\0WAVEfmt \x10\0\0\0\x75\0\1\0\x40\x1F\0\0\x80\x3E\0\0\2\0\x10\0data\0\x10\0\0", 44);
    sound += std::string(4096, '\1');
    const bool media = fs::exists(kPrograms + "/harborlantern-media.so");
    const std::tuple<V, std::string, std::string> cases[] = {
        {V::kPicture, "a.bmp", bmp},
        {V::kPicture, "a.png", png},
        {V::kPicture, "empty.png", ""},
        {V::kPicture, "svg.gif", svg},
        {V::kPages, "empty.pdf", ""},
        {V::kPages, "cut.pdf", contentOf(pdf("whole.pdf", 3)).substr(0, 300)},
        {V::kMedia, "cut.mp4", film},
        {V::kMedia, "text.avi", "text"},
        {V::kMedia, "unknown.wav", sound}};
    for (const auto& [kind, name, content] : cases) {
        if ((kind == V::kPages && !hasPdf()) || (kind == V::kMedia && !media)) continue;
        failures.clear();
        show(kind, file(name, content));
        ASSERT_TRUE(failsSoon()) << name;
        if (kind == V::kMedia && hasNoPlayer()) break;
        if (kind == V::kMedia) QTest::qWait(50);
        EXPECT_EQ(failures, std::vector<std::string>{name});
        EXPECT_EQ(text(), "failed") << name;
    }
}

TEST_F(PreviewPaneTest, WhateverAHelperDoesItCostsAMessage) {
    for (const char* body :
         {"kill -SEGV $$", "exit 0", "echo nonsense that is long enough for a header of an answer",
          "head -c 200000000 /dev/zero | tr '\\0' '\\1'", "printf '\\1\\0\\0\\0'"}) {
        helperDoes(body);
        failures.clear();
        show(V::kPicture, file("a.png", "x"));
        EXPECT_TRUE(failsSoon()) << body;
        EXPECT_EQ(failures.size(), 1U) << body;
    }
}

TEST_F(PreviewPaneTest, WhereTheSystemHasNoRoomForAHelperItSaysSo) {
    for (const char* converter : {"unrtf", "soffice"}) command(converter, "exit 1");
    writeScript(programs.path() + "/harborlantern-preview-pdf", "exit 0");
    helperDoes("exit 0");
    area->showNotice("its viewer exists");
    const std::string name = file("a.docx", "x");
    for (const V kind : {V::kPicture, V::kPages, V::kRichText, V::kWebPage, V::kOffice}) {
        reasons.clear();
        {
            // That is enough for the file and half of the pipes.
            const FewDescriptors few(3);
            show(kind, name);
        }
        EXPECT_EQ(reasons, std::vector<std::string>{"Too many open files"}) << static_cast<int>(kind);
        EXPECT_EQ(text(), "failed");
    }
    EXPECT_EQ(missing, std::vector<std::string>());
}

TEST_F(PreviewPaneTest, APictureWhoseHelperGoesLeavesNoOldPixels) {
    fs::create_symlink(kPrograms + "/harborlantern-preview", programs.path() + "/harborlantern-preview");
    open(programs.path());
    ASSERT_FALSE(shownPicture(V::kPicture, picture("a.png", 500, 500, Qt::green)).isNull());
    auto* view = viewer<PictureView>();
    fs::remove(path("a.png"));
    area->resize(100, 100);
    EXPECT_TRUE(soon([&] { return view->image().width() == 100; })) << "the file is gone, its picture is not";
    fs::remove(programs.path() + "/harborlantern-preview");
    area->resize(90, 90);
    EXPECT_TRUE(isTextSoon("unknown"));
    EXPECT_TRUE(view->image().isNull());
}

TEST_F(PreviewPaneTest, AnotherFileEndsTheHelperOfTheOneBefore) {
    helperDoes("sleep 1000");
    show(V::kPicture, file("a.png", "x"));
    QTest::qWait(50);
    EXPECT_FALSE(helperEnded());
    show(V::kText, file("a.txt", "text"));
    expectEndAndBurial();
    EXPECT_EQ(text(), "text");
    EXPECT_TRUE(failures.empty());
}

TEST_F(PreviewPaneTest, OfALongDocumentThePagesThatShowAreDrawn) {
    if (!hasPdf()) GTEST_SKIP() << "built without Qt's PDF library";
    show(V::kPages, pdf("a.pdf", 5000));
    ASSERT_TRUE(soon([this] { return pageIsDrawn(0); }));
    auto* view = viewer<PagesView>();
    EXPECT_EQ(view->pageCount(), 5000U);
    EXPECT_TRUE(hasColor(*view, Qt::red));
    auto* bar = view->verticalScrollBar();
    bar->setValue(bar->maximum());
    ASSERT_TRUE(soon([this] { return pageIsDrawn(4999); }));
    EXPECT_TRUE(hasColor(*view, Qt::blue));
    for (int i = 0; i < 200; ++i) {
        bar->setValue(bar->maximum() / 200 * i);
        QTest::qWait(5);
        ASSERT_LT(view->keptBytes(), std::size_t{80} << 20);
    }
    area->clear();
    expectEndAndBurial();
}

TEST_F(PreviewPaneTest, AnOfficeDocumentIsConvertedInAFolderThatGoes) {
    const std::string office = file("a.docx", "document");
    const auto entries = [this] { return std::distance(fs::directory_iterator(dir.path()), {}); };
    const auto before = entries();
    show(V::kOffice, office);
    EXPECT_EQ(text(), "needs soffice of LibreOffice");
    EXPECT_EQ(missing, std::vector<std::string>{"soffice"});
    // The converter reads its own files, and nothing else of the disk.
    const std::string made = commands.path() + "/made.pdf";
    fs::rename(pdf("made.pdf", 1), made);
    command("soffice",
            "test \"$(cat document.docx)\" = document && mkdir out && cp " + made + " out/document.pdf");
    show(V::kOffice, office);
    EXPECT_EQ(text(), "converting");
    EXPECT_EQ(entries(), before + 1);
    ASSERT_TRUE(soon([this] { return hasPdf() ? pageIsDrawn(0) : missing.size() == 2; }));
    EXPECT_EQ(entries(), before);
    command("soffice", "exit 1");
    missing.clear();
    show(V::kOffice, office);
    EXPECT_TRUE(failsSoon() && failures.size() == 1);
}

TEST_F(PreviewPaneTest, PicturesThatNeedAConverterAreShownByItOrNameIt) {
    // Two red pixels: a header of 128 bytes, then a row of 2 in each of three planes.
    std::string pcx("\x0A\5\1\x08\0\0\0\0\1\0\0\0\x48\0\x48\0", 16);
    pcx += std::string(49, '\0') + std::string("\3\2\0\1\0", 5) + std::string(58, '\0');
    pcx += std::string("\xC2\xFF\xC2\0\xC2\0", 6);
    const std::tuple<V, const char*, const char*> kinds[] = {
        {V::kPcx, "a.pcx", "needs pcxtoppm of Netpbm"},
        {V::kMetafile, "a.emf", "needs soffice of LibreOffice"},
        {V::kMetafile, "a.wmf", "needs soffice of LibreOffice"}};
    for (const auto& [kind, name, needed] : kinds) {
        show(kind, file(name, pcx));
        EXPECT_EQ(text(), needed) << name;
    }
    QImage page(900, 900, QImage::Format_ARGB32);
    page.fill(Qt::white);
    for (const int x : {500, 501}) page.setPixelColor(x, 400, Qt::red);
    const std::string made = commands.path() + "/made.png";
    ASSERT_TRUE(page.save(QString::fromStdString(made)));
    command("soffice", "test \"$6\" = png && mkdir out && cp " + made + " out/document.png");
    // If the real converter is there, it is used; it writes this for the file above.
    command("pcxtoppm",
            "test -x /usr/bin/pcxtoppm && exec pcxtoppm\n"
            "printf 'P6\\n2 1\\n255\\n\\377\\0\\0\\377\\0\\0'");
    for (const auto& [kind, name, needed] : kinds) {
        const QImage shown = shownPicture(kind, path(name));
        EXPECT_TRUE(shown.size() == QSize(2, 1) && shown.pixelColor(1, 0) == QColor(Qt::red)) << name;
    }
    command("pcxtoppm", "exit 1");
    missing.clear();
    show(V::kPcx, path("a.pcx"));
    EXPECT_TRUE(failsSoon() && failures.size() == 1);
}

TEST_F(PreviewPaneTest, SoundPlaysStopsAndHasAPosition) {
    if (!fs::exists(kPrograms + "/harborlantern-media.so")) GTEST_SKIP() << "built without QtMultimedia";
    std::string wav(
        "RIFF\x24\xE2\4\0WAVEfmt \x10\0\0\0\1\0\1\0\x40\x1F\0\0\x80\x3E\0\0\2\0\x10\0data\0\xE2\4\0", 44);
    wav += std::string(320'000, '\0');
    show(V::kMedia, file("a.wav", wav));
    EXPECT_EQ(area->viewer(), nullptr);  // It does not exist yet, because the user may only be passing by.
    ASSERT_TRUE(soon([&] { return area->viewer() != nullptr || !missing.empty(); }));
    if (hasNoPlayer()) GTEST_SKIP() << "no player: " << missing[0];
    ASSERT_EQ(missing, std::vector<std::string>());
    auto* position = area->viewer()->findChild<QAbstractSlider*>(QStringLiteral("position"));
    EXPECT_TRUE(soon([&] { return position->maximum() > 19'000 || !failures.empty(); }));
    EXPECT_NEAR(position->maximum(), 20'000, 100);
    area->viewer()->findChild<QAbstractButton*>(QStringLiteral("stop"))->click();
    EXPECT_TRUE(soon([&] { return position->value() == 0; }));
    show(V::kText, file("a.txt", "text"));
    EXPECT_EQ(text(), "text");
    EXPECT_EQ(failures, std::vector<std::string>());
}

#ifdef HARBORLANTERN_PLAYER
TEST_F(PreviewPaneTest, ASoundThatNamesOtherPlacesOpensNoneOfThem) {
    const bool first = gst_is_initialized() == FALSE;
    const Listener server;
    ASSERT_EQ(mkfifo(path("fifo").c_str(), 0600), 0);
    const std::string list = "#EXTM3U\n#EXT-X-TARGETDURATION:9\n#EXTINF:9,\n", end = "\n#EXT-X-ENDLIST\n";
    const std::string inner = file("inner.m3u8", list + server.host + "/inner.ts" + end);
    const std::string dash =
        "<?xml version='1.0'?><MPD xmlns='urn:mpeg:dash:schema:mpd:2011' type='static' "
        "mediaPresentationDuration='PT9S' minBufferTime='PT1S' profiles="
        "'urn:mpeg:dash:profile:isoff-on-demand:2011'><BaseURL>" +
        server.host +
        "/</BaseURL><Period><AdaptationSet mimeType='audio/mp4'><Representation id='1' "
        "bandwidth='9'><BaseURL>a.mp4</BaseURL><SegmentBase indexRange='0-9'/>"
        "</Representation></AdaptationSet></Period></MPD>";
    for (const std::string& content :
         {list + server.host + "/a.ts" + end, list + "file://" + path("fifo") + end, dash,
          "#EXTM3U\n#EXT-X-STREAM-INF:BANDWIDTH=9\nfile://" + inner + "\n", server.host + "/a.mp3\n",
          "rtsp" + server.host.substr(4) + "/a.mp3\n", "file://" + path("fifo") + "\n"}) {
        failures.clear();
        show(V::kMedia, file("a.mp3", content));
        ASSERT_TRUE(failsSoon()) << content;
        if (hasNoPlayer()) GTEST_SKIP() << "no player: " << missing[0];
        EXPECT_FALSE(server.wasAsked()) << content;
        EXPECT_EQ(::open(path("fifo").c_str(), O_WRONLY | O_NONBLOCK), -1) << "it is read: " << content;
    }
    // Readers of lists come in packages that not everybody has, so what they would open with has to be gone
    // too.
    for (const char* scheme : {"http", "https", "icy", "rtsp", "rtspt", "rtmp", "srt", "udp", "tcp", "rtp",
                               "fd", "data", "resource", "v4l2", "cdda", "multifile", "splitmux"}) {
        GstElement* source = gst_element_make_from_uri(
            GST_URI_SRC, (scheme + std::string("://127.0.0.1:9/")).c_str(), nullptr, nullptr);
        EXPECT_EQ(source, nullptr) << scheme;
    }
    EXPECT_TRUE(!first || fs::exists(path("mediaplugins.cache"))) << "the player wrote elsewhere";
}
#endif

TEST_F(PreviewPaneTest, WithoutHelpersAndModulesEachKindIsToldOnce) {
    open(programs.path());
    for (int i = 0; i < 2; ++i)
        for (const V kind : {V::kPicture, V::kPages, V::kMedia}) {
            show(kind, file("a", "x"));
            EXPECT_TRUE(isTextSoon("unknown"));
        }
    EXPECT_EQ(missing.size(), 3U);
}

TEST_F(PreviewPaneTest, WhatCannotBeOpenedIsRefusedAtOnce) {
    ASSERT_EQ(mkfifo(path("fifo.txt").c_str(), 0600), 0);
    for (const V kind : {V::kText, V::kPicture, V::kPages, V::kMedia})
        for (const auto& [name, reason] :
             {std::pair("fifo.txt", ErrorKind::kUnsuited), std::pair("none.txt", ErrorKind::kNotFound)})
            EXPECT_TRUE(area->showFile(kind, path(name)).failedAs(reason)) << name;
}

TEST_F(PreviewPaneTest, ADocumentIsConvertedByTheRealOfficeToo) {
    if (!fs::exists("/usr/bin/soffice")) GTEST_SKIP() << "no LibreOffice";
    fs::create_symlink("/usr/bin/soffice", commands.path() + "/soffice");
    show(V::kOffice, file("a.doc", "A text is a document, too."));
    EXPECT_TRUE(soon([this] { return pageIsDrawn(0); })) << text();
}

}  // namespace
}  // namespace hl::test
