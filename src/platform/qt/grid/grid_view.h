// A grid on screen: a table of its visible rows, with the hierarchy drawn in its first column. For the grid's
// thread.
//
// Nothing of a row is copied. The grid stores what is selected, folded, current and on top; the toolkit's own
// selection stays empty. Painting walks the grid from its top row, so it never shows a row that is gone, also
// while redraw is off. While redraw is off or the grid is locked, keys and the mouse do nothing, unless the
// grid may be looked at: then redraw goes on for the moment that a handler needs (GridSync::Glance).
//
// The view is put together from parts, each with a subject: GridSync applies what the grid tells, GridColumns
// has the columns, GridPlaces knows where rows stand; GridMouse and GridKeys do with GridActions what the
// user wants; CellEditor edits a name.
#pragma once

#include <QTableView>
#include <functional>
#include <memory>

#include "platform/qt/grid/grid_actions.h"
#include "platform/qt/grid/grid_columns.h"
#include "platform/qt/grid/grid_hint.h"
#include "platform/qt/grid/grid_keys.h"
#include "platform/qt/grid/grid_mouse.h"
#include "platform/qt/grid/grid_places.h"
#include "platform/qt/grid/grid_sync.h"

namespace hl {

class CellEditor;

class GridView : public QTableView, public GridPane {
  public:
    /// Attaches itself to `grid`; `grid` and `events` must outlive it. `events` hears of errors alone: what
    /// the user does is reported to the object that setEvents names. `tree` means that rows have a hierarchy.
    GridView(Grid& grid, GridId id, bool tree, CellTextFunction cellText, WindowEvents& events,
             QWidget* parent = nullptr);
    ~GridView() override;

    void setIconSource(IconSource icon);
    /// What a cell's tooltip tells besides the cell's text.
    void setCellTip(CellTextFunction tip) { cellTip_ = std::move(tip); }
    /// What is shown while there are no rows.
    GridHint& hint() { return hint_; }
    /// Returns what the mark of a row means.
    void setMarkNote(std::function<QString(std::uint32_t mark)> note) { markNote_ = std::move(note); }
    QString markNote(Row row) const;
    /// What a screen reader says before a row's level, which counts from 1.
    void setLevelCaption(const QString& caption) { levelCaption_ = caption; }
    const QString& levelCaption() const { return levelCaption_; }

    // --- GridPane
    void setEvents(GridEvents* events) override { listener_ = events != nullptr ? events : &nobody_; }
    /// Fits a column to its title, the visible rows, a limited sample from the top and the root rows.
    /// `margin` is in twentieths of a point, 15 to a pixel. In a list, one column of texts leaves most of the
    /// width to the others; in a hierarchy, the names leave the others their widths. Later, columns of
    /// numbers grow as soon as one does not fit, and the names of a hierarchy give way.
    void autosizeColumn(std::size_t column, int margin) override;
    int widthBesideColumns() override;
    int innerWidth() override { return contentsRect().width(); }
    /// Returns the height of the title row, all visible rows, the frame, and the scroll bar below, for which
    /// there is always room, because columns may need it at any time.
    int heightOfRows() override;
    std::optional<RowRange> visibleRows() override;
    std::size_t columnAt(Point at) override;
    void scrollIntoView(Row row) override;
    void scrollToMiddle(Row row) override;
    void editCell(Row row) override;
    bool underPointer() override { return underMouse(); }
    void refresh() override;
    void focus() override { setFocus(Qt::OtherFocusReason); }
    /// Returns the font that was set, or, if none was, one with the size that is shown.
    GridFont gridFont() const override;
    /// Sets the font; if no font of that name is installed, the application's own is used.
    void setGridFont(const GridFont& font) override;

    // --- for the parts and for assistive tools
    Grid& grid() const { return grid_; }
    bool isTree() const { return sources_.tree; }
    WindowEvents& events() const { return events_; }
    GridEvents& listener() const { return *listener_; }
    GridSync& changes() { return sync_; }
    GridColumns& columns() { return columns_; }
    GridActions& actions() { return actions_; }
    const GridPlaces& places() const { return places_; }
    const VisibleRows& rows() const { return sync_.rows(); }
    /// See GridSync. A sync() that does something destroys the objects of an assistive tool.
    bool sync() { return sync_.sync(); }
    bool upToDate() const { return sync_.upToDate(); }
    /// Tells whether the user may work in the grid now. After `true`, rows() is up to date.
    bool takesInput() { return grid_.enabled() && sync(); }
    bool looksOnly() const { return grid_.access() == GridAccess::kLooking; }
    /// The same for what changes no row.
    bool takesLooks() { return grid_.access() != GridAccess::kLocked && sync(); }
    QString cellText(std::size_t column, Row row) const;
    /// `point` is in coordinates of the viewport; returns kNoRow outside of all rows.
    Row rowAt(const QPoint& point);
    /// Returns coordinates of the viewport. REQUIRES: sync() was called.
    QRect rowRect(std::size_t index) const { return places_.rowRect(index); }
    /// See GridPlaces. Nothing for a row that is not shown, and while changes wait to be applied.
    std::optional<QRect> nameRect(Row row) const;
    std::vector<std::size_t> shownColumns() const { return places_.shownColumns(); }
    /// Tells whether the view, or something in it, has the keyboard's focus.
    bool holdsFocus() const { return holdsFocus_; }
    /// Adds the parts that the Tab key may stop at.
    void addTabStops(std::vector<QWidget*>& stops);
    /// Tells whether an assistive tool, or somebody acting for one, has asked for this view.
    bool described() const { return described_; }
    void setDescribed() { described_ = true; }
    /// Takes over a new number of rows.
    void layOut();
    /// Moves the box of an edit to where its row is now; ends the edit if the list of rows is anew.
    void moveEditor(bool newRows = false);

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
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
    void setUp();
    void measureRows();
    void focusMoved(const QWidget* to);
    void paintFrame();
    void paintRows(const QRect& dirty);
    QString tooltipAt(const QPoint& point);
    void widenLater();

    Grid& grid_;
    CellTextFunction cellText_, cellTip_;
    IconSource icon_;
    RowSources sources_;
    WindowEvents& events_;
    GridEvents nobody_;
    GridEvents* listener_ = &nobody_;
    GridHint hint_;
    std::function<QString(std::uint32_t)> markNote_;
    QString levelCaption_;
    GridFont font_;
    bool described_ = false;
    bool holdsFocus_ = false;
    bool widening_ = false;  ///< Columns of numbers are to be made wider soon.

    GridSync sync_;
    GridPlaces places_;
    GridColumns columns_;
    GridActions actions_;
    GridMouse mouse_;
    GridKeys keys_;
    std::unique_ptr<CellEditor> editor_;  ///< Made for the first name that is edited, then kept.
};

}  // namespace hl
