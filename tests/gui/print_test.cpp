// What is printed: pages, the PDF, and the preview.
#include <QFontDatabase>
#include <QMessageBox>
#include <QPrintDialog>
#include <QProcess>
#include <QRadioButton>
#include <QSpinBox>

#include "base/text.h"
#include "gui/recording_events.h"
#include "gui/window_fixture.h"
#include "platform/qt/print_columns.h"
#include "platform/qt/print_preview.h"

namespace hl {
namespace {

constexpr CellSpec kCells[] = {{"size", CellType::kSize}};

/// Without the program that reads a PDF there is nothing to be said of what is in one.
std::optional<QString> textOf(const std::string& path) {
    QProcess reader;
    reader.start(QStringLiteral("pdftotext"),
                 {QStringLiteral("-layout"), QString::fromStdString(path), QStringLiteral("-")});
    const bool ended = reader.waitForFinished();
    if (reader.error() == QProcess::FailedToStart) return std::nullopt;
    EXPECT_TRUE(ended && reader.exitCode() == 0) << reader.readAllStandardError().toStdString();
    return QString::fromUtf8(reader.readAllStandardOutput());
}

struct PrintTest : testing::Test {
    Grid grid{kCells};
    test::TempDir dir;
    LinuxFiles files;
    PrintJob job;
    DialogTexts texts{
        QStringLiteral("Harborlantern"), {}, {}, QStringLiteral("OK"), QStringLiteral("Cancel")};
    test::RecordingEvents told;
    std::string path = dir.path() + "/out.pdf";

    PrintTest() {
        grid.setColumns({{.title = "Name", .key = {}, .mask = {}},
                         {.title = "Size", .key = "size", .mask = {}, .alignment = Alignment::kRight}});
        job.title = "A list";
        job.grid = &grid;
        job.files = &files;
        job.texts.pageOf = "Page %1 of %2";
        job.texts.writing = "%1 %2";
        job.cellText = [this](std::size_t column, Row row) {
            return column == 0 ? visible(grid.text(row)) : std::to_string(row);
        };
        job.failure = [](const std::string& name, int error, const std::string&) {
            return name + ": " + std::to_string(error);
        };
    }
    void addRows(int count) {
        for (int i = 0; i < count; ++i) grid.addRow(kNoRow, "row" + std::to_string(i));
    }
    std::unique_ptr<PrintPages> pages() { return layOut(job, nullptr); }
    PrintResult write(PdfFailure& failure, const PageWatch& watch = nullptr) {
        const auto written = pages();
        return writePdf(*written, allOf(*written), path, watch, failure);
    }
    /// What can be read in the PDF that all is written to.
    std::optional<QString> writtenText() {
        PdfFailure failure;
        EXPECT_EQ(write(failure), PrintResult::kDone);
        return textOf(path);
    }
};

int occurrences(const QString& text, const char* part) {
    return static_cast<int>(text.count(QString::fromUtf8(part)));
}

TEST_F(PrintTest, ARowIsOnOnePageAndTheTitlesAreOnEach) {
    addRows(200);
    const auto text = writtenText();
    if (!text) GTEST_SKIP() << "no pdftotext";
    const int count = pages()->count();
    EXPECT_GE(count, 3);
    EXPECT_LE(count, 5);
    for (const char* part : {"Name", "Size", "A list", "\f"}) EXPECT_EQ(occurrences(*text, part), count);
    for (int page = 1; page <= count; ++page)
        EXPECT_EQ(occurrences(*text, qPrintable(QStringLiteral("Page %1 of %2").arg(page).arg(count))), 1);
    const QStringList words = text->simplified().split(QLatin1Char(' '));
    for (int i = 0; i < 200; ++i) EXPECT_EQ(words.count(QStringLiteral("row%1").arg(i)), 1) << i;
}

TEST_F(PrintTest, ZoomMarginsAndFoldingDecideHowManyPagesThereAre) {
    addRows(200);
    const int usual = pages()->count();
    job.zoom = 50;
    EXPECT_LT(pages()->count(), usual);
    job.zoom = 200;
    EXPECT_GE(pages()->count(), 2 * usual - 1);
    job.zoom = 100;
    job.margins.top = job.margins.bottom = 1000;
    EXPECT_GE(pages()->count(), 2 * usual);
    grid.clear();
    const Row top = grid.addRow(kNoRow, "top");
    for (int i = 0; i < 200; ++i) grid.addRow(top, "below");
    EXPECT_EQ(pages()->count(), 1) << "what is folded is not printed";
    for (const int zoom : {-5, 0, std::numeric_limits<int>::max()}) {
        job.zoom = zoom;
        EXPECT_GE(pages()->count(), 1) << zoom;
    }
}

TEST_F(PrintTest, ColumnsThatHaveNoRoomGoToFurtherPagesBesideTheFirst) {
    const struct {
        std::vector<WantedColumn> wanted;
        std::vector<std::string> pages;
    } cases[] = {
        {{{0, 300}, {1, 700}}, {"0:0+300 1:300+700"}},
        {{{0, 300}, {2, 701}}, {"0:0+300", "0:0+299 2:299+701"}},
        {{{0, 300}, {1, 600}, {2, 600}, {3, 90}}, {"0:0+300 1:300+600", "0:0+300 2:300+600 3:900+90"}},
        {{{0, 5000}, {1, 100}}, {"0:0+1000", "0:0+400 1:400+100"}},
        {{{0, 900}, {1, 5000}}, {"0:0+900", "0:0+200 1:200+800"}},
    };
    for (const auto& each : cases) {
        std::vector<std::string> found;
        for (const auto& page : columnsOfPages(each.wanted, 1000)) {
            std::string line;
            for (const PaintedColumn& column : page)
                line += (line.empty() ? "" : " ") + std::to_string(column.column) + ":" +
                        std::to_string(column.left) + "+" + std::to_string(column.width);
            found.push_back(line);
        }
        EXPECT_EQ(found, each.pages);
    }
}

TEST_F(PrintTest, AWideListIsTurnedAcrossBeforeItRunsOver) {
    addRows(3);
    EXPECT_EQ(pages()->page().orientation(), QPageLayout::Portrait);
    grid.addRow(kNoRow, std::string(90, 'w'));
    const auto turned = pages();
    EXPECT_EQ(turned->page().orientation(), QPageLayout::Landscape);
    EXPECT_EQ(turned->across(), 1);
    grid.addRow(kNoRow, std::string(500, 'w'));
    const auto over = pages();
    EXPECT_EQ(over->page().orientation(), QPageLayout::Portrait) << "it would not help";
    EXPECT_EQ(over->count(), 2);
}

TEST_F(PrintTest, NumbersAreNeverCutAndTheLongestTextDecides) {
    // One row among many, where no sample would find it.
    for (int i = 0; i < 5000; ++i) {
        const Row row = grid.addRow(kNoRow, i == 3777 ? "a rather long name among short ones" : "r");
        grid.setNumber(row, 0, i == 2345 ? 123456789012.0 : i);
    }
    job.cellText = [this](std::size_t column, Row row) {
        return column == 0 ? std::string(grid.text(row))
                           : std::to_string(static_cast<std::int64_t>(grid.number(row, 0)));
    };
    const auto text = writtenText();
    if (!text) GTEST_SKIP() << "no pdftotext";
    EXPECT_TRUE(text->contains(QStringLiteral("a rather long name among short ones")));
    EXPECT_TRUE(text->contains(QStringLiteral("123456789012")));
    EXPECT_FALSE(text->contains(QChar(0x2026)));
}

TEST_F(PrintTest, TextInAPdfIsTextInEveryScript) {
    const char* names[] = {"Большие файлы", "Größe", "Ελληνικά", "中文文件夹", "office file flow"};
    for (const char* name : names) grid.addRow(kNoRow, name);
    grid.addRow(kNoRow, "bad\xFFname");
    const auto text = writtenText();
    if (!text) GTEST_SKIP() << "no pdftotext";
    const bool chinese = !QFontDatabase::families(QFontDatabase::SimplifiedChinese).isEmpty();
    for (const char* name : names) {
        if (!chinese && name == names[3]) continue;
        EXPECT_EQ(occurrences(*text, name), 1) << name << "\n" << text->toStdString();
    }
    EXPECT_TRUE(text->contains(QStringLiteral("bad\uFFFDname"))) << text->toStdString();
}

TEST_F(PrintTest, AReportIsPrintedAsLinesThatAreBrokenWhereTheyAreTooLong) {
    job.grid = nullptr;
    for (int i = 0; i < 150; ++i) job.text += "line" + std::to_string(i) + "\r\n";
    job.text += std::string(300, 'x') + "end";
    const auto text = writtenText();
    EXPECT_GE(pages()->count(), 2);
    if (!text) GTEST_SKIP() << "no pdftotext";
    const QStringList words = text->simplified().split(QLatin1Char(' '));
    for (int i = 0; i < 150; ++i) EXPECT_EQ(words.count(QStringLiteral("line%1").arg(i)), 1) << i;
    EXPECT_EQ(text->count(QLatin1Char('x')), 300);
}

TEST_F(PrintTest, AnOlderPdfStaysWhereTheNewOneIsCancelledOrCannotBeWritten) {
    addRows(200);
    test::writeFile(path, "older");
    PdfFailure failure;
    EXPECT_EQ(write(failure, [](int page) { return page < 1; }), PrintResult::kCancelled);
    EXPECT_EQ(test::contentOf(path), "older");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path()), {}), 1)
        << "nothing is left behind";
    EXPECT_EQ(write(failure), PrintResult::kDone);
    EXPECT_EQ(test::contentOf(path).substr(0, 5), "%PDF-");
    path = "/dev/full";
    EXPECT_EQ(write(failure), PrintResult::kFailed);
    EXPECT_EQ(failure.error, ENOSPC);
}

// --- the preview

struct PreviewTest : PrintTest {
    std::unique_ptr<PrintPreview> preview;
    void show() {
        preview = std::make_unique<PrintPreview>(job, nullptr, texts, told, nullptr);
        preview->show();
    }
    template <class Widget>
    Widget* find(const char* name) {
        return preview->findChild<Widget*>(QLatin1String(name));
    }
    void press(const char* name) { find<QPushButton>(name)->click(); }
};

TEST_F(PreviewTest, OnlyThePageThatShowsIsLookedAt) {
    std::set<Row> asked;
    addRows(20000);
    const auto text = job.cellText;
    bool painting = false;
    job.cellText = [&](std::size_t column, Row row) {
        if (painting) asked.insert(row);
        return text(column, row);
    };
    show();
    painting = true;
    press("last");
    QApplication::processEvents();
    ASSERT_FALSE(asked.empty());
    EXPECT_EQ(*asked.rbegin(), 19999U);
    EXPECT_GT(*asked.begin(), 19900U);
}

TEST_F(PreviewTest, ButtonsAndKeysTurnThePages) {
    addRows(200);
    show();
    const int last = preview->pages().count() - 1;
    auto* area = preview->findChild<QScrollArea*>();
    const std::tuple<const char*, Qt::Key, int> steps[] = {{"next", {}, 1},
                                                           {"last", {}, last},
                                                           {"previous", {}, last - 1},
                                                           {"first", {}, 0},
                                                           {"", Qt::Key_PageDown, 1},
                                                           {"", Qt::Key_End, last},
                                                           {"", Qt::Key_PageDown, last},
                                                           {"", Qt::Key_PageUp, last - 1},
                                                           {"", Qt::Key_Home, 0}};
    for (const auto& [button, key, page] : steps) {
        *button != 0 ? press(button) : QTest::keyClick(area, key);
        EXPECT_EQ(preview->page(), page);
        EXPECT_EQ(find<QPushButton>("first")->isEnabled(), page > 0);
        EXPECT_EQ(find<QPushButton>("next")->isEnabled(), page < last);
        EXPECT_EQ(find<QSpinBox>("number")->text(),
                  QStringLiteral("Page %1 of %2").arg(page + 1).arg(last + 1));
    }
    find<QSpinBox>("number")->setValue(2);
    EXPECT_EQ(preview->page(), 1);
    auto* view = find<QComboBox>("view");
    for (QWidget* other : {static_cast<QWidget*>(view), static_cast<QWidget*>(find<QPushButton>("next"))}) {
        QTest::keyClick(other, Qt::Key_Home);
        QTest::keyClick(other, Qt::Key_PageDown);
        EXPECT_EQ(preview->page(), 1) << other->objectName().toStdString();
    }
    EXPECT_EQ(view->currentIndex(), 0);
}

TEST_F(PreviewTest, ThePageCanBeTurnedAndShowsAsLargeAsIsChosen) {
    addRows(200);
    show();
    const int upright = preview->pages().count();
    emit find<QComboBox>("layout")->activated(1);
    EXPECT_GT(preview->pages().count(), upright);
    auto* sheet = preview->findChild<QScrollArea*>()->widget();
    const QSize whole = sheet->size();
    EXPECT_GT(whole.width(), whole.height());
    auto* view = find<QComboBox>("view");
    view->setCurrentIndex(view->count() - 1);
    emit view->activated(view->count() - 1);
    EXPECT_GT(sheet->width(), 2 * whole.width());
}

TEST_F(PreviewTest, WritesAPdfWhereTheDialogSaysAndTellsWhatFailed) {
    addRows(3);
    show();
    test::Answers answers;
    answers.add([&](QDialog& dialog) { test::choosePath(dialog, path); });
    press("savePdf");
    EXPECT_EQ(test::contentOf(path).substr(0, 5), "%PDF-");
    const std::string nowhere = dir.path() + "/folder.pdf";
    std::filesystem::create_directory(nowhere);
    QString said;
    answers.add([&](QDialog& dialog) {
        said = dynamic_cast<QMessageBox&>(dialog).text();
        dialog.accept();
    });
    EXPECT_FALSE(writePdfShown({preview.get(), texts}, preview->pages(), {0, 0}, nowhere));
    EXPECT_TRUE(said.startsWith(QString::fromStdString(nowhere))) << said.toStdString();
}

TEST_F(PrintTest, TheDialogOffersAPdfWhereThereIsNoPrinterAndPrintsThePagesWanted) {
    addRows(200);
    test::Answers answers;
    answers.add([&](QDialog& dialog) {
        auto* printers = dialog.findChild<QComboBox*>(QStringLiteral("printers"));
        printers->setCurrentIndex(printers->count() - 1);
        dialog.findChild<QLineEdit*>(QStringLiteral("filename"))->setText(QString::fromStdString(path));
        auto& asked = dynamic_cast<QPrintDialog&>(dialog);
        dialog.findChild<QRadioButton*>(QStringLiteral("printRange"))->setChecked(true);
        asked.findChild<QSpinBox*>(QStringLiteral("from"))->setValue(2);
        asked.findChild<QSpinBox*>(QStringLiteral("to"))->setValue(3);
        asked.accept();
    });
    EXPECT_TRUE(askAndPrint({nullptr, texts}, job, nullptr, pages()->page()));
    EXPECT_EQ(test::contentOf(path).substr(0, 5), "%PDF-");
    const auto text = textOf(path);
    if (!text) GTEST_SKIP() << "no pdftotext";
    EXPECT_EQ(occurrences(*text, "\f"), 2);
    EXPECT_EQ(occurrences(*text, "Page 3 of"), 1);
}

using WindowPrints = test::WindowTest;

TEST_F(WindowPrints, TheReportAsIsAskedForAndAListAtOnce) {
    smallTree();
    test::Session s(home.path());
    s.start();
    s.scan(at("src"));
    std::vector<std::string> shown;
    const auto look = [&](QDialog& dialog) {
        const PrintJob& job = dynamic_cast<PrintPreview&>(dialog).pages().job();
        shown.push_back(job.title);
        for (std::size_t i = 0; shown.size() == 1 && i < job.grid->columns().size(); ++i)
            EXPECT_EQ(job.grid->columns()[i].visible, s.grid().columns()[i].visible) << i;
        dialog.accept();
    };
    s.click(Command::kReportFilesColumn);
    s.answers.add([](QDialog& dialog) {
        test::pressIn(dialog, "Alle Ordnerebenen");
        test::pressIn(dialog, "OK");
    });
    for (const Command entry : {Command::kReportPrint, Command::kFilesPrint}) {
        s.clickRow("a");
        s.answers.add(look);
        s.click(entry);
    }
    EXPECT_EQ(shown, (std::vector<std::string>{"Ordnerliste", "Dateiliste"}));
}

}  // namespace
}  // namespace hl
