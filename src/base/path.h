// Works with paths as strings of bytes, by the rules of the platform they belong to.
//
// A path is never decoded: a name may hold any byte but NUL and the separator. The helpers take the rules as
// an argument, so that both kinds of platform can be tested on one machine. All functions are pure.
#pragma once

#include <string>
#include <string_view>

namespace hl {

struct PathRules {
    char separator;
    bool foldsCase;    ///< Paths that differ only in case name the same thing.
    bool trimsBlanks;  ///< Blanks at the ends of a path mean nothing; if false, they belong to the name.
    std::string_view longPrefix;     ///< The prefix that lifts the limit of a path's length; may be empty.
    std::string_view longUncPrefix;  ///< The prefix for a network path; it replaces the first separator.
};

/// The separator is "/", case and blanks count, and there are no prefixes.
extern const PathRules kPosixPaths;
/// The separator is "\", case is folded, blanks are trimmed, and the prefixes are "\\?\" and "\\?\UNC".
extern const PathRules kDrivePaths;

/// Puts the prefix that lifts the limit of the length in front of a path, even if the path has it already.
std::string ToLongPath(std::string_view path, const PathRules& rules);
/// Returns the text up to its first NUL.
std::string TrimAtNul(std::string_view text);
/// Adds a separator to a path that does not end in one. Only then blanks are trimmed, if the rules say so.
std::string AddTrailingSlash(std::string_view path, const PathRules& rules);
/// Returns what follows the last separator, or the whole path if it has none.
std::string_view fileNameOf(std::string_view path, const PathRules& rules);
/// Returns the folder that holds `path`, without a separator at its end unless it is the root. Empty for the
/// root and for a path without a separator. REQUIRES: `path` has no separator at its end, or is the root.
std::string folderAbove(std::string_view path, const PathRules& rules);
/// Returns what follows the last point of a file name, or an empty text.
std::string xGetExtension(std::string_view name);

/// Returns the form of a path by which two paths are compared; its case is folded if the rules say so.
std::string identityKey(std::string_view path, const PathRules& rules);
/// Joins `parent` and `name` with one separator; a root such as "/" gets no second one.
std::string joinPath(std::string_view parent, std::string_view name, const PathRules& rules);
/// Returns a URL such as "file:///a%20b"; every byte that is not plain in a URL is escaped. REQUIRES: an
/// absolute path.
std::string fileUrl(std::string_view path);
/// Tells whether `path` is `folder` or lies below it. Neither has a separator at its end, unless `folder` is
/// the root.
bool liesIn(std::string_view path, std::string_view folder, const PathRules& rules);
/// Tells whether a path begins with two separators of one kind: "//server/share" or "\\server\share".
bool isNetworkPath(std::string_view path);

}  // namespace hl
