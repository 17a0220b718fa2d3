#include "scan/file_system_calls.h"

#include "base/text.h"
#include "platform/patience.h"
#include "robustness/api_error_text.h"
#include "scan/list_handover.h"
#include "scan/yield.h"

namespace hl {

namespace {
constexpr int kNotFound = 2, kFolderNotFound = 20;

// Returns why a folder does not exist. One that cannot be read for another reason does exist, so that gives
// 0.
int errorOfFolder(ScanContext& scan, std::string_view path) {
    const std::string whole = ToLongPath(path, scan.paths);
    if (!scan.fileSystem.mayHang(whole)) return scan.fileSystem.look(whole).error;
    Yield yield(scan.state, scan.pump);
    ReaderWait wait(yield, scan.pump, [&] { tellOfWait(scan, path); });
    const auto reader = scan.fileSystem.read(whole, {.onlyOpen = true}, &wait);
    const auto block = reader->next();
    const int error = block == nullptr ? 0 : block->error;
    return error == kNotFound || error == kNoAnswerError ? error : 0;
}

}  // namespace

bool xExistFile(ScanContext& scan, std::string_view path) {
    return !path.empty() && scan.fileSystem.look(ToLongPath(path, scan.paths)).error == 0;
}

bool xExistFolder_W(ScanContext& scan, std::string_view path, int* error) {
    if (path.size() > 1 && path.ends_with(scan.paths.separator)) path.remove_suffix(1);
    if (error == nullptr) return xExistFile(scan, path);
    *error = path.empty() ? kNotFound : errorOfFolder(scan, path);
    return *error == 0;
}

void tellOfWait(ScanContext& scan, std::string_view path) {
    scan.host.diskSilent(scan.texts.TL(9631, "Warten auf %1 ...", {visible(path)}));
}

bool hasVanished(const ScanContext& scan, std::string_view path) {
    return isNotThere(scan.fileSystem.look(ToLongPath(path, scan.paths)).error);
}

bool isNotThere(int error) {
    return error == kNotFound || error == kFolderNotFound;
}

bool isSilent(const ScanContext& scan, std::string_view path) {
    return scan.fileSystem.look(ToLongPath(path, scan.paths)).error == kNoAnswerError;
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
