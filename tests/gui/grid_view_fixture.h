// A grid in a view on screen, driven by real mouse and key events. main() has made a QApplication.
#pragma once

#include "gui/gestures.h"
#include "gui/recording_events.h"

namespace hl {

inline constexpr CellSpec kSpecs[] = {{"size", CellType::kSize}, {"more", CellType::kReal}};
using LogLines = std::vector<std::string>;
using test::doubleClick;
using test::dragBorder;

/// Records what the view tells.
struct Told : test::RecordingEvents {
    LogLines log;
    const Grid* grid = nullptr;
    std::string name(Row row) const { return row == kNoRow ? "-" : std::string(grid->text(row)); }

    void MouseUp(Row row, MouseButton button, bool shift, Point) override {
        log.push_back("up " + name(row) + " " + std::to_string(static_cast<int>(button)) +
                      (shift ? "s" : ""));
    }
    void DblClick() override { log.push_back("double"); }
    void KeyUp(int key) override { log.push_back("key " + std::to_string(key)); }
    void deletePressed(bool forGood) override { log.push_back(forGood ? "delete for good" : "delete"); }
    void GridColumnTitleClick(std::size_t column) override {
        log.push_back("title " + std::to_string(column));
    }
    void columnSizing() override { log.push_back("sizing"); }
    void expandedByUser(Row row) override { log.push_back("fold " + name(row)); }
    void windowFault(const char* where) override { log.push_back(std::string("fault ") + where); }
};

struct GridViewTest : testing::Test {
    Grid grid{kSpecs};
    Told told;
    std::set<Row> asked;
    std::size_t questions = 0;
    bool broken = false;
    std::unique_ptr<GridView> view;

    GridViewTest() {
        told.grid = &grid;
        grid.setColumns({{.title = "Name", .key = {}, .mask = {}},
                         {.title = "Size", .key = "size", .mask = {}, .alignment = Alignment::kRight},
                         {.title = "Files", .key = "size", .mask = {}, .alignment = Alignment::kRight}});
    }
    void show(bool tree = true) {
        const auto text = [this](GridId, std::size_t column, Row row) {
            if (broken) throw std::runtime_error("broken");
            asked.insert(row);
            ++questions;
            return column == 0 ? std::string(grid.text(row)) : std::to_string(grid.number(row, 0));
        };
        view = std::make_unique<GridView>(grid, GridId::kReport, tree, text, told);
        view->setEvents(&told);
        view->resize(600, 300);
        view->show();
        view->setFocus();
        QTest::qWait(0);
    }
    /// Waits until the view has applied what the grid told, and painted that.
    static void settle() {
        for (int i = 0; i < 3; ++i) QTest::qWait(0);
    }
    /// Adds `count` roots "r0", "r1", ...
    void addRoots(std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) grid.addRow(kNoRow, "r" + std::to_string(i));
    }
    void showRoots(std::size_t count, bool tree = true) { addRoots(count), show(tree); }
    void showTree() { addTree(), show(); }
    /// Adds a(aa(aaa) ab) b(ba) c, with `a` unfolded.
    void addTree() {
        const Row a = grid.addRow(kNoRow, "a");
        grid.addRow(grid.addRow(a, "aa"), "aaa");
        grid.addRow(a, "ab");
        grid.addRow(grid.addRow(kNoRow, "b"), "ba");
        grid.addRow(kNoRow, "c");
        grid.setExpanded(a, true);
    }
    Row row(std::string_view text) const {
        for (std::size_t i = 0; i < grid.rowCount(); ++i)
            if (grid.text(grid.rowAt(i)) == text) return grid.rowAt(i);
        return kNoRow;
    }
    std::string picked() const {
        std::string all;
        for (const Row each : grid.selectedRows()) all += std::string(grid.text(each)) + " ";
        return all + "@" + told.name(grid.currentRow());
    }
    std::string shown() {
        view->sync();
        std::string all;
        for (std::size_t i = 0; i < view->rows().count(); ++i)
            all += std::string(grid.text(view->rows().at(i))) + " ";
        return all;
    }
    QPoint at(std::string_view text, int x = 150) {
        view->sync();
        const auto index = view->rows().find(row(text));
        return {x, index ? view->rowRect(*index).center().y() : view->viewport()->height() - 3};
    }
    void click(std::string_view text, Qt::KeyboardModifiers keys = {},
               Qt::MouseButton button = Qt::LeftButton) {
        QTest::mouseClick(view->viewport(), button, keys, at(text));
    }
    void key(int code, Qt::KeyboardModifiers keys = {}) { QTest::keyClick(view.get(), Qt::Key(code), keys); }
    QPoint branchOf(std::string_view text) {
        view->sync();
        return test::branchAt(*view, *view->rows().find(row(text)));
    }
    /// Returns the place of the border behind a column, in the title row.
    QPoint border(int column) {
        const QHeaderView* header = view->horizontalHeader();
        return {header->sectionViewportPosition(column) + header->sectionSize(column) - 1, 5};
    }
    LogLines takeLog() { return std::exchange(told.log, {}); }
};

}  // namespace hl
