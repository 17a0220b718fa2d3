// What the player's library may open: the file that it is given, and nothing that this file names. A file
// with a sound's name may be a list of places on the network or of other files, nested in each other as one
// likes; with no reader for lists and no source but that of files left, each of them is a file that cannot
// be played.
#pragma once

#include <string>

namespace hl {

/// Before the library starts: it keeps its list of plugins in `folder`, with an empty one nowhere, and never
/// in the user's cache. Another backend than GStreamer's, which nothing here could hold back, is not taken.
void prepareMediaLibrary(const std::string& folder);
/// Takes all that opens places out of the library, of the whole process and for good. False if it is not the
/// library that plays. On any thread, before the first file.
bool allowLocalFilesAlone();

}  // namespace hl
