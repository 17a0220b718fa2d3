// Measures printing: the seconds until the first page of the preview is painted, and until a PDF is complete.
// bench/window.py runs it:
//
//     bench_print preview|pdf ROWS FILE
//
// The rows are those of a report of folders with five columns, all of them unfolded.
#include <QApplication>
#include <cstdlib>
#include <cstring>

#include "output/print_job.h"
#include "platform/qt/bars/icon_store.h"
#include "platform/qt/print/print_preview.h"
#include "scan/records.h"
#include "views/report_columns.h"
#include "window_parts.h"

namespace hl {

namespace {

/// Makes thousands of folders, each with folders of its own.
void fill(Grid& grid, std::size_t rows) {
    bench::Disorder disorder;
    Row parent = kNoRow;
    for (std::size_t i = 0; i < rows; ++i) {
        const std::string name = "folder " + std::to_string(disorder.next());
        const bool top = i % 100 == 0;
        const Row row = grid.addRow(top ? kNoRow : parent, name.substr(0, 10 + i % 9));
        if (top) parent = row;
        grid.setExpanded(row, true);
        grid.setPicture(row, kPictureFolder);
        grid.setNumber(row, kSize, disorder.next());
        grid.setNumber(row, kPercent, disorder.next() % 100);
        grid.setNumber(row, kFiles, disorder.next() % 100'000);
        grid.setNumber(row, kFolders, disorder.next() % 10'000);
    }
}

void measurePreview(const PrintJob& job, const IconSource& icon, const DialogTexts& texts,
                    WindowEvents& events) {
    const double before = bench::residentBytes();
    const auto start = bench::Clock::now();
    PrintPreview preview(job, icon, texts, events, nullptr);
    preview.show();
    QApplication::processEvents();
    preview.repaint();
    bench::tell("first", bench::secondsSince(start));
    bench::tell("memory", (bench::residentBytes() - before) / (1 << 20));
    bench::tell("pages", preview.pages().count());
    const auto turn = bench::Clock::now();
    preview.findChild<QPushButton*>(QStringLiteral("last"))->click();
    QApplication::processEvents();
    bench::tell("last", bench::secondsSince(turn));
}

void measurePdf(const PrintJob& job, const IconSource& icon, const std::string& path) {
    const auto start = bench::Clock::now();
    const auto pages = layOut(job, icon);
    PdfFailure failure;
    if (writePdf(*pages, allOf(*pages), path, nullptr, failure) != PrintResult::kDone) std::exit(1);
    bench::tell("seconds", bench::secondsSince(start));
    bench::tell("pages", pages->count());
    bench::tell("bytes", static_cast<double>(std::filesystem::file_size(path)));
}

int run(bool preview, std::size_t rows, const std::string& path) {
    bench::Parts parts;
    const Services services = parts.services();
    WindowForm form(services, parts.windowServices());
    Grid report(kFolderCells);
    Options options;
    options.ColPercentVisible = options.ColFileVisible = options.ColFolderVisible = 1;
    Init_Tree(report, options, services.texts);
    fill(report, rows);
    PrintJob job = printedGrid(services, "Report", report, {});
    job.tree = true;
    IconStore icons(parts.modules);
    const IconSource icon = [&icons](int picture) { return icons.icon(picture); };
    const DialogTexts texts{};
    if (preview) {
        measurePreview(job, icon, texts, form);
    } else {
        measurePdf(job, icon, path);
    }
    bench::tell("peak", bench::peakMebibytes());
    return 0;
}

}  // namespace
}  // namespace hl

int main(int argc, char** argv) {
    if (argc != 4) return std::fputs("Usage: bench_print preview|pdf ROWS FILE\n", stderr), 2;
    QApplication application(argc, argv);
    return hl::run(std::strcmp(argv[1], "preview") == 0, std::strtoul(argv[2], nullptr, 10), argv[3]);
}
