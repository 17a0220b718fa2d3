// Computes the places of a bar's parts: in a few rows, with a button for what does not fit.
// Lengths are in pixels. The functions are pure and touch no widget.
#pragma once

#include <QRect>
#include <QSize>
#include <vector>

namespace hl {

struct FlowItem {
    QSize size;        ///< The size that it would like to have.
    int smallest = 0;  ///< The smallest possible width.
    bool beginGroup = false;
    bool joined = false;  ///< Stays on the row of the item before it if any pixel is left there.
    bool grows = false;   ///< Takes the rest of its row, and always has a place.
    int rank = 0;         ///< Items of the largest rank are the first that are left out.
};

struct FlowRule {
    int margin = 2;
    int spacing = 1;
    int groupGap = 9;
    int extensionWidth = 16;
    int mostRows = 2;
};

struct Flow {
    std::vector<QRect> places;      ///< One for each item; null for an item that does not fit.
    std::vector<QRect> separators;  ///< One pixel wide, in the middle of each gap between groups.
    QRect extension;                ///< The place of the button that shows the rest; null if everything fits.
    int height = 0;
};

/// Leaves out as few items as the rule allows. Those that stay keep their order. Only an item that is never
/// left out is cut to `width`, if it is too wide by itself.
Flow flowOf(const std::vector<FlowItem>& items, int width, const FlowRule& rule);

}  // namespace hl
