#include "base/path.h"

#include <algorithm>

#include "base/text.h"

namespace hl {

const PathRules kPosixPaths{'/', false, false, "", ""};
const PathRules kDrivePaths{'\\', true, true, "\\\\?\\", "\\\\?\\UNC"};

namespace {

std::string_view trimmedBy(std::string_view path, const PathRules& rules) {
    return rules.trimsBlanks ? trimBlanks(path) : path;
}

}  // namespace

std::string ToLongPath(std::string_view path, const PathRules& rules) {
    const std::string unc(2, rules.separator);
    if (!rules.longUncPrefix.empty() && path.starts_with(unc))
        return std::string(rules.longUncPrefix) + std::string(path.substr(1));
    return std::string(rules.longPrefix) + std::string(path);
}

std::string TrimAtNul(std::string_view text) {
    return std::string(text.substr(0, text.find('\0')));
}

std::string AddTrailingSlash(std::string_view path, const PathRules& rules) {
    if (path.ends_with(rules.separator)) return std::string(path);
    return std::string(trimmedBy(path, rules)) + rules.separator;
}

std::string_view fileNameOf(std::string_view path, const PathRules& rules) {
    return path.substr(path.rfind(rules.separator) + 1);
}

std::string folderAbove(std::string_view path, const PathRules& rules) {
    const std::size_t at = path.rfind(rules.separator);
    if (at == std::string_view::npos || path.size() == 1) return {};
    return std::string(path.substr(0, std::max<std::size_t>(1, at)));
}

std::string xGetExtension(std::string_view name) {
    const std::size_t point = name.rfind('.');
    return point == std::string_view::npos ? std::string() : std::string(name.substr(point + 1));
}

std::string identityKey(std::string_view path, const PathRules& rules) {
    return rules.foldsCase ? lowerCase(path) : std::string(path);
}

std::string joinPath(std::string_view parent, std::string_view name, const PathRules& rules) {
    std::string path(parent);
    if (!path.ends_with(rules.separator)) path += rules.separator;
    return path.append(name);
}

bool liesIn(std::string_view path, std::string_view folder, const PathRules& rules) {
    if (!path.starts_with(folder)) return false;
    return path.size() == folder.size() || folder.ends_with(rules.separator) ||
           path[folder.size()] == rules.separator;
}

bool isNetworkPath(std::string_view path) {
    const auto separator = [](char c) { return c == '/' || c == '\\'; };
    return path.size() >= 2 && path[0] == path[1] && separator(path[0]);
}

std::string fileUrl(std::string_view path) {
    constexpr std::string_view kPlain = "/-._~";
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string url = "file://";
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        const bool letter = (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
        if (letter || kPlain.find(c) != std::string_view::npos) {
            url += c;
        } else {
            url.append({'%', kDigits[byte >> 4], kDigits[byte & 15]});
        }
    }
    return url;
}

}  // namespace hl
