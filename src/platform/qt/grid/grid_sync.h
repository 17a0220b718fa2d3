// Keeps a view in step with its grid. It gathers the grid's notices and applies them once in each turn of the
// event loop; it stores in the grid which row is on top, and brings a new current row into sight. For the
// grid's thread.
#pragma once

#include <QTimer>
#include <utility>

#include "platform/qt/grid/grid_model.h"

namespace hl {

class GridView;

class GridSync : public GridObserver {
  public:
    /// While one exists, the view itself causes the grid's notices.
    class OwnChange {
      public:
        explicit OwnChange(GridSync& sync) : sync_(sync), before_(std::exchange(sync.own_, true)) {}
        ~OwnChange() { sync_.own_ = before_; }
        OwnChange(const OwnChange&) = delete;
        OwnChange& operator=(const OwnChange&) = delete;

      private:
        GridSync& sync_;
        bool before_;
    };

    /// While one exists, a grid that may only be looked at is redrawn, and rows() is up to date, although
    /// rows are coming. REQUIRES: no messages run meanwhile.
    class Glance {
      public:
        explicit Glance(GridSync& sync);
        ~Glance();
        Glance(const Glance&) = delete;
        Glance& operator=(const Glance&) = delete;

      private:
        Grid* grid_;  ///< Null for a grid that needs nothing.
    };

    /// The arguments must outlive it.
    GridSync(GridView& view, Grid& grid, GridId id, const CellTextFunction& cellText, WindowEvents& events);
    ~GridSync() override;

    /// Attaches itself to the grid, whose whole content then counts as changed.
    void start();
    /// Applies what the grid told. Returns false while redraw is off: rows() may then be out of date.
    bool sync();
    /// Tells whether sync() would do nothing.
    bool upToDate() const { return !dirty_ && !listing_ && grid_.redraw(); }
    const VisibleRows& rows() const { return rows_; }
    GridModel& model() { return model_; }

    /// Scrolls so that the row is visible. The logic, which is told of scrolling, may let messages run and
    /// rows be removed: afterwards nothing may be asked about them.
    void ensureVisible(std::size_t index);
    /// Scrolls like that so that the row is in the middle of what is visible, as far as there are rows.
    void showInMiddle(std::size_t index);
    /// Is called when the user scrolled up or down, or a routine here did.
    void scrolled();
    /// Makes the grid's current row no new one any more; it is in sight already.
    void currentIsKnown() { lastCurrent_ = grid_.currentRow(); }

    void gridChanged(const GridChange& change) override;

  private:
    void tellLogic();
    void apply();
    void applyRows(const GridChange& change);
    void repaint(const GridChange& change);
    void applyTop(int shown, bool structure);
    void applyCurrent();
    void storeTop();
    void setTopIndex(std::size_t index);

    GridView& view_;
    Grid& grid_;
    const GridId id_;
    WindowEvents& events_;
    VisibleRows rows_;
    GridModel model_;
    GridChange pending_;
    bool dirty_ = false;
    bool own_ = false;
    bool applying_ = false;
    bool listing_ = false;  ///< The list of rows is being changed, or an error ended that.
    bool userScrolled_ = false;
    bool hasRows_ = false, hasSelection_ = false;  ///< What the logic was told last.
    QTimer timer_;
    QTimer telling_;            ///< Tells the logic once of many changes.
    bool rowsChanged_ = false;  ///< Since the logic was told last.
    Row lastTop_ = kNoRow;
    Row lastCurrent_ = kNoRow;
};

}  // namespace hl
