// Measures the preview: the milliseconds from the choice of a file until it is drawn. bench/window.py runs
// it:
//
//     bench_preview FOLDER PROGRAMS            shows files of its own
//     bench_preview FOLDER PROGRAMS FILM...    plays films, which may be broken
//
// FOLDER gets the files: a text of 1 MB, a JPEG of 12 megapixels and a PDF of 20 pages. Each is shown several
// times, the first time with whatever that has to load. PROGRAMS holds the helpers of the preview. For each
// film it prints the longest time in which no click was handled while the film was opened, played and
// released.
#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QPainter>
#include <QPdfWriter>
#include <algorithm>
#include <cstdio>
#include <fstream>
#include <functional>
#include <span>

#include "platform/linux/preview/preview_tools.h"
#include "platform/qt/preview/preview_area.h"
#include "platform/qt/preview/preview_pages.h"
#include "platform/qt/preview/preview_picture.h"
#include "platform/qt/preview/preview_texts.h"
#include "window_parts.h"

namespace hl {

namespace {

constexpr int kTimes = 7;
constexpr int kLongestWait = 20'000;
constexpr int kPlayed = 1500;

// This picture compresses as a photograph does, and not to nothing.
void makePicture(const std::string& path) {
    QImage image(4000, 3000, QImage::Format_RGB32);
    std::uint32_t noise = 1;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            noise = noise * 1664525 + 1013904223;
            const int grain = static_cast<int>(noise >> 28);
            image.setPixel(x, y, qRgb(x / 16 + grain, y / 12 + grain, (x + y) / 28 + grain));
        }
    image.save(QString::fromStdString(path), "JPG", 90);
}

void makeDocument(const std::string& path) {
    QPdfWriter writer(QString::fromStdString(path));
    QPainter painter(&writer);
    for (int page = 0; page < 20; ++page) {
        if (page > 0) writer.newPage();
        for (int line = 1; line <= 50; ++line)
            painter.drawText(
                100, line * writer.height() / 52,
                QStringLiteral("Line %1 of page %2: where the space has gone").arg(line).arg(page + 1));
    }
}

void makeText(const std::string& path) {
    std::ofstream out(path);
    for (int line = 0; line < 20'000; ++line)
        out << "A line of text as a log would have it, number " << line << '\n';
}

bool wait(const std::function<bool()>& drawn) {
    QElapsedTimer timer;
    timer.start();
    while (!drawn()) {
        if (timer.elapsed() > kLongestWait) return false;
        QApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 5);
    }
    return true;
}

class Bench final : public PreviewEvents {
  public:
    explicit Bench(PreviewArea& area) : area_(area) { area.setEvents(this); }

    void measure(const char* name, PreviewViewer viewer, const std::string& path,
                 const std::function<bool()>& drawn) {
        std::vector<double> times;
        for (int i = 0; i < kTimes; ++i) {
            area_.clear();
            QApplication::processEvents();
            QElapsedTimer timer;
            timer.start();
            if (!area_.showFile(viewer, path) || !wait(drawn)) give(path + " was not drawn");
            area_.repaint();
            times.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
        }
        std::printf("%s_first %.6f\n", name, times.front());
        std::sort(times.begin(), times.end());
        std::printf("%s %.6f\n", name, times[kTimes / 2]);
    }

    void measureWait(const std::string& film) {
        broken_ = true;
        double longest = 0;
        for (int i = 0; i < kTimes; ++i) {
            longest = std::max(longest, took([&] {
                                   if (!area_.showFile(PreviewViewer::kMedia, film)) give(film);
                               }));
            QElapsedTimer timer;
            timer.start();
            while (timer.elapsed() < kPlayed)
                longest = std::max(longest, took([] { QApplication::processEvents(QEventLoop::AllEvents); }));
            longest = std::max(longest, took([&] { area_.clear(); }));
        }
        std::printf("film_wait %.6f %s\n", longest, film.c_str());
    }

    std::string previewFailed(const std::string& path, const Error& error) override {
        if (!broken_) give(path + ": " + error.text);
        return error.text;
    }
    void previewMissing(const std::string& what) override { give(what); }
    std::string previewNoFile(const std::string&) override { return give("no file"), std::string(); }
    std::string previewUnknown() override { return "unknown"; }
    std::string previewNeeds(const std::string& program, const std::string&) override {
        give(program + " is missing");
    }

  private:
    [[noreturn]] static void give(const std::string& reason) {
        std::fprintf(stderr, "%s\n", reason.c_str());
        std::exit(1);
    }

    static double took(const std::function<void()>& step) {
        QElapsedTimer timer;
        timer.start();
        step();
        return static_cast<double>(timer.nsecsElapsed()) / 1e6;
    }

    PreviewArea& area_;
    bool broken_ = false;  ///< The file may be broken.
};

/// The form is only needed for the errors of the pane.
int run(const std::string& folder, const std::string& programs, std::span<char*> films) {
    bench::Parts parts;
    WindowForm form(parts.services(), parts.windowServices());
    LinuxPreviewTools tools(programs, "", folder);
    PreviewParts preview;
    preview.tools = &tools;
    PreviewArea area(preview, form, nullptr);
    area.resize(800, 600);
    area.show();
    QApplication::processEvents();

    Bench bench(area);
    for (const char* film : films) bench.measureWait(film);
    if (!films.empty()) return 0;
    const std::string text = folder + "/a.txt", picture = folder + "/b.jpg", document = folder + "/c.pdf";
    makeText(text);
    makePicture(picture);
    makeDocument(document);
    bench.measure("text", PreviewViewer::kText, text, [&] { return area.viewer() != nullptr; });
    bench.measure("picture", PreviewViewer::kPicture, picture, [&] {
        auto* view = dynamic_cast<PictureView*>(area.viewer());
        return view != nullptr && !view->image().isNull();
    });
    bench.measure("pages", PreviewViewer::kPages, document, [&] {
        auto* view = dynamic_cast<PagesView*>(area.viewer());
        return view != nullptr && view->pageCount() > 0 && view->isDrawn(0);
    });
    area.clear();
    return 0;
}

}  // namespace
}  // namespace hl

int main(int argc, char** argv) {
    if (argc < 3) return std::fputs("Usage: bench_preview FOLDER PROGRAMS [FILM...]\n", stderr), 2;
    QApplication application(argc, argv);
    return hl::run(argv[1], argv[2], std::span(argv + 3, argv + argc));
}
