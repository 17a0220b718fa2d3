// A grid on screen: a table of its visible rows, with the hierarchy drawn in its first column. For the grid's
// thread.
//
// Nothing of a row is copied. The grid's notices are gathered and applied once in each turn of the event
// loop; until then, and while redraw is off, painting walks the grid from its top row, so it never shows a
// row that is gone. The grid stores what is selected, folded, current and on top; the toolkit's own selection
// stays empty. While redraw is off or the grid is disabled, keys and the mouse do nothing.
//
// The files are grid_view.cpp (changes, columns, what the window asks), grid_view_paint.cpp (drawing,
// tooltips) and grid_view_input.cpp (mouse and keys).
#pragma once

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QTableView>
#include <functional>
#include <memory>

#include "platform/qt/grid/grid_model.h"
#include "platform/qt/grid/grid_selection.h"
#include "platform/qt/grid/row_painter.h"

namespace hl {

class CellEditor;
class GridHeader;

class GridView : public QTableView, public GridObserver, public GridPane {
  public:
    /// Attaches itself to `grid`; `grid` and `events` must outlive it. `events` hears of errors alone: what
    /// the user does is reported to the object that setEvents names. `tree` means that rows have a hierarchy.
    GridView(Grid& grid, GridId id, bool tree, CellTextFunction cellText, WindowEvents& events,
             QWidget* parent = nullptr);
    ~GridView() override;

    void setIconSource(IconSource icon);
    /// The text that is shown while there are no rows.
    void setEmptyHint(std::function<QString()> hint) { emptyHint_ = std::move(hint); }
    /// What a screen reader says before a row's level, which counts from 1.
    void setLevelCaption(const QString& caption) { levelCaption_ = caption; }
    const QString& levelCaption() const { return levelCaption_; }

    // --- GridPane
    void setEvents(GridEvents* events) override { listener_ = events != nullptr ? events : &nobody_; }
    /// Fits a column to its title, the visible rows, a limited sample from the top and the root rows.
    /// `margin` is in twentieths of a point, 15 to a pixel. In a list, one column of texts leaves most of the
    /// width to the others; in a hierarchy, the names leave the others their widths.
    void autosizeColumn(std::size_t column, int margin) override;
    int widthBesideColumns() override;
    int innerWidth() override { return contentsRect().width(); }
    /// Returns the height of the title row, all visible rows, the frame, and the scroll bar below, for which
    /// there is always room, because columns may need it at any time.
    int heightOfRows() override;
    std::optional<RowRange> visibleRows() override;
    std::size_t columnAt(Point at) override;
    void scrollIntoView(Row row) override;
    void editCell(Row row) override;
    void refresh() override;
    void focus() override { setFocus(Qt::OtherFocusReason); }
    /// Returns the font that was set, or, if none was, one with the size that is shown.
    GridFont gridFont() const override;
    /// Sets the font; if no font of that name is installed, the application's own is used.
    void setGridFont(const GridFont& font) override;
    /// `point` is in coordinates of the viewport; returns kNoRow outside of all rows.
    Row rowAt(const QPoint& point);

    // --- for assistive tools
    const Grid& grid() const { return grid_; }
    GridId id() const { return id_; }
    bool isTree() const { return tree_; }
    WindowEvents& events() const { return events_; }
    GridEvents& listener() const { return *listener_; }
    const VisibleRows& rows() const { return rows_; }
    QString cellText(std::size_t column, Row row) const;
    /// Applies what the grid told. Returns false while redraw is off: rows() may then be out of date.
    bool sync();
    /// Tells whether sync() would do nothing, and so would destroy no object of an assistive tool.
    bool upToDate() const { return !dirty_ && grid_.redraw(); }
    /// Tells whether an assistive tool, or somebody acting for one, has asked for this view.
    bool described() const { return described_; }
    void setDescribed() { described_ = true; }
    /// Returns coordinates of the viewport. REQUIRES: sync() was called.
    QRect rowRect(std::size_t index) const;
    /// Returns the place of the text in the row's first column, from its first character to the end of the
    /// column. Nothing for a row that is not shown, and while changes wait to be applied.
    std::optional<QRect> nameRect(Row row) const;
    /// Returns them in the order on screen.
    std::vector<std::size_t> shownColumns() const;
    /// These do what a click on the row, and on its sign for folding, does.
    void pickRow(std::size_t index);
    void foldRow(std::size_t index, bool expand);

    void gridChanged(const GridChange& change) override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void resizeEvent(QResizeEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

  private:
    /// While one exists, the view itself causes the grid's notices.
    class OwnChange;

    void setUp();
    GridHeader* makeHeader();
    bool takesInput() { return grid_.enabled() && sync(); }

    // Changes.
    void apply();
    void applyColumns();
    void applyRows();
    void applyTop(int shown, bool structure);
    void applyCurrent();
    std::optional<std::size_t> sortedColumn() const;
    void showSort();
    void storeTop();
    void setTopIndex(std::size_t index);
    void ensureVisible(std::size_t index);
    void showStartOf(Row row);
    void storeWidth(std::size_t column, int width);
    void measureRows();
    int widest(const std::function<int(const RowPainter&, Row)>& widthOf) const;
    int scrollBarWidth() const;
    int besideNumbers(int fitting) const;
    int fittingWidth(std::size_t column, int margin) const;
    int widestFit(std::size_t column) const;
    void setWidth(std::size_t column, int width);
    void moveEditor();

    // Drawing.
    std::vector<PaintedColumn> paintedColumns() const;
    void paintEmptyHint(QPainter& painter) const;
    void paintRows(const QRect& dirty);
    bool showTooltip(const QPoint& point, const QPoint& global);
    int rowsOnPage() const;

    // Input.
    std::optional<std::size_t> indexAtPoint(const QPoint& point) const;
    bool onBranch(const QPoint& point, std::size_t index) const;
    void press(const QPoint& point, Qt::MouseButton button, Qt::KeyboardModifiers keys);
    void dragTo(const QPoint& point);
    /// Does what a click of the right button on the current row does.
    void openMenu();
    void hover(Row row);
    std::optional<std::size_t> currentIndexOfRow() const;
    std::optional<std::size_t> keyTarget(int key) const;
    bool pressMoveKey(const QKeyEvent& event);
    bool pressTreeKey(int key);
    bool pressOtherKey(const QKeyEvent& event);
    bool pressTextKey(const QKeyEvent& event);
    void unfoldAllBelow(std::size_t index);
    void searchFor(const QString& typed);
    std::optional<std::size_t> findText(const std::string& front, std::size_t from) const;
    void pick(std::size_t index, Pick how);

    Grid& grid_;
    GridId id_;
    bool tree_;
    CellTextFunction cellText_;
    WindowEvents& events_;
    GridEvents nobody_;
    GridEvents* listener_ = &nobody_;
    IconSource icon_;
    std::function<QString()> emptyHint_;
    QString levelCaption_;
    VisibleRows rows_;
    GridModel model_;
    GridSelection selection_;
    RowSources sources_;
    GridFont font_;
    int rowHeight_ = 1;

    GridChange pending_;  ///< It has no ranges: any change of cells repaints everything visible.
    bool dirty_ = false;
    bool own_ = false;
    bool applying_ = false;
    bool userScrolled_ = false;
    bool described_ = false;
    QBasicTimer timer_;
    Row lastTop_ = kNoRow;
    Row lastCurrent_ = kNoRow;

    Qt::MouseButton pressed_ = Qt::NoButton;
    QPoint pressPoint_;
    bool dragging_ = false;
    Row hovered_ = kNoRow;
    int pressedKey_ = 0;
    int movedBy_ = 0;  ///< The key that moved the current row or changed the selection, until its release.
    QString typed_;
    QElapsedTimer typedAt_;

    std::unique_ptr<CellEditor> editor_;  ///< Made for the first name that is edited, then kept.
};

}  // namespace hl
