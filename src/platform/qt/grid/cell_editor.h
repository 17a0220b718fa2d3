// The box in which the name of a row is edited, over the row's text in its cell.
//
// There is one box for each view, hidden between edits. Each edit ends once: by Return, Tab or leaving the
// box, which call GridEvents::GridCellAfterEditing, or by cancel(), which does not. The box itself watches
// for states that are not reported: a grid that was disabled, or whose redraw stays off. For the grid's
// thread.
#pragma once

#include <QBasicTimer>
#include <QClipboard>
#include <QLineEdit>

#include "grid/grid.h"

namespace hl {

class GridView;

class CellEditor final : public QLineEdit {
  public:
    /// It is a child of the view's viewport. The view must outlive it.
    explicit CellEditor(GridView& view);

    /// Ends another edit as leaving it does, scrolls to the row and opens over its name. Does nothing if the
    /// view is disabled or hidden, or shows no names. REQUIRES: the row exists.
    void begin(Row row);
    /// Ends the edit, if there is one, without telling anybody.
    void cancel();
    /// Moves to where the row is now, or ends the edit if the row is out of sight. Does nothing while the
    /// view has changes to apply.
    void follow();

  protected:
    bool eventFilter(QObject* object, QEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

  private:
    void commit();
    void fill();
    bool usable() const;
    QRect placeOver(const QRect& name) const;
    void pressEndKey(const QKeyEvent& event);
    bool swallows(const QKeyEvent& event);
    bool isElsewhere(const QWidget& pressed) const;
    void replacePaste(QMenu& menu);
    void pasteFrom(QClipboard::Mode mode);
    void watch();

    GridView& view_;
    Row row_ = kNoRow;
    bool open_ = false;
    bool locked_ = false;  ///< Redraw was off when watch() last checked.
    int endKey_ = 0;       ///< The key that ended an edit and is still held down.
    QBasicTimer timer_;
};

}  // namespace hl
