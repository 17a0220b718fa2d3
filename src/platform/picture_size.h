// Computes how large a picture is drawn. The window and the helper that decodes for it both use these pure
// functions.
#pragma once

namespace hl {

struct PictureSize {
    int width = 0, height = 0;
    bool operator==(const PictureSize&) const = default;
};

struct ZoomedPicture {
    PictureSize drawn;   ///< Each side is at least 1.
    PictureSize target;  ///< The box, which may have been reduced.
};

/// A source that fits the target keeps its size; a larger one is reduced by one factor for both sides, so
/// that all of it is visible. `shrinkTarget` reduces the target to what is drawn in it.
ZoomedPicture ZoomPicture(PictureSize source, PictureSize target, bool shrinkTarget);

}  // namespace hl
