#include "fileops/file_run.h"

#include <string_view>
#include <utility>

#include "base/text.h"
#include "scan/driver.h"
#include "scan/on_disk.h"

namespace hl {

namespace {

constexpr std::uint64_t kPumpInterval = 50;     // Milliseconds without input.
constexpr std::uint64_t kStatusInterval = 100;  // Milliseconds.
constexpr std::size_t kLongestStatus = 500;     // In bytes; no screen shows more.

}  // namespace

FileRun::FileRun(const FileOps& ops, std::string status)
    : ops_(ops), status_(std::move(status)), stopped_(ops.host.closed()) {
    ops_.scan.state.CancelState = kCancelNone;
    DisableControls(ops_.scan, false);
    ops_.scan.controls.setBusyPointer(true);
}

FileRun::~FileRun() {
    ops_.scan.state.CancelState = kCancelNone;
    EnableControls(ops_.scan);
    ops_.scan.controls.setBusyPointer(false);
    if (lastStatus_ != 0) ops_.host.setFirstPanel(ops_.scan.texts.TL(3525, "OK."));
}

bool FileRun::stopped() {
    letMessagesRun();
    return stopped_;
}

// A running removal uses CancelState itself, so what the user pressed is remembered in stopped_.
void FileRun::letMessagesRun() {
    const std::uint64_t now = ops_.scan.pump.GetTickCount();
    if (now >= lastPump_ + kPumpInterval || ops_.scan.pump.GetInputState()) {
        lastPump_ = now;
        ops_.scan.pump.PumpMessages();
    }
    stopped_ = stopped_ || ops_.scan.state.CancelState != kCancelNone;
}

bool FileRun::stillAt(const std::string& path, bool silent) {
    const std::uint64_t now = ops_.scan.pump.GetTickCount();
    if (!path.empty() && now >= lastStatus_ + kStatusInterval) {
        lastStatus_ = now;
        std::string text = status_;
        if (const std::size_t at = text.find("%1"); at != std::string::npos)
            text.replace(at, 2, visible(path.substr(0, kLongestStatus)));
        ops_.host.setFirstPanel(text);
    }
    ops_.scan.state.DiskSilent = silent;
    letMessagesRun();
    ops_.scan.state.DiskSilent = false;
    return !stopped_;
}

std::string noAnswerText(const FileOps& ops, const std::string& path) {
    return ops.scan.texts.TL(9654,
                             "Der Datenträger von '%1' antwortet nicht. Ob und wie weit der Vorgang noch "
                             "ausgeführt wird, ist nicht bekannt.",
                             {path});
}

std::string otherFolderText(const FileOps& ops, const std::string& path) {
    return ops.scan.texts.TL(9617,
                             "Wo '%1' liegt, ist jetzt ein anderer Ordner als der eingelesene; es wurde "
                             "nichts verändert. Lesen Sie die Quelle neu ein.",
                             {path});
}

FilePlace placeOf(const ScanContext& scan, const std::string& path) {
    std::string_view base;
    const Grid& report = scan.tvwPL;
    for (Row row = firstLiveSource(scan); row != kNoRow; row = nextLiveSource(scan, row)) {
        const std::string_view source = report.text(row);
        const bool holds = source == "/" || (path.starts_with(source) && path.size() > source.size() &&
                                             path[source.size()] == '/');
        if (holds && source.size() > base.size()) base = source;
    }
    if (base.empty()) base = path;
    const auto found = scan.state.sourceIds.find(base);
    FilePlace place{.base = std::string(base)};
    if (found != scan.state.sourceIds.end()) place.id = found->second;
    if (path == base) return place;
    place.below = path.substr(base == "/" ? 1 : base.size() + 1);
    place.followLinks = scan.options.ScanHardlinks == 1;
    return place;
}

}  // namespace hl
