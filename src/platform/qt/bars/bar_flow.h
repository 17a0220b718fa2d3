// Where the parts of a bar stand: in rows that wrap, or in one row with a button for what does not fit.
// Pixels. No widget is touched here.
#pragma once

#include <QRect>
#include <QSize>
#include <vector>

namespace hl {

struct FlowItem {
    QSize size;        ///< What it would like to have.
    int smallest = 0;  ///< Width down to which it may shrink.
    bool beginGroup = false;
    bool joined = false;  ///< Stays on the row of the item before it, if a pixel is left there.
    bool grows = false;   ///< Takes what its row has left, and always has a place.
};

struct FlowRule {
    int margin = 2;
    int spacing = 1;
    int groupGap = 9;
    int extensionWidth = 16;
    bool clips = false;
};

struct Flow {
    std::vector<QRect> places;      ///< One for each item; null for one that does not fit.
    std::vector<QRect> separators;  ///< In the middle of each gap between groups, one pixel wide.
    QRect extension;                ///< Null if everything fits.
    int height = 0;
};

/// Nothing is ever wider than `width` or lost: an item that alone is too wide is cut to it.
Flow flowOf(const std::vector<FlowItem>& items, int width, const FlowRule& rule);

}  // namespace hl
