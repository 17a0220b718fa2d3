#include "mainwindow/error_form.h"

#include <cstdio>

#include "app/product.h"
#include "base/scope_exit.h"
#include "base/text.h"
#include "output/print_job.h"
#include "robustness/api_error_text.h"
#include "robustness/attempt.h"
#include "robustness/error_mail.h"

namespace hl {

namespace {

constexpr unsigned kMostSaved = 0xffff;

// Returns an unused name in the folder; if no such name is found, the last one tried.
std::string freePath(Files& files, const std::string& folder, const PathRules& paths) {
    char name[16];
    for (unsigned number = 1; number <= kMostSaved; ++number) {
        snprintf(name, sizeof name, "ERR%04X.txt", number);
        std::string path = joinPath(folder, name, paths);
        if (!files.exists(path)) return path;
    }
    return joinPath(folder, "ERR.txt", paths);
}

// Writes the text to a new file; `path` receives its path.
Result<> writeNew(Files& files, const std::string& folder, const PathRules& paths, std::string_view text,
                  std::string& path) {
    const auto lock = files.lockFolderOf(joinPath(folder, "ERR.txt", paths));
    path = freePath(files, folder, paths);
    return replaceWhole(files, path, text);
}

}  // namespace

ErrorForm::ErrorForm(const ErrorFormServices& services, const std::string& report) : services_(services) {
    const Texts& texts = services_.texts;
    caption = texts.TL(9453, "Error Report");
    lblEinleitung =
        services_.mail.empty()
            ? texts.TL(9608,
                       "Ein unerwarteter Fehler ist aufgetreten und wurde von der Anwendung abgefangen. Was "
                       "geschehen ist, steht in diesem Fehlerreport und in der Datei error.log.")
            : texts.TL(447,
                       "Ein unerwarteter Fehler ist aufgetreten und wurde von der Anwendung abgefangen. "
                       "Senden Sie uns bitte den Fehlerreport an die Emailadresse '%1', damit der Fehler "
                       "analysiert und behoben werden kann.",
                       {services_.mail});
    txtInfo.text = report;
    cmdEmail.caption = texts.TL(9454, "&Email");
    cmdDrucken.caption = texts.TL(9455, "&Drucken");
    cmdSpeichern.caption = texts.TL(9456, "&Speichern");
    cmdWeiter.caption = texts.TL(9457, "&Weiter");
    cmdBeenden.caption = texts.TL(9458, "&Beenden");
    infoName_ = texts.TL(9460, "Fehlerreport");
    helpName_ = texts.TL(9461, "Hilfe");
    help_ = {
        texts.TL(448, "Hiermit können Sie den Fehlerreport ausdrucken."),
        texts.TL(449, "Hiermit wird Ihr Emailprogramm aufgerufen und eine neue Email geöffnet."),
        texts.TL(450,
                 "Das Fortsetzen der Anwendung kann unter Umständen zu unvorhersehbaren Problemen und "
                 "weiteren Fehlermeldungen führen."),
        texts.TL(451,
                 "Hiermit wird die Anwendung beendet. Es können unter Umständen weitere Fehlermeldungen "
                 "auftreten."),
        texts.TL(3007, "Hiermit wird der Fehlerreport in eine Datei gespeichert."),
    };
}

FormItem ErrorForm::button(CommandButton& control, HelpText help, void (ErrorForm::*click)()) {
    FormItem item{.control = &control, .tooltip = help_[help]};
    item.changed = [this, click] { (this->*click)(); };
    item.hovered = [this, help] { txtHelp.text = help_[help]; };
    return item;
}

Form ErrorForm::form() {
    std::vector<FormItem> buttons = {button(cmdWeiter, kHelpWeiter, &ErrorForm::cmdWeiter_Click)};
    if (!services_.mail.empty()) buttons.push_back(button(cmdEmail, kHelpEmail, &ErrorForm::cmdEmail_Click));
    buttons.push_back(button(cmdDrucken, kHelpDrucken, &ErrorForm::cmdDrucken_Click));
    buttons.push_back(button(cmdSpeichern, kHelpSpeichern, &ErrorForm::cmdSpeichern_Click));
    buttons.push_back(button(cmdBeenden, kHelpBeenden, &ErrorForm::cmdBeenden_Click));
    return {.name = "frmFehler",
            .caption = caption,
            .items = {{.control = &lblEinleitung},
                      {.control = &txtInfo, .row = 1, .name = infoName_},
                      {.control = &txtHelp, .row = 2, .name = helpName_}},
            .buttons = std::move(buttons),
            .cancel = [this] { loaded = false; },
            .onTop = true,
            .warning = true,
            .loaded = &loaded};
}

void ErrorForm::copyReport() {
    attempt([this] { services_.desk.copyText(txtInfo.text); });
}

void ErrorForm::cmdWeiter_Click() {
    copyReport();
    loaded = false;
}

void ErrorForm::cmdBeenden_Click() {
    attempt([this] { services_.desk.leaveText(txtInfo.text); });
    loaded = false;
    services_.endProcess();
}

void ErrorForm::cmdSpeichern_Click() {
    std::string path;
    const Result<> saved =
        writeNew(services_.files, services_.dataFolder, services_.paths, txtInfo.text + "\r\n", path);
    if (saved) return services_.desk.inform(MessageKind::kInformation, "", visible(path));
    const std::string reason = visible(path) + ": " + ApiErrorText(false, saved.error());
    services_.desk.inform(MessageKind::kError, "",
                          services_.texts.TL(9459, "Der Fehlerreport wurde nicht gespeichert: %1", {reason}));
}

void ErrorForm::cmdDrucken_Click() {
    attempt([this] {
        services_.desk.print(printedText(services_.texts, services_.files, caption, txtInfo.text));
    });
}

void ErrorForm::cmdEmail_Click() {
    const std::string hint = services_.texts.TL(
        3005,
        "Bitte die Fehlerinformationen aus der Zwischenablage mit der Tastenkombination STRG+V oder per "
        "Kontextmenü der rechten Maustaste in die neue Email einfügen.");
    copyReport();
    attempt([&] {
        services_.desk.openUrl(reportMailLink(services_.mail, kReportName, services_.version, hint));
    });
    services_.desk.inform(MessageKind::kInformation, services_.texts.TL(3006, "WICHTIGER HINWEIS"), hint);
}

void ErrorReports::show(const std::string& report) {
    if (open_ != nullptr) {
        open_->txtInfo.text = report;
        if (shown_->redraw) shown_->redraw();
        return;
    }
    ErrorForm frmFehler(services_, report);
    Form form = frmFehler.form();
    const ScopeExit closed([this] {
        open_ = nullptr;
        shown_ = nullptr;
    });
    open_ = &frmFehler;
    shown_ = &form;
    services_.desk.showForm(form);
}

}  // namespace hl
