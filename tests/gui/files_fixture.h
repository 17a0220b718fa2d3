// A window on files of the disk, for tests of deleting, recycling, renaming and the menus.
#pragma once

#include <numeric>

#include "gui/lists_fixture.h"
#include "scan/rollup.h"

namespace hl::test {

struct FilesTest : ListsTest {
    /// The files a, b, ... below src, src/sub and src/sub/deep have the sizes 100, 200, ...
    FilesTest() {
        for (const char* path : {"src/sub/deep", "src/other"}) folder(path);
        int size = 0;
        for (const char* path :
             {"src/a.txt", "src/b.txt", "src/c.txt", "src/sub/d.txt", "src/sub/deep/e.txt"})
            file(path, size += 100);
    }
    void start() { session_.emplace(home.path(), at("src")); }
    void startUnfolded() {
        start();
        s().click(Command::kReportUnfoldAll);
    }
    /// Starts with the list of src's files, sorted by name.
    GridView& startWithList() {
        start();
        GridView& list = session_->open(kFileList);
        session_->sortByName(list);
        return list;
    }
    /// Selects this many rows from the top.
    static void selectFirst(GridView& list, std::size_t count) {
        for (std::size_t i = 0; i < count; ++i)
            ListSession::clickOn(list, i, i > 0 ? Qt::ControlModifier : Qt::NoModifier);
    }
    void rename(GridView& view, const QString& name) {
        s().key(view, Qt::Key_F2);
        auto* box = view.viewport()->findChild<QLineEdit*>();
        ASSERT_NE(box, nullptr);
        box->setText(name);
        s().key(*box, Qt::Key_Return);
    }
    void deleteInList(Command command = Command::kFilesDelete) { session_->click(command); }
    /// Expects what a fresh scan shows of these sources, in their order; sources that are gone have no row.
    void expectNumbersOfAFreshScan(const Names& sources = {}) {
        const Names now = facts(s());
        s().execute(Command::kReportUnfoldAll);
        const std::string rows = s().rows();
        Session fresh(home.path());
        fresh.start();
        for (const std::string& source : sources)
            if (fs::exists(source)) fresh.scan(source);
        fresh.scan(at("src"));
        EXPECT_EQ(now, facts(fresh));
        fresh.execute(Command::kReportUnfoldAll);
        if (!sources.empty()) {
            EXPECT_EQ(rows, fresh.rows());
        }
    }
    /// Expects the report that a fresh scan shows. The three lists only lose rows.
    void expectReportOfAFreshScan(const Names& others = {}) {
        const Names now = reportFacts(s());
        Session fresh(home.path());
        fresh.start();
        for (const std::string& source : others) fresh.scan(source);
        fresh.scan(at("src"));
        EXPECT_EQ(now, reportFacts(fresh));
    }
    /// Returns null if the button does not show.
    QPushButton* statusButton(Command command) {
        auto* button = s().frame().findChild<QPushButton*>(QStringLiteral("status.%1").arg(idOf(command)));
        return button != nullptr && button->isVisible() ? button : nullptr;
    }
    Session& s() { return *session_; }
    bool there(const std::string& path) const { return fs::exists(fs::symlink_status(at(path))); }
    std::string protocol() const { return contentOf(home.path() + "/Harborlantern.log"); }
    /// Presses the button in the dialog that opens next. `text` receives the dialog's text.
    void answer(const char* button, std::string* text = nullptr) {
        s().answers.add([=](QDialog& dialog) {
            for (const QLabel* label : dialog.findChildren<QLabel*>())
                if (text != nullptr) *text += label->text().toStdString();
            pressIn(dialog, button);
        });
    }
    /// Returns every cell that a scan writes of the report.
    static Names reportFacts(Session& s) {
        Names all;
        const Grid& report = s.grid();
        for (Row row = report.firstRoot(); row != kNoRow; row = report.tree().following(row))
            all.push_back(
                Report_GetFullpathOfNode(report, row, false, kPosixPaths) + " " +
                std::to_string(report.picture(row)) + std::string(report.rowNote(row)) + " " +
                std::to_string(report.mark(row)) + " " + std::to_string(report.unshown(row).folders) + "+" +
                std::to_string(report.unshown(row).files) + cellsOf(report, row) + statisticsOf(s, row));
        const Names kept = largestFiles(s);
        all.insert(all.end(), kept.begin(), kept.end());
        std::sort(all.begin(), all.end());
        return all;
    }
    /// Returns the files that are kept for the map, with their facts.
    static Names largestFiles(Session& s) {
        Names all;
        const Grid& report = s.grid();
        for (Row root = report.firstRoot(); root != kNoRow; root = report.nextSibling(root)) {
            LargestFiles* kept = s.form().form().session.largest.of(report, root);
            for (std::size_t i = 0; kept != nullptr && i < kept->count(); ++i) {
                const LargestFile& file = kept->at(i);
                all.push_back(Report_GetFullpathOfNode(report, file.folder, true, kPosixPaths) +
                              std::string(kept->nameOf(file)) + " " + std::to_string(file.size) + " " +
                              std::to_string(file.blocks) + " " + std::to_string(file.written) + " " +
                              std::to_string(file.owner));
            }
        }
        return all;
    }
    /// Returns the statistics of a row of the report. A file that was written since the first of two scans
    /// is of another age in the second.
    static std::string statisticsOf(Session& s, Row row) {
        auto sums = s.form().form().session.statistics.of(s.grid(), row);
        if (!sums) return {};
        sums->ages[0].add(std::exchange(sums->ages[kInTheFuture], {}));
        Names groups;
        const auto add = [&](const std::string& name, const FileSums& of) {
            groups.push_back(" " + name + ":" + std::to_string(of.files) + "," + std::to_string(of.bytes) +
                             "," + std::to_string(of.blocks));
        };
        for (const EndingSums& each : sums->endings) add("." + each.ending, each.sums);
        for (const OwnerSums& each : sums->owners) add("#" + std::to_string(each.owner), each.sums);
        for (std::size_t i = 0; i < kAgeClasses; ++i) add(std::to_string(i), sums->ages[i]);
        EXPECT_EQ(sums->all.bytes, s.grid().number(row, kSize));
        EXPECT_EQ(sums->all.files, s.grid().number(row, kFiles));
        EXPECT_EQ(sums->all.blocks * kBlockBytes, s.grid().number(row, kDisk));
        std::sort(groups.begin(), groups.end());
        return std::accumulate(groups.begin(), groups.end(), std::string());
    }
    /// Returns every cell that a scan writes, of the report and of the three lists.
    static Names facts(Session& s) {
        Names all = reportFacts(s);
        for (const GridId id : {GridId::kTop, GridId::kHardlinks, GridId::kJunctions}) {
            const Grid& list = s.window().grid(id).grid();
            const auto begin = static_cast<std::ptrdiff_t>(all.size());
            for (Row row = list.firstRoot(); row != kNoRow; row = list.nextSibling(row))
                // A file that lost its other names keeps its row here.
                if (id != GridId::kHardlinks || list.number(row, kFileLinks) > 1)
                    all.push_back(std::string(list.text(row)) + cellsOf(list, row));
            std::sort(all.begin() + begin, all.end());
        }
        all.push_back(s.form().parts().bars[static_cast<std::size_t>(BarId::kTop)]->find(0)->caption);
        return all;
    }
    static std::string cellsOf(const Grid& grid, Row row) {
        std::string line;
        for (std::size_t i = 0; i < grid.cells().count(); ++i) {
            const auto cell = static_cast<CellId>(i);
            line += grid.cells().isText(cell) ? " " + std::string(grid.cellText(row, cell))
                                              : " " + std::to_string(grid.number(row, cell));
        }
        return line;
    }
    static QPoint centerOf(GridView& view, Row row) {
        view.sync();
        return {60, view.rowRect(*view.rows().find(row)).center().y()};
    }
    void click(GridView& view, Row row, Qt::MouseButton button, Qt::KeyboardModifiers keys = {}) {
        QTest::mouseClick(view.viewport(), button, keys, centerOf(view, row));
        Session::settle();
    }
    void rightClick(GridView& view, Row row) { click(view, row, Qt::RightButton); }
    /// Selects or deselects a row of the report.
    void toggleRow(const std::string& name) {
        click(s().view(), s().row(name), Qt::LeftButton, Qt::ControlModifier);
    }
    /// Chooses an entry in the menu of a row of the report.
    void chooseInMenu(const std::string& name, const char* entry) {
        const MenuAnswer menu(entry);
        rightClick(s().view(), s().row(name));
    }

    std::optional<ListSession> session_;
};

}  // namespace hl::test
