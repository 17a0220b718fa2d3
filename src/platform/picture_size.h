// How large a picture is drawn. Plain numbers, so that the window, and who decodes for it, agree.
#pragma once

namespace hl {

struct PictureSize {
    int width = 0, height = 0;
    bool operator==(const PictureSize&) const = default;
};

struct ZoomedPicture {
    PictureSize drawn;   ///< Never below 1 in a side.
    PictureSize target;  ///< The box, perhaps made smaller.
};

/// A source that fits the target keeps its size; any other is made smaller, both sides by one factor, so that
/// all of it shows. With `shrinkTarget` the target is no wider and no higher than what is drawn in it.
ZoomedPicture ZoomPicture(PictureSize source, PictureSize target, bool shrinkTarget);

}  // namespace hl
