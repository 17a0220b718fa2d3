// Passes reports of errors to the log and to the user: with a window in a dialog, one after the other;
// without one as a line of standard error each. Reports that come before the window is visible wait for it,
// because a dialog before it would stand alone and delay the window. For the thread of the logic.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "app/log.h"
#include "app/texts.h"
#include "mainwindow/error_form.h"
#include "platform/console.h"
#include "robustness/debug.h"

namespace hl {

/// What the object uses; all of it outlives it. `texts` is not used before a report is shown.
struct ProgramErrorServices {
    Log& log;
    Console& console;
    const Texts& texts;
    std::string errorLog;  ///< The full path, so that the user can find the file.
};

class ProgramErrors final : public ErrorSink {
  public:
    explicit ProgramErrors(ProgramErrorServices services) : services_(std::move(services)) {}

    void LogError(const std::string& text, bool blankLine, bool stamp) override;
    void showReport(const std::string& text, const std::string& summary) override;

    /// Tells that a window will come, or that none will: then waiting reports go to standard error.
    void waitForWindow(bool waits);
    /// Sets the window's dialog, which is shown after windowShown(); null when the window is gone.
    void setDialog(ErrorReports* dialog);
    void windowShown() { waitForWindow(false); }

  private:
    ProgramErrorServices services_;
    ErrorReports* dialog_ = nullptr;
    bool waits_ = false;
    std::vector<std::pair<std::string, std::string>> waiting_;  ///< The reports with their summaries.
};

}  // namespace hl
