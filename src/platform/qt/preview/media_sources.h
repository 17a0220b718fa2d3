// Limits what the player's library may open to the file that it is given: nothing that this file names. A
// file with a sound's name may be a list of places on the network or of other files, nested at will; without
// a reader for lists, and with no source but that of files, such a list cannot be played.
#pragma once

#include <string>

namespace hl {

/// Must be called before the library starts. It keeps its list of plugins in `folder`, or nowhere if that is
/// empty, and never in the user's cache. Only the GStreamer backend is used, because nothing here could
/// restrict another one.
void prepareMediaLibrary(const std::string& folder);
/// Removes everything that opens places from the library, for the whole process and for good. Returns false
/// if that is not the library that plays. May be called on any thread, before the first file.
bool allowLocalFilesAlone();

}  // namespace hl
