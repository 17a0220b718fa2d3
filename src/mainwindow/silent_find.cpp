#include "mainwindow/silent_find.h"

#include "base/path.h"
#include "robustness/api_error_text.h"
#include "robustness/trap.h"
#include "scan/file_system_calls.h"

namespace hl {

SilentFind::SilentFind(ScanContext& scan, ScanHost& to, ReportFile& file, const FoundLines& lines)
    : scan_(scan), to_(to), file_(file), lines_(lines) {
    lines_.appendHeader(file_.block());
}

bool SilentFind::run(const std::string& folder, const FindOrder& order) {
    if (const Result<> exists = xExistFolder_W(scan_, folder); !exists) {
        const Error& error = exists.error();
        to_.sourceMissing(folder, isNotThere(error) ? "" : ApiErrorText(true, error));
        return true;
    }
    entered_ = true;
    return guarded(scan_.diagnostics, {.routine = "SilentFind"}, [&] {
        return findFiles(scan_, AddTrailingSlash(folder, scan_.paths), order, *this) == FindEnd::kDone;
    });
}

bool SilentFind::found(const FoundFile& file) {
    lines_.append(file_.block(), file);
    file_.endLine();
    return file_.isFine();
}

}  // namespace hl
