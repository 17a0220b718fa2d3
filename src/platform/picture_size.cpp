#include "platform/picture_size.h"

#include <algorithm>
#include <cmath>

namespace hl {

namespace {

int scaled(int side, double factor) {
    return std::max(1, static_cast<int>(std::lround(side * factor)));
}

}  // namespace

ZoomedPicture ZoomPicture(PictureSize source, PictureSize target, bool shrinkTarget) {
    PictureSize drawn = source;
    if (source.width > target.width || source.height > target.height) {
        const double factor = std::min(static_cast<double>(target.width) / source.width,
                                       static_cast<double>(target.height) / source.height);
        drawn = {scaled(source.width, factor), scaled(source.height, factor)};
    }
    drawn = {std::max(1, drawn.width), std::max(1, drawn.height)};
    if (shrinkTarget) target = {std::min(target.width, drawn.width), std::min(target.height, drawn.height)};
    return {drawn, target};
}

}  // namespace hl
