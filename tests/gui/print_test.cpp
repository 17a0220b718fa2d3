// Tests what is printed: pages, the PDF, and the preview.
#include <QPrintDialog>

#include "base/text.h"
#include "gui/recording_events.h"
#include "gui/window_fixture.h"
#include "platform/qt/print/print_columns.h"
#include "platform/qt/print/print_preview.h"

namespace hl::test {
namespace {

constexpr CellSpec kCells[] = {{"size", CellType::kSize}};

QString textOf(const std::string& path) {
    QProcess reader;
    reader.start(QStringLiteral("pdftotext"),
                 {QStringLiteral("-layout"), QString::fromStdString(path), QStringLiteral("-")});
    EXPECT_TRUE(reader.waitForFinished() && reader.exitCode() == 0)
        << reader.readAllStandardError().toStdString();
    return QString::fromUtf8(reader.readAllStandardOutput());
}

struct PrintTest : testing::Test {
    Grid grid{kCells};
    TempDir dir;
    LinuxFiles files;
    PrintJob job;
    DialogTexts texts{
        QStringLiteral("Harborlantern"), {}, {}, QStringLiteral("OK"), QStringLiteral("Cancel")};
    RecordingEvents told;
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
        job.failure = [](const std::string& name, const std::optional<Error>& error, const std::string&) {
            return name + ": " + std::to_string(error ? error->number : 0);
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
};

int occurrences(const QString& text, const char* part) {
    return static_cast<int>(text.count(QString::fromUtf8(part)));
}

/// Reads what a PDF contains.
struct PdfTest : PrintTest {
    void SetUp() override {
        if (QStandardPaths::findExecutable(QStringLiteral("pdftotext")).isEmpty())
            GTEST_SKIP() << "no pdftotext";
    }
    /// Returns the text of the PDF that all tests write.
    QString writtenText() {
        PdfFailure failure;
        EXPECT_EQ(write(failure), PrintResult::kDone);
        return textOf(path);
    }
    /// Expects "row0" and so on, `count` of them, once each.
    static void expectEach(const QString& text, const char* front, int count) {
        const QStringList words = text.simplified().split(QLatin1Char(' '));
        for (int i = 0; i < count; ++i)
            EXPECT_EQ(words.count(QLatin1String(front) + QString::number(i)), 1) << i;
    }
};

TEST_F(PdfTest, ARowIsOnOnePageAndTheTitlesAreOnEach) {
    addRows(200);
    const QString text = writtenText();
    const int count = pages()->count();
    EXPECT_TRUE(count >= 3 && count <= 5) << count;
    for (const char* part : {"Name", "Size", "A list", "\f"}) EXPECT_EQ(occurrences(text, part), count);
    for (int page = 1; page <= count; ++page)
        EXPECT_EQ(occurrences(text, qPrintable(QStringLiteral("Page %1 of %2").arg(page).arg(count))), 1);
    expectEach(text, "row", 200);
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
        std::string pages;
    } cases[] = {
        {{{0, 300}, {1, 700}}, "0:0+300 1:300+700 | "},
        {{{0, 300}, {2, 701}}, "0:0+300 | 0:0+299 2:299+701 | "},
        {{{0, 300}, {1, 600}, {2, 600}, {3, 90}}, "0:0+300 1:300+600 | 0:0+300 2:300+600 3:900+90 | "},
        {{{0, 5000}, {1, 100}}, "0:0+1000 | 0:0+400 1:400+100 | "},
        {{{0, 900}, {1, 5000}}, "0:0+900 | 0:0+200 1:200+800 | "},
    };
    for (const auto& each : cases) {
        std::string found;
        for (const auto& page : columnsOfPages(each.wanted, 1000)) {
            for (const auto& [column, left, width] : page)
                found +=
                    std::to_string(column) + ":" + std::to_string(left) + "+" + std::to_string(width) + " ";
            found += "| ";
        }
        EXPECT_EQ(found, each.pages);
    }
}

TEST_F(PrintTest, AWideListIsTurnedAcrossBeforeItRunsOver) {
    addRows(3);
    EXPECT_EQ(pages()->page().orientation(), QPageLayout::Portrait);
    grid.addRow(kNoRow, std::string(90, 'w'));
    EXPECT_EQ(pages()->page().orientation(), QPageLayout::Landscape);
    EXPECT_EQ(pages()->across(), 1);
    grid.addRow(kNoRow, std::string(500, 'w'));
    EXPECT_EQ(pages()->page().orientation(), QPageLayout::Portrait) << "it would not help";
    EXPECT_EQ(pages()->count(), 2);
}

TEST_F(PdfTest, NumbersAreNeverCutAndTheLongestTextDecides) {
    // One row among many is so wide; no sample would find it.
    for (int i = 0; i < 5000; ++i) {
        const Row row = grid.addRow(kNoRow, i == 3777 ? "a rather long name among short ones" : "r");
        grid.setNumber(row, 0, i == 2345 ? 123456789012.0 : i);
    }
    job.cellText = [this](std::size_t column, Row row) {
        return column == 0 ? std::string(grid.text(row))
                           : std::to_string(static_cast<std::int64_t>(grid.number(row, 0)));
    };
    const QString text = writtenText();
    EXPECT_EQ(occurrences(text, "a rather long name among short ones"), 1);
    EXPECT_EQ(occurrences(text, "123456789012"), 1);
    EXPECT_EQ(occurrences(text, "…"), 0);
}

TEST_F(PdfTest, TextInAPdfIsTextInEveryScript) {
    std::vector<const char*> names = {"Большие файлы", "Größe", "Ελληνικά", "office file flow", "中文文件夹"};
    for (const char* name : names) grid.addRow(kNoRow, name);
    if (QFontDatabase::families(QFontDatabase::SimplifiedChinese).isEmpty()) names.pop_back();
    grid.addRow(kNoRow, "bad\xFFname");
    names.push_back("bad\uFFFDname");
    const QString text = writtenText();
    for (const char* name : names)
        EXPECT_EQ(occurrences(text, name), 1) << name << "\n" << text.toStdString();
}

TEST_F(PdfTest, AReportIsPrintedAsLinesThatAreBrokenWhereTheyAreTooLong) {
    job.grid = nullptr;
    for (int i = 0; i < 150; ++i) job.text += "line" + std::to_string(i) + "\r\n";
    job.text += std::string(300, 'x') + "end";
    const QString text = writtenText();
    EXPECT_GE(pages()->count(), 2);
    expectEach(text, "line", 150);
    EXPECT_EQ(occurrences(text, "x"), 300);
}

TEST_F(PrintTest, AnOlderPdfStaysWhereTheNewOneIsCancelledOrCannotBeWritten) {
    addRows(200);
    writeFile(path, "older");
    PdfFailure failure;
    EXPECT_EQ(write(failure, [](int page) { return page < 1; }), PrintResult::kCancelled);
    EXPECT_EQ(contentOf(path), "older");
    EXPECT_EQ(std::distance(fs::directory_iterator(dir.path()), {}), 1) << "nothing is left behind";
    EXPECT_EQ(write(failure), PrintResult::kDone);
    EXPECT_EQ(contentOf(path).substr(0, 5), "%PDF-");
    path = "/dev/full";
    EXPECT_EQ(write(failure), PrintResult::kFailed);
    EXPECT_TRUE(failure.error && failure.error->number == ENOSPC);
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
    job.cellText = [&, text = job.cellText](std::size_t column, Row row) {
        asked.insert(row);
        return text(column, row);
    };
    show();
    asked.clear();
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
    const auto expectPage = [&](int page) {
        EXPECT_EQ(preview->page(), page);
        EXPECT_EQ(find<QPushButton>("first")->isEnabled(), page > 0);
        EXPECT_EQ(find<QPushButton>("next")->isEnabled(), page < last);
        EXPECT_EQ(find<QSpinBox>("number")->text(),
                  QStringLiteral("Page %1 of %2").arg(page + 1).arg(last + 1));
    };
    for (const auto& [button, page] : {std::pair("next", 1), std::pair("last", last),
                                       std::pair("previous", last - 1), std::pair("first", 0)}) {
        press(button);
        expectPage(page);
    }
    auto* area = preview->findChild<QScrollArea*>();
    for (const auto& [code, page] :
         {std::pair(Qt::Key_PageDown, 1), std::pair(Qt::Key_End, last), std::pair(Qt::Key_PageDown, last),
          std::pair(Qt::Key_PageUp, last - 1), std::pair(Qt::Key_Home, 0)}) {
        QTest::keyClick(area, code);
        expectPage(page);
    }
    find<QSpinBox>("number")->setValue(2);
    EXPECT_EQ(preview->page(), 1);
    for (const char* other : {"view", "next"}) {
        for (const Qt::Key code : {Qt::Key_Home, Qt::Key_PageDown})
            QTest::keyClick(find<QWidget>(other), code);
        EXPECT_EQ(preview->page(), 1) << other;
    }
    EXPECT_EQ(find<QComboBox>("view")->currentIndex(), 0);
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
    Answers answers;
    answers.add([&](QDialog& dialog) { choosePath(dialog, path); });
    press("savePdf");
    EXPECT_EQ(contentOf(path).substr(0, 5), "%PDF-");
    const std::string nowhere = dir.path() + "/folder.pdf";
    fs::create_directory(nowhere);
    QString said;
    answers.add([&](QDialog& dialog) {
        said = dynamic_cast<QMessageBox&>(dialog).text();
        dialog.accept();
    });
    EXPECT_FALSE(writePdfShown({preview.get(), texts}, preview->pages(), {0, 0}, nowhere));
    EXPECT_TRUE(said.startsWith(QString::fromStdString(nowhere))) << said.toStdString();
}

TEST_F(PdfTest, TheDialogOffersAPdfWhereThereIsNoPrinterAndPrintsThePagesWanted) {
    addRows(200);
    Answers answers;
    answers.add([&](QDialog& dialog) {
        auto* printers = dialog.findChild<QComboBox*>(QStringLiteral("printers"));
        printers->setCurrentIndex(printers->count() - 1);
        dialog.findChild<QLineEdit*>(QStringLiteral("filename"))->setText(QString::fromStdString(path));
        dialog.findChild<QRadioButton*>(QStringLiteral("printRange"))->setChecked(true);
        dialog.findChild<QSpinBox*>(QStringLiteral("from"))->setValue(2);
        dialog.findChild<QSpinBox*>(QStringLiteral("to"))->setValue(3);
        dynamic_cast<QPrintDialog&>(dialog).accept();
    });
    EXPECT_TRUE(askAndPrint({nullptr, texts}, job, nullptr, pages()->page()));
    EXPECT_EQ(occurrences(textOf(path), "\f"), 2);
    EXPECT_EQ(occurrences(textOf(path), "Page 3 of"), 1);
}

using WindowPrints = WindowTest;

TEST_F(WindowPrints, TheReportAsIsAskedForAndAListAtOnce) {
    smallTree();
    Session s(home.path(), at("src"));
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
        pressIn(dialog, "Alle Ordnerebenen");
        pressIn(dialog, "OK");
    });
    for (const Command entry : {Command::kReportPrint, Command::kFilesPrint}) {
        s.clickRow("a");
        s.answers.add(look);
        s.click(entry);
    }
    EXPECT_EQ(shown, (std::vector<std::string>{"Ordnerliste", "Dateiliste"}));
}

}  // namespace
}  // namespace hl::test
