// The box in which the name of a row is edited, over the row's text in its cell.
//
// One box per view, hidden between edits. Each edit ends once: by Return, Tab and by leaving the box, which
// tell WindowEvents::GridCellAfterEditing, or by cancel(), which tells nothing. The box watches by itself for
// what no notice comes of: a grid that was disabled, or whose Redraw stays off. Thread of the grid.
#pragma once

#include <QBasicTimer>
#include <QClipboard>
#include <QLineEdit>

#include "grid/grid.h"

namespace hl {

class GridView;

class CellEditor final : public QLineEdit {
  public:
    /// A child of the view's viewport, which outlives it.
    explicit CellEditor(GridView& view);

    /// Ends another edit as leaving it does, scrolls the row into sight and opens over its name. Nothing if
    /// the view is disabled or hidden, or shows no names. REQUIRES: the row exists.
    void begin(Row row);
    /// Ends the edit, if there is one; tells nothing.
    void cancel();
    /// Goes where the row is now, or ends the edit if that is out of sight. Nothing while the view has
    /// changes to apply.
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
    bool locked_ = false;  ///< Redraw was off when watch() last looked.
    int endKey_ = 0;       ///< That ended an edit and is still held down.
    QBasicTimer timer_;
};

}  // namespace hl
