#include "scan/file_system_calls.h"

#include "base/text.h"
#include "robustness/api_error_text.h"
#include "scan/list_handover.h"
#include "scan/yield.h"

namespace hl {

namespace {

// A folder that cannot be read does exist, unless its disk does not answer.
Result<> lookAtFolder(ScanContext& scan, std::string_view path) {
    const std::string whole = ToLongPath(path, scan.paths);
    if (!scan.fileSystem.mayHang(whole)) {
        const auto facts = scan.fileSystem.look(whole);
        return facts ? Result<>() : facts.error();
    }
    Yield yield(scan.state, scan.pump);
    ReaderWait wait(yield, scan.pump, [&] { tellOfWait(scan, path); });
    const auto reader = scan.fileSystem.read(whole, {.onlyOpen = true}, &wait);
    const auto block = reader->next();
    if (block == nullptr || !block->error) return {};
    const ErrorKind kind = block->error->kind;
    return kind == ErrorKind::kNotFound || kind == ErrorKind::kNoAnswer ? *block->error : Result<>();
}

}  // namespace

bool xExistFile(ScanContext& scan, std::string_view path) {
    return !path.empty() && scan.fileSystem.look(ToLongPath(path, scan.paths));
}

Result<> xExistFolder_W(ScanContext& scan, std::string_view path) {
    if (path.size() > 1 && path.ends_with(scan.paths.separator)) path.remove_suffix(1);
    if (path.empty()) return Error{.kind = ErrorKind::kNotFound};
    return lookAtFolder(scan, path);
}

bool isFolder(const ScanContext& scan, std::string_view path) {
    const auto facts = scan.fileSystem.look(path);
    return facts && facts->isFolder;
}

void tellOfWait(ScanContext& scan, std::string_view path) {
    scan.host.diskSilent(scan.texts.TL(9631, "Warten auf %1 ...", {visible(path)}));
}

void tellOfSilence(ScanContext& scan, const Error& disk, bool missing) {
    if (missing) scan.host.notRead(disk.name, ApiErrorText(true, disk));
    const std::string text = scan.texts.TL(
        9632, "%1 antwortet nicht. Verknüpfungen dorthin gelten als Dateien.", {visible(disk.name)});
    scan.log.LogProtokoll(text);
    scan.host.diskSilent(text);
}

bool hasVanished(const ScanContext& scan, std::string_view path) {
    const auto facts = scan.fileSystem.look(ToLongPath(path, scan.paths));
    return !facts && isNotThere(facts.error());
}

bool isNotThere(const Error& error) {
    return error.kind == ErrorKind::kNotFound || error.kind == ErrorKind::kNoFolder;
}

bool isSilent(const ScanContext& scan, std::string_view path) {
    return scan.fileSystem.look(ToLongPath(path, scan.paths)).failedAs(ErrorKind::kNoAnswer);
}

std::int32_t xGetHardlinkCount(ScanContext& scan, const std::string& path, std::string* id,
                               std::string& error) {
    const auto facts = scan.fileSystem.look(ToLongPath(path, scan.paths));
    if (!facts) {
        error = scan.texts.TL(
            4071, "Die Datei '%1' konnte nicht geöffnet werden. (xGetHardlinkCount\\CreateFileWide: %2)",
            {path, ApiErrorText(true, facts.error())});
        return 0;
    }
    if (id != nullptr) *id = fileId(facts->inode);
    return facts->links == 1 ? 0 : static_cast<std::int32_t>(facts->links);
}

std::string xGetJunctionPath(ScanContext& scan, const std::string& path, std::string& error) {
    const auto target = scan.fileSystem.target(path);
    if (!target) error = ApiErrorText(true, target.error()) + " (CreateFile)";
    return target.valueOr("");
}

}  // namespace hl
