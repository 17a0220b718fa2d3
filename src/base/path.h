// Paths as strings of bytes, and the rules of the platform they live on.
//
// A path is never decoded: any bytes but NUL and the separator may stand in a name. The helpers take the
// rules as an argument, so that both kinds of platform can be tested on one machine.
#pragma once

#include <string>
#include <string_view>

namespace hl {

struct PathRules {
    char separator;
    bool foldsCase;    ///< Paths that differ only in case name the same thing.
    bool trimsBlanks;  ///< Blanks at the ends of a path mean nothing (elsewhere they belong to the name).
    std::string_view longPrefix;  ///< Put in front of a path so that its length is not limited; may be empty.
    std::string_view longUncPrefix;  ///< The same for a network path, in place of its first separator.
};

/// "/", exact case, blanks count, no prefixes.
extern const PathRules kPosixPaths;
/// "\", folding case, blanks trimmed, "\\?\" and "\\?\UNC".
extern const PathRules kDrivePaths;

/// The path with the prefix that lifts the limit of its length. A path that has the prefix gets a second one.
std::string ToLongPath(std::string_view path, const PathRules& rules);
/// The text up to its first NUL.
std::string TrimAtNul(std::string_view text);
/// The path ending in a separator; blanks are trimmed only where one has to be added, and only by the rules.
std::string AddTrailingSlash(std::string_view path, const PathRules& rules);
/// What follows the last separator; all of a path without one.
std::string_view fileNameOf(std::string_view path, const PathRules& rules);
/// What follows the last point of a file name, or empty.
std::string xGetExtension(std::string_view name);

/// The form of a path by which two paths are compared: folded where the platform folds, else unchanged.
std::string identityKey(std::string_view path, const PathRules& rules);
/// `parent` and `name` with one separator between them; none is doubled behind a root such as "/".
std::string joinPath(std::string_view parent, std::string_view name, const PathRules& rules);
/// "file:///a%20b": every byte that is not plain in a URL is escaped. REQUIRES: an absolute path.
std::string fileUrl(std::string_view path);
/// "//server/share" or "\\server\share": begins with two separators of either kind.
bool isNetworkPath(std::string_view path);

}  // namespace hl
