// Places and sizes in the window, in pixels of the desktop's own unit, before any scale factor.
#pragma once

#include <cstddef>

namespace hl {

struct Point {
    int x = 0, y = 0;
};

struct Rect {
    int left = 0, top = 0, width = 0, height = 0;
};

/// The first and the last visible row, by their indexes.
struct RowRange {
    std::size_t first = 0, last = 0;
    bool operator==(const RowRange&) const = default;
};

}  // namespace hl
