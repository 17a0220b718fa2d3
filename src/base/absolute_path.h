// What a path that a user typed names, without a look at the disk. Pure functions.
#pragma once

#include <string>
#include <string_view>

#include "base/path.h"

namespace hl {

/// What a relative path and "~" stand for; empty where there is none.
struct PathBases {
    std::string current;  ///< The current folder.
    std::string home;
};
/// Whether the path begins at a root: with a separator, or with a drive where there are drives.
bool isAbsolutePath(std::string_view path, const PathRules& rules);
/// The path that a text of the user's names: a relative one lies below the current folder, "~" is the home,
/// and the segments ".", ".." and empty ones are resolved by their text, without a look at the disk. So
/// "link/.." is the folder that holds the link. A network path stays as it is, and so does what has no base.
std::string absoluteSource(std::string_view text, const PathBases& bases, const PathRules& rules);

}  // namespace hl
