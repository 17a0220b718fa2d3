// frmFehler: shows the report of an error and lets the user go on or quit. Thread of the logic.
//
// It works in a program in which something has just gone wrong, so what it does is simple, and the failure of
// one button leaves the others working.
#pragma once

#include <array>
#include <functional>
#include <string>

#include "app/texts.h"
#include "base/path.h"
#include "platform/files.h"
#include "platform/form.h"
#include "platform/system_facts.h"
#include "platform/window.h"

namespace hl {

/// What the dialog asks of the desktop. May throw: the dialog goes on.
class ErrorDesk {
  public:
    virtual ~ErrorDesk() = default;
    virtual void copyText(const std::string& text) = 0;
    /// To be pasted when the program has ended.
    virtual void leaveText(const std::string& text) = 0;
    virtual void openUrl(const std::string& url) = 0;
    /// A message with one button; the title may be empty.
    virtual void inform(MessageKind kind, const std::string& title, const std::string& text) = 0;
    /// Asks for a printer, and prints.
    virtual void print(const PrintJob& job) = 0;
    /// Shows a form, and returns when it is done with.
    virtual void showForm(Form& form) = 0;
};

/// The desktop as the main window knows it. Its messages have no title of their own: it is a line above.
class WindowDesk final : public ErrorDesk {
  public:
    explicit WindowDesk(Window& window) : window_(window) {}
    void copyText(const std::string& text) override { window_.copyText(text); }
    void leaveText(const std::string& text) override { window_.leaveText(text); }
    void openUrl(const std::string& url) override { window_.openUrl(url); }
    void inform(MessageKind kind, const std::string& title, const std::string& text) override {
        window_.message(kind, title.empty() ? text : title + "\n\n" + text);
    }
    void print(const PrintJob& job) override { window_.print(job); }
    void showForm(Form& form) override { window_.showForm(form); }

  private:
    Window& window_;
};

/// All of it outlives the form.
struct ErrorFormServices {
    const Texts& texts;
    Files& files;
    SystemFacts& facts;
    ErrorDesk& desk;
    const PathRules& paths;
    std::string dataFolder;  ///< Where reports are saved.
    std::string version;     ///< "1.2", for the subject of a mail.
    std::string mail;        ///< The address for reports; empty where there is none.
    /// Ends the process at once: nothing is closed, nothing saved.
    std::function<void()> endProcess;
};

class ErrorForm {
  public:
    ErrorForm(const ErrorFormServices& services, const std::string& report);
    ErrorForm(const ErrorForm&) = delete;
    ErrorForm& operator=(const ErrorForm&) = delete;

    /// How a window shows the form. It refers to this object's controls.
    Form form();

    /// The report goes to the clipboard, and the program goes on.
    void cmdWeiter_Click();
    /// The same, but the process ends.
    void cmdBeenden_Click();
    /// Into a new file ERRxxxx.txt of the data folder; says which, or why not.
    void cmdSpeichern_Click();
    /// As one text, on the printer that the user chooses.
    void cmdDrucken_Click();
    /// A mail to the address for reports; the report itself travels in the clipboard.
    void cmdEmail_Click();

    std::string caption, lblEinleitung;
    TextBox txtInfo{.readOnly = true, .multiLine = true};
    TextBox txtHelp{.readOnly = true, .multiLine = true, .lines = 3};
    CommandButton cmdEmail, cmdDrucken, cmdSpeichern, cmdWeiter, cmdBeenden;
    bool loaded = true;  ///< False: the form is done with.

  private:
    enum HelpText : std::size_t { kHelpDrucken, kHelpEmail, kHelpWeiter, kHelpBeenden, kHelpSpeichern };

    FormItem button(CommandButton& control, HelpText help, void (ErrorForm::*click)());
    void copyReport();

    ErrorFormServices services_;
    std::array<std::string, 5> help_;
    std::string infoName_, helpName_;
};

/// Shows reports, one form at a time: a report that comes while one is shown takes the place of its text.
class ErrorReports {
  public:
    explicit ErrorReports(ErrorFormServices services) : services_(std::move(services)) {}
    /// Returns when the user goes on, or at once where a form is open.
    void show(const std::string& report);

  private:
    ErrorFormServices services_;
    ErrorForm* open_ = nullptr;
    Form* shown_ = nullptr;
};

}  // namespace hl
