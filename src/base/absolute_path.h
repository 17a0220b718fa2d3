// Turns a path that a user typed into an absolute one, without a look at the disk. The functions are pure.
#pragma once

#include <string>
#include <string_view>

#include "base/path.h"

namespace hl {

/// The folders that a relative path and "~" stand for; one is empty where there is no such folder.
struct PathBases {
    std::string current;  ///< The current folder.
    std::string home;
};
/// Tells whether the path begins at a root: with a separator, or with a drive where there are drives.
bool isAbsolutePath(std::string_view path, const PathRules& rules);
/// Returns the path that the user's text names: a relative path lies below the current folder, "~" is the
/// home, and the segments ".", ".." and empty ones are resolved by their text alone, so that "link/.." is the
/// folder that holds the link. A network path stays as it is, and so does a path whose base is empty.
std::string absoluteSource(std::string_view text, const PathBases& bases, const PathRules& rules);

}  // namespace hl
