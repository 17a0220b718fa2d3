#include "mainwindow/saved_text.h"

#include <string>

#include "base/text.h"
#include "output/report_file.h"

namespace hl {

void saveText(const Services& services, SaveDialog& dialog, const Window& window, std::string_view text,
              const SaveQuestion& question) {
    const std::string path = dialog.askSavePath(question);
    if (path.empty()) return;
    std::string reason;
    if (const auto target = services.files.replace(path); !target) {
        reason = ApiErrorText(false, target.error());
    } else {
        ReportFile file(**target);
        file.block() = text;
        if (const Result<> written = file.commit(); !written)
            reason = ApiErrorText(false, written.error()) +
                     leftBehindText(services.texts, (*target)->leftBehind());
    }
    if (reason.empty()) return;
    window.dialogs.message(MessageKind::kError, services.texts.TL(9812, "'%1' wurde nicht gespeichert: %2",
                                                                  {visible(path), reason}));
}

}  // namespace hl
