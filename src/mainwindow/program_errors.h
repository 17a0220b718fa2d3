// Where the reports of errors go: into the log, and to the user. With a window he sees them in a dialog, one
// after the other; with none, each is a line of standard error. What comes before the window is on screen
// waits for it: a dialog would stand there alone, and keep the window from coming. Thread of the logic.
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

/// All of it outlives this object; `texts` is first used when a report is shown.
struct ProgramErrorServices {
    Log& log;
    Console& console;
    const Texts& texts;
    std::string errorLog;  ///< The whole path, for the user to look there.
};

class ProgramErrors final : public ErrorSink {
  public:
    explicit ProgramErrors(ProgramErrorServices services) : services_(std::move(services)) {}

    void LogError(const std::string& text, bool blankLine, bool stamp) override;
    void showReport(const std::string& text, const std::string& summary) override;

    /// A window is to come, or not to come after all (and what waited goes to standard error).
    void waitForWindow(bool waits);
    /// The window's dialog, which is shown from windowShown() on; null when the window is gone.
    void setDialog(ErrorReports* dialog);
    void windowShown() { waitForWindow(false); }

  private:
    ProgramErrorServices services_;
    ErrorReports* dialog_ = nullptr;
    bool waits_ = false;
    std::vector<std::pair<std::string, std::string>> waiting_;  ///< Reports and their summaries.
};

}  // namespace hl
