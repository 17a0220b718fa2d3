// Reads what is dropped on the window.
#pragma once

#include <vector>

#include "platform/window.h"

class QDropEvent;
class QMimeData;

namespace hl {

/// Tells whether files or folders are being dragged.
bool hasPlaces(const QMimeData& data);
/// Returns them in their order. A path is decoded to its bytes, whether they are UTF-8 or not.
std::vector<DroppedPlace> placesOf(const QMimeData& data);
/// Accepts a drag of files or folders. What is dropped is only read, so the other program must move nothing.
bool acceptPlaces(QDropEvent& event);

}  // namespace hl
