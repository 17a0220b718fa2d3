// The output of pages: a PDF; a printer; what the user sees of it.
#include "platform/qt/print/print_output.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QPdfWriter>
#include <QPrintDialog>
#include <QPrintEngine>
#include <QPrinterInfo>
#include <QProgressDialog>
#include <algorithm>

#include "base/text.h"
#include "platform/qt/common/qt_convert.h"

namespace hl {

namespace {

constexpr int kProgressAfterMilliseconds = 400;

/// The toolkit does not tell why it made no whole document.
Error incomplete() {
    return {.text = "Input/output error"};
}

/// An incomplete file, as the toolkit writes to it. After the first failure it takes nothing more.
class FileDevice final : public QIODevice {
  public:
    explicit FileDevice(ReplacingFile& file) : file_(file) { open(QIODevice::WriteOnly); }
    bool isSequential() const override { return true; }
    const Result<>& state() const { return state_; }

  protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char* bytes, qint64 count) override {
        try {
            if (state_) state_ = file_.write({bytes, static_cast<std::size_t>(count)});
        } catch (...) {
            state_ = incomplete();
        }
        return state_ ? count : -1;
    }

  private:
    ReplacingFile& file_;
    Result<> state_;
};

PrintResult writePages(const PrintPages& pages, PageRange range, QPdfWriter& writer, const FileDevice& device,
                       const PageWatch& watch) {
    QPainter painter;
    if (!painter.begin(&writer)) return PrintResult::kFailed;
    for (int number = range.first; number <= range.last; ++number) {
        if (watch && !watch(number)) return PrintResult::kCancelled;
        if (number > range.first) writer.newPage();
        pages.paint(painter, number);
        if (!device.state()) return PrintResult::kFailed;
    }
    return painter.end() ? PrintResult::kDone : PrintResult::kFailed;
}

QPageLayout borderless(QPageLayout page) {
    page.setMode(QPageLayout::FullPageMode);
    page.setMargins({});
    return page;
}

}  // namespace

PageRange allOf(const PrintPages& pages) {
    return {0, pages.count() - 1};
}

PageRange wantedOf(const PrintPages& pages, const QPrinter& printer) {
    if (printer.printRange() != QPrinter::PageRange || printer.fromPage() <= 0) return allOf(pages);
    const int first = std::min(printer.fromPage(), pages.count()) - 1;
    return {first, std::clamp(printer.toPage(), first + 1, pages.count()) - 1};
}

// --- a PDF

PrintResult writePdf(const PrintPages& pages, PageRange range, const std::string& path,
                     const PageWatch& watch, PdfFailure& failure) {
    failure = {};
    const auto file = pages.job().files->replace(path);
    if (!file) return failure.error = file.error(), PrintResult::kFailed;
    FileDevice device(**file);
    PrintResult result = PrintResult::kFailed;
    {
        QPdfWriter writer(&device);
        writer.setResolution(kUnitsPerInch);
        writer.setPageLayout(borderless(pages.page()));
        writer.setTitle(shownName(pages.job().title));
        writer.setCreator(QApplication::applicationDisplayName());
        result = writePages(pages, range, writer, device, watch);
    }
    if (result == PrintResult::kCancelled) return result;
    Result<> written = device.state();
    if (written) written = result == PrintResult::kDone ? (*file)->commit() : incomplete();
    if (!written) failure = {written.error(), (*file)->leftBehind()};
    return written ? PrintResult::kDone : PrintResult::kFailed;
}

// --- a printer

namespace {

/// When it is destroyed, the toolkit sends what it has of a job, even after abort(). So the print service is
/// asked for pages that cannot exist, and refuses the job.
void drop(QPrinter& printer) {
    printer.abort();
    constexpr auto kServiceOptions = static_cast<QPrintEngine::PrintEnginePropertyKey>(0xfe00);
    QPrintEngine& engine = *printer.printEngine();
    const QStringList impossible{QStringLiteral("page-ranges"), QStringLiteral("2-1")};
    engine.setProperty(kServiceOptions, impossible + engine.property(kServiceOptions).toStringList());
}

}  // namespace

PrintResult printPages(const PrintPages& pages, QPrinter& printer, const PageWatch& watch) {
    const auto [first, last] = wantedOf(pages, printer);
    const int copies = printer.supportsMultipleCopies() ? 1 : std::max(1, printer.copyCount());
    const bool backwards = printer.pageOrder() == QPrinter::LastPageFirst;
    QPainter painter;
    if (!painter.begin(&printer)) return PrintResult::kFailed;
    const double scale = static_cast<double>(printer.resolution()) / kUnitsPerInch;
    painter.scale(scale, scale);
    const int each = last - first + 1;
    for (int i = 0; i < each * copies; ++i) {
        const int number = backwards ? last - i % each : first + i % each;
        if (watch && !watch(number)) return drop(printer), PrintResult::kCancelled;
        if (i > 0 && !printer.newPage()) return PrintResult::kFailed;
        pages.paint(painter, number);
    }
    return painter.end() ? PrintResult::kDone : PrintResult::kFailed;
}

// --- what the user sees of it

namespace {

/// Shows the progress of a job that takes long. Each copy begins anew.
class Progress {
  public:
    Progress(const PrintDesk& desk, const PrintPages& pages, PageRange range)
        : text_(qtText(pages.job().texts.writing)),
          count_(pages.count()),
          steps_(range.last - range.first + 1),
          dialog_({}, qtText(pages.job().texts.cancel), 0, steps_, desk.parent) {
        dialog_.setWindowTitle(desk.texts.name);
        dialog_.setWindowModality(Qt::WindowModal);
        dialog_.setMinimumDuration(kProgressAfterMilliseconds);
        dialog_.setAutoReset(false);
    }
    /// The toolkit handles events when the value is set.
    bool at(int page) {
        dialog_.setLabelText(text_.arg(page + 1).arg(count_));
        dialog_.setValue(done_++ % steps_);
        return !dialog_.wasCanceled();
    }
    PageWatch watch() {
        return [this](int page) { return at(page); };
    }

  private:
    QString text_;
    int count_, steps_, done_ = 0;
    QProgressDialog dialog_;
};

}  // namespace

bool writePdfShown(const PrintDesk& desk, const PrintPages& pages, PageRange range, const std::string& path) {
    PdfFailure failure;
    PrintResult result = PrintResult::kCancelled;
    {
        Progress progress(desk, pages, range);
        result = writePdf(pages, range, path, progress.watch(), failure);
    }
    if (result == PrintResult::kFailed)
        showMessage(desk.parent, desk.texts, MessageKind::kError,
                    pages.job().failure(path, failure.error, failure.rest));
    return result == PrintResult::kDone;
}

bool askAndWritePdf(const PrintDesk& desk, const PrintPages& pages) {
    const std::string home = QFile::encodeName(QDir::homePath()).toStdString();
    const std::string name = replaceAll(visible(pages.job().title), "/", "_") + ".pdf";
    const std::string path = askForSavePath(desk.parent, desk.texts, "PDF (*.pdf)|*.pdf", "pdf", home, name);
    return !path.empty() && writePdfShown(desk, pages, allOf(pages), path);
}

bool askAndPrint(const PrintDesk& desk, const PrintJob& job, const IconSource& icon,
                 const QPageLayout& page) {
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(shownName(job.title));
    printer.setPageLayout(page);
    QPrintDialog dialog(&printer, desk.parent);
    dialog.setOption(QAbstractPrintDialog::PrintPageRange);
    dropPictures(dialog);
    // The completer looks into files to find their types, and so would wait forever in /proc.
    for (auto* edit : dialog.findChildren<QLineEdit*>()) edit->setCompleter(nullptr);
    if (dialog.exec() != QDialog::Accepted) return false;
    printer.setFullPage(true);
    const auto pages = layOut(job, icon, printer.pageLayout());
    if (!printer.outputFileName().isEmpty())
        return writePdfShown(desk, *pages, wantedOf(*pages, printer),
                             QFile::encodeName(printer.outputFileName()).toStdString());
    PrintResult result = PrintResult::kCancelled;
    {
        Progress progress(desk, *pages, wantedOf(*pages, printer));
        result = printPages(*pages, printer, progress.watch());
    }
    // The toolkit does not report a print service that has ended meanwhile.
    if (result == PrintResult::kDone && QPrinterInfo::printerInfo(printer.printerName()).isNull())
        result = PrintResult::kFailed;
    if (result == PrintResult::kFailed)
        showMessage(desk.parent, desk.texts, MessageKind::kError,
                    job.failure(utf8(printer.printerName()), std::nullopt, {}));
    return result == PrintResult::kDone;
}

}  // namespace hl
