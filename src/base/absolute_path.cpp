#include "base/absolute_path.h"

#include <algorithm>

namespace hl {

namespace {

// Returns the length of the part of a path that no ".." can remove: "/", "C:\\" or nothing.
std::size_t rootLength(std::string_view path, const PathRules& rules) {
    const bool drive = rules.separator == '\\' && path.size() > 2 && path[1] == ':' && path[2] == '\\';
    if (drive) return 3;
    return path.starts_with(rules.separator) ? 1 : 0;
}

// Resolves the segments ".", ".." and empty ones. REQUIRES: an absolute path.
std::string withoutDots(std::string_view path, const PathRules& rules) {
    const std::size_t root = rootLength(path, rules);
    std::string out(path.substr(0, root));
    for (std::string_view rest = path.substr(root); !rest.empty();) {
        const std::string_view segment = rest.substr(0, rest.find(rules.separator));
        rest.remove_prefix(std::min(segment.size() + 1, rest.size()));
        if (segment == "..") {
            const std::size_t last = out.rfind(rules.separator);
            out.resize(std::max(root, last == std::string::npos ? 0 : last));
        } else if (!segment.empty() && segment != ".") {
            out = joinPath(out, segment, rules);
        }
    }
    return path.ends_with(rules.separator) ? AddTrailingSlash(out, rules) : out;
}

}  // namespace

bool isAbsolutePath(std::string_view path, const PathRules& rules) {
    return rootLength(path, rules) > 0;
}

std::string absoluteSource(std::string_view text, const PathBases& bases, const PathRules& rules) {
    if (text.empty() || isNetworkPath(text)) return std::string(text);
    std::string path(text);
    const bool home = path == "~" || (path.starts_with('~') && path[1] == rules.separator);
    if (home && !bases.home.empty()) {
        path = bases.home + path.substr(1);
    } else if (!isAbsolutePath(path, rules) && !bases.current.empty()) {
        path = joinPath(bases.current, path, rules);
    }
    return isAbsolutePath(path, rules) ? withoutDots(path, rules) : path;
}

}  // namespace hl
