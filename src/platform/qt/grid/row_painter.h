// Draws the rows of a grid, and tells how much room a cell needs. For the window's thread.
//
// The first column shows the hierarchy (indentation and sign for folding), the row's picture, its percent
// bar, its text and, dimmed, its note. Everything is drawn as lines and areas, so it is crisp at any scale.
// On a screen a unit is a pixel; on paper a pixel has several units.
#pragma once

#include <QFontMetrics>
#include <QIcon>
#include <QPainter>
#include <QWidget>
#include <functional>
#include <vector>

#include "platform/qt/grid/grid_model.h"

namespace hl {

/// Returns the picture of a number of platform/icons.h; a null icon for none.
using IconSource = std::function<QIcon(int)>;

/// A column on screen.
struct PaintedColumn {
    std::size_t column;  ///< The index of the grid's column.
    int left, width;
};

/// How rows look, apart from their content.
struct RowLook {
    QFont font;
    QPalette palette;
    QPalette::ColorGroup group = QPalette::Active;
    double pixel = 1;              ///< The units in a pixel.
    int step = 20, iconSize = 16;  ///< The width of a level and of a picture, in units.
    std::uint32_t deepest = 50;    ///< Deeper rows are not indented further.
    bool focus = false;            ///< Draws a frame around the current row.
    int pictureSide = 0;           ///< Pixels that a picture is drawn from; 0 means those of the device.
    bool onScreen = true;          ///< If false, nothing is selected, and wide enough cells need no clipping.
};

/// What a RowPainter needs of the view; it must outlive the painter.
struct RowSources {
    const Grid& grid;
    GridId id;
    bool tree;
    const CellTextFunction& cellText;
    const IconSource& icon;
};

class RowPainter {
  public:
    /// Is for one painting or one measurement: fonts, palette and style of `widget` are read once.
    RowPainter(const RowSources& sources, const QWidget& widget);
    RowPainter(const RowSources& sources, const RowLook& look);

    static int rowHeight(const QWidget& widget);
    static int rowHeight(const RowLook& look);

    /// Returns false if a number does not fit its column.
    bool paint(QPainter& painter, Row row, const QRect& area,
               const std::vector<PaintedColumn>& columns) const;
    /// Returns the width that shows all of the cell, with the whole indentation of its level.
    int contentWidth(Row row, std::size_t column) const;
    /// Tells whether a column of this width does not show all of the cell.
    bool isCut(Row row, std::size_t column, int width) const;
    /// Returns where the names of the first level below the sources begin.
    int firstLevelStart() const { return 2 * look_.step + look_.iconSize + gap_; }
    /// Returns the place of a row's sign for folding in a first column at `cell`.
    QRect branchRect(Row row, const QRect& cell) const;
    /// Returns the place of a row's text in a first column at `cell`.
    QRect textRect(Row row, const QRect& cell) const;
    /// Returns the text of the cell, with the note.
    QString fullText(Row row, std::size_t column) const;

  private:
    struct Colors {
        QColor ground, text;
    };
    Colors colorsOf(Row row) const;
    void paintFirst(QPainter& painter, Row row, const QRect& cell, const Colors& colors) const;
    bool paintOther(QPainter& painter, Row row, const PaintedColumn& column, const QRect& cell,
                    const Colors& colors) const;
    void paintPicture(QPainter& painter, Row row, const QRect& box) const;
    void paintMark(QPainter& painter, const QRect& box) const;
    void paintBranch(QPainter& painter, const QRect& box, bool open) const;
    void paintTexts(QPainter& painter, Row row, const QRect& space, const Colors& colors) const;
    struct Bar {
        double percent;
        double more;  ///< What follows in the third tone, in percent.
        QString text;
    };
    struct BarLook {
        QColor ground, ink, left, right, more;
    };
    BarLook barLook(std::uint32_t base) const;
    void paintBar(QPainter& painter, const QRect& space, const Bar& bar, std::uint32_t base) const;
    QColor sideColor(std::uint32_t base, const Colors& colors) const;
    void paintBehind(QPainter& painter, const QRect& space, double percent, std::uint32_t base,
                     const Colors& colors) const;
    void paintTwoSided(QPainter& painter, const QRect& space, double part, const Colors& colors) const;
    int units(double pixels) const;
    int textWidth(const QString& shown) const;
    int wholeIndentation(Row row) const;
    int indentation(Row row, int width) const;
    int besideIndentation(Row row) const;
    double numberOf(Row row, const std::string& key) const;
    int iconWidth(Row row) const;
    int barWidth() const;
    int twoSidedWidth() const;
    int barRoom(Row row) const;
    QString cellText(Row row, std::size_t column) const;
    QString note(Row row) const;

    const RowSources& sources_;
    RowLook look_;
    QFontMetrics metrics_;
    int padding_, gap_;
};

}  // namespace hl
