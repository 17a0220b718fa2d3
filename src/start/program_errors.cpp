#include "start/program_errors.h"

#include "base/text.h"

namespace hl {

void ProgramErrors::LogError(const std::string& text, bool blankLine, bool stamp) {
    services_.log.LogError(text, blankLine, stamp);
}

void ProgramErrors::showReport(const std::string& text, const std::string& summary) {
    if (waits_) return waiting_.push_back({text, summary});
    if (dialog_ != nullptr) return dialog_->show(text);
    services_.console.errorLine(services_.texts.TL(9609, "Unerwarteter Fehler: %1. Näheres steht in %2.",
                                                   {visible(summary), visible(services_.errorLog)}));
}

void ProgramErrors::waitForWindow(bool waits) {
    waits_ = waits;
    if (waits) return;
    for (const auto& [text, summary] : std::exchange(waiting_, {})) showReport(text, summary);
}

void ProgramErrors::setDialog(ErrorReports* dialog) {
    dialog_ = dialog;
    waitForWindow(dialog != nullptr);
}

}  // namespace hl
