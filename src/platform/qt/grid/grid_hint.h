// What a grid without rows shows: a text, and perhaps a button below it. For the grid's thread.
#pragma once

#include <QObject>
#include <functional>

class QPainter;
class QPushButton;
class QWidget;

namespace hl {

class GridView;

class GridHint {
  public:
    explicit GridHint(GridView& view) : view_(view) {}

    /// Both are asked anew each time the empty grid is painted; an empty text shows nothing.
    std::function<QString()> text, buttonCaption;

    void paint(QPainter& painter);
    /// Is called when the grid is painted and has rows.
    void rowsPainted();
    /// Returns null while there is no button.
    QWidget* button() const;

  private:
    void followLater();
    void follow();
    void makeButton();

    GridView& view_;
    QObject context_;
    QPushButton* button_ = nullptr;  ///< Made when it is first wanted; a child of the viewport.
    int textEnd_ = 0;                ///< Where the text ended when it was last painted.
    bool waits_ = false;
};

}  // namespace hl
