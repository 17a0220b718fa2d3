#include "scan/file_system_calls.h"

#include "robustness/api_error_text.h"
#include "scan/list_handover.h"

namespace hl {

bool xExistFile(ScanContext& scan, std::string_view path) {
    return !path.empty() && scan.fileSystem.look(ToLongPath(path, scan.paths)).error == 0;
}

bool xExistFolder_W(ScanContext& scan, std::string_view path) {
    if (path.size() > 1 && path.ends_with(scan.paths.separator)) path.remove_suffix(1);
    return xExistFile(scan, path);
}

bool hasVanished(const ScanContext& scan, std::string_view path) {
    constexpr int kNotFound = 2, kFolderNotFound = 20;
    const int error = scan.fileSystem.look(ToLongPath(path, scan.paths)).error;
    return error == kNotFound || error == kFolderNotFound;
}

std::int32_t xGetHardlinkCount(ScanContext& scan, const std::string& path, std::string* id,
                               std::string& error) {
    const PathFacts facts = scan.fileSystem.look(ToLongPath(path, scan.paths));
    if (facts.error != 0) {
        error = scan.texts.TL(
            4071, "Die Datei '%1' konnte nicht geöffnet werden. (xGetHardlinkCount\\CreateFileWide: %2)",
            {path, ApiErrorText(true, facts.error, scan.facts)});
        return 0;
    }
    if (id != nullptr) *id = fileId(facts.inode);
    return facts.links == 1 ? 0 : static_cast<std::int32_t>(facts.links);
}

std::string xGetJunctionPath(ScanContext& scan, const std::string& path, std::string& error) {
    int code = 0;
    std::string target = scan.fileSystem.target(path, code);
    if (code != 0) error = ApiErrorText(true, code, scan.facts) + " (CreateFile)";
    return target;
}

}  // namespace hl
