#include "mainwindow/main_form.h"

#include <cerrno>

#include "base/text.h"
#include "output/report_file.h"
#include "robustness/api_error_text.h"
#include "views/list_columns.h"
#include "views/report_columns.h"

namespace hl {

namespace {
constexpr std::uint64_t kProgressInterval = 200;  // Milliseconds between two changes of the progress line.
}

MainForm::MainForm(const FormServices& services, bool silentRun)
    : services_(services), scan_{state_,         options_,
                                 cboOrdner_,     tvwPL_,
                                 lvwTOP_,        lvwHardlinks_,
                                 lvwJunctions_,  services.fileSystem,
                                 services.pump,  *this,
                                 services.texts, services.log,
                                 services.facts, services.diagnostics,
                                 services.paths, services.numbers,
                                 services.bases} {
    state_.SilentRun = silentRun;
}

void MainForm::Form_Load() {
    OptionenLadenMain(options_, services_.settings, services_.diagnostics, false);
    for (const OptionBar bar : {OptionBar::kMain, OptionBar::kFiles, OptionBar::kTop, OptionBar::kHardlinks})
        loadBarOptions(options_, services_.settings, services_.diagnostics, bar);
    Init_Tree(tvwPL_, options_, services_.texts);
    Init_TopList(lvwTOP_, options_, services_.texts);
    Init_HardlinksList(lvwHardlinks_, options_, services_.texts);
    Init_JunctionList(lvwJunctions_, services_.texts);
}

// --- a run with no window

bool MainForm::runSilent(const std::string& commandLine) {
    const SilentOrder order = KZGetFoldersFromCommand(commandLine);
    int error = 0;
    const auto target = services_.files.replace(order.outputFile, error);
    if (!target) return reportNotWritten(order.outputFile, ApiErrorText(false, error, services_.facts));
    state_.SourceQueue.assign(order.sources.begin(), order.sources.end());
    const std::uint32_t errorsBefore = services_.diagnostics.errcount();
    Ordnerliste_Abarbeiten(scan_);
    services_.console.progress("");
    // Nobody knows what an error of the program has left out, so an older report is worth more.
    const bool whole = services_.diagnostics.errcount() == errorsBefore;
    if (!whole) reportNotWritten(order.outputFile, services_.texts.TL(9611, "ein unerwarteter Fehler"));
    const bool written = whole && writeReport(order, *target);
    return written && !somethingFailed_ && services_.diagnostics.errcount() == 0;
}

bool MainForm::writeReport(const SilentOrder& order, ReplacingFile& target) {
    const Texts& texts = services_.texts;
    if (tvwPL_.rowCount() == 0)
        return reportNotWritten(order.outputFile, texts.TL(9610, "es wurde nichts eingelesen"));
    SaveForm frmSave(SaveServices{tvwPL_, options_, services_.texts, services_.numbers, services_.files,
                                  services_.diagnostics, state_, services_.pump, services_.paths, nullptr,
                                  &target});
    frmSave.format = order.format;
    std::string path = order.outputFile;
    if (frmSave.SPEICHERN(path, order.levels, order.delimiterIndex)) return true;
    const int error = frmSave.fileError();
    // The reader of a pipe may leave when it has read enough; that is no failure to report.
    if (error == EPIPE) return false;
    const std::string reason =
        error != 0 ? ApiErrorText(false, error, services_.facts) : texts.TL(9611, "ein unerwarteter Fehler");
    return reportNotWritten(path, reason + leftBehindText(texts, frmSave.leftBehind()));
}

// Reports that the report was not written; returns false for the caller to return.
bool MainForm::reportNotWritten(const std::string& file, const std::string& reason) {
    const Texts& texts = services_.texts;
    const std::string name = file == kStandardOutput ? texts.TL(9612, "(Standardausgabe)") : visible(file);
    services_.console.errorLine(texts.TL(9020, "Der Bericht %1 wurde nicht geschrieben: %2", {name, reason}));
    return false;
}

// --- what a scan tells

void MainForm::lockControls(bool) {
    for (Grid* grid : {&tvwPL_, &lvwTOP_, &lvwHardlinks_, &lvwJunctions_}) grid->setEnabled(false);
}

void MainForm::unlockControls() {
    for (Grid* grid : {&tvwPL_, &lvwTOP_, &lvwHardlinks_, &lvwJunctions_}) grid->setEnabled(true);
}

void MainForm::statusAfterRun(const std::string& text) {
    panel1_ = text;
    services_.console.progress("");
}

void MainForm::folderEntered(std::string_view path) {
    if (!services_.console.showsProgress()) return;
    const std::uint64_t tick = services_.pump.GetTickCount();
    if (tick < lastProgressTick_ + kProgressInterval) return;
    lastProgressTick_ = tick;
    services_.console.progress(visible(path));
}

void MainForm::sourceMissing(const std::string& source, const std::string& reason) {
    if (!reason.empty()) return notRead(source, reason);
    services_.console.errorLine(services_.texts.TL(9021, "Die Quelle %1 gibt es nicht.", {visible(source)}));
    somethingFailed_ = true;
}

void MainForm::scanNotice(const std::string& text) {
    services_.console.errorLine(text);
}

void MainForm::notRead(std::string_view path, const std::string& reason) {
    services_.console.errorLine(services_.texts.TL(9022, "Nicht gelesen: %1: %2", {visible(path), reason}));
    somethingFailed_ = true;
}

}  // namespace hl
