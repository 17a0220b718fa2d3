// frmFehler shows the report of an error and lets the user go on or quit. For the thread of the logic.
//
// Something has just gone wrong in the program, so the dialog does only simple things, and if one button
// fails, the others still work.
#pragma once

#include <array>
#include <functional>
#include <string>

#include "app/texts.h"
#include "base/path.h"
#include "platform/files.h"
#include "platform/form.h"
#include "platform/window.h"

namespace hl {

/// What the dialog asks of the desktop. The calls may throw; the dialog then goes on.
class ErrorDesk {
  public:
    virtual ~ErrorDesk() = default;
    virtual void copyText(const std::string& text) = 0;
    /// Leaves a text that can be pasted even after the program has ended.
    virtual void leaveText(const std::string& text) = 0;
    virtual void openUrl(const std::string& url) = 0;
    /// Shows a message with one button; the title may be empty.
    virtual void inform(MessageKind kind, const std::string& title, const std::string& text) = 0;
    /// Asks for a printer and prints.
    virtual void print(const PrintJob& job) = 0;
    /// Shows a form, and returns when the form is done with.
    virtual void showForm(Form& form) = 0;
};

/// The desktop as the main window knows it. Its messages have no title, so the title becomes a line above the
/// text.
class WindowDesk final : public ErrorDesk {
  public:
    explicit WindowDesk(const Window& window) : window_(window) {}
    void copyText(const std::string& text) override { window_.clipboard.copyText(text); }
    void leaveText(const std::string& text) override { window_.clipboard.leaveText(text); }
    void openUrl(const std::string& url) override { window_.frame.openUrl(url); }
    void inform(MessageKind kind, const std::string& title, const std::string& text) override {
        window_.dialogs.message(kind, title.empty() ? text : title + "\n\n" + text);
    }
    void print(const PrintJob& job) override { window_.dialogs.print(job); }
    void showForm(Form& form) override { window_.dialogs.showForm(form); }

  private:
    const Window& window_;
};

/// What the form uses; everything outlives it.
struct ErrorFormServices {
    const Texts& texts;
    Files& files;
    ErrorDesk& desk;
    const PathRules& paths;
    std::string dataFolder;  ///< The folder where reports are saved.
    std::string version;     ///< "1.2", for the subject of a mail.
    std::string mail;        ///< The address for reports; may be empty.
    /// Ends the process at once; nothing is closed or saved.
    std::function<void()> endProcess;
};

class ErrorForm {
  public:
    ErrorForm(const ErrorFormServices& services, const std::string& report);
    ErrorForm(const ErrorForm&) = delete;
    ErrorForm& operator=(const ErrorForm&) = delete;

    /// Tells a window how to show the form. The result refers to this object's controls.
    Form form();

    /// Puts the report on the clipboard; the program goes on.
    void cmdWeiter_Click();
    /// Puts the report on the clipboard and ends the process.
    void cmdBeenden_Click();
    /// Saves the report as a new file ERRxxxx.txt in the data folder; tells which one, or why that failed.
    void cmdSpeichern_Click();
    /// Prints the report on a printer that the user chooses.
    void cmdDrucken_Click();
    /// Begins a mail to the address for reports; the report itself is on the clipboard.
    void cmdEmail_Click();

    std::string caption, lblEinleitung;
    TextBox txtInfo{.readOnly = true, .multiLine = true};
    TextBox txtHelp{.readOnly = true, .multiLine = true, .lines = 3};
    CommandButton cmdEmail, cmdDrucken, cmdSpeichern, cmdWeiter, cmdBeenden;
    bool loaded = true;  ///< False once the form is done with.

  private:
    enum HelpText : std::size_t { kHelpDrucken, kHelpEmail, kHelpWeiter, kHelpBeenden, kHelpSpeichern };

    FormItem button(CommandButton& control, HelpText help, void (ErrorForm::*click)());
    void copyReport();

    ErrorFormServices services_;
    std::array<std::string, 5> help_;
    std::string infoName_, helpName_;
};

/// Shows reports, one form at a time: while a form is open, a new report replaces its text.
class ErrorReports {
  public:
    explicit ErrorReports(ErrorFormServices services) : services_(std::move(services)) {}
    /// Returns when the user goes on, or at once if a form is open already.
    void show(const std::string& report);

  private:
    ErrorFormServices services_;
    ErrorForm* open_ = nullptr;
    Form* shown_ = nullptr;
};

}  // namespace hl
