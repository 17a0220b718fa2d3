#include "output/save_report.h"

#include <limits>

#include "base/text.h"
#include "output/report_file.h"
#include "robustness/trap.h"
#include "scan/not_read.h"

namespace hl {

SaveForm::SaveForm(ScanContext& scan, SaveDialog& dialog)
    : FormatChoice(scan.texts), scan_(scan), dialog_(dialog) {
    fillControls();
    selectOption(optWasSpeichern, kAllFolders);
    optWasSpeichern[kSelectedFolder].enabled = scan_.tvwPL.selectedCount() > 0;
    selectOption(optLevels, kUnfoldedLevels);
}

void SaveForm::fillControls() {
    const Texts& texts = scan_.texts;
    caption = texts.TL(3612, "Speichern");
    lblWasSpeichern = texts.TL(3709, "Was soll gespeichert werden?");
    if (isIncomplete(scan_.tvwPL))
        lblWasSpeichern =
            texts.TL(9816, "Der Bericht ist unvollständig, denn das Einlesen wurde angehalten.") + "\n" +
            lblWasSpeichern;
    optWasSpeichern[kAllFolders].caption = texts.TL(3710, "Alle Ordner");
    optWasSpeichern[kSelectedFolder].caption = texts.TL(3711, "Ausgewählter Ordner");
    lblLevels = texts.TL(3524, "Wieviele Ordnerebenen sollen gespeichert werden?");
    optLevels[kAllFolderLevels].caption = texts.TL(3608, "Alle Ordnerebenen");
    lblLevelsUnit = texts.TL(3611, "Ordnerebenen");
    optLevels[kUnfoldedLevels].caption = texts.TL(3607, "Aktuelle Ordneransicht");
    chkSpace.caption = texts.TL(9828, "Auch den Platz auf dem Datenträger und die neueste Änderung");
    OKButton.caption = texts.TL(3610, "OK");
    CancelButton.caption = texts.TL(3609, "Abbrechen");
}

Form SaveForm::form() {
    std::vector<FormItem> items =
        itemsOf({lblWasSpeichern, optWasSpeichern, lblLevels, optLevels, txtLevels, lblLevelsUnit});
    items.push_back({.control = &chkSpace, .row = kRowsOfChoice, .columnSpan = 3});
    for (FormItem& item : formatItems(kRowsOfChoice + 1, 2)) items.push_back(std::move(item));
    return {.name = "frmSave",
            .caption = caption,
            .items = std::move(items),
            .buttons = {{.control = &OKButton, .changed = [this] { OKButton_Click(); }},
                        {.control = &CancelButton, .changed = [this] { CancelButton_Click(); }}},
            .cancel = [this] { CancelButton_Click(); },
            .loaded = &loaded,
            .hourglass = &hourglass};
}

bool SaveForm::SPEICHERN() {
    ReportRun run(scan_);
    const auto body = [&] {
        run.order.scope = GetOptionButtonSelectedIndex(optWasSpeichern);
        run.order.levels = wantedLevels();
        run.order.delimiter = chosenDelimiter();
        run.order.withSpace = chkSpace.checked;
        hourglass = true;
        run.findStart();
        run.order.path = askPath(dialog_, scan_.paths);
        bool written = false;
        if (!run.order.path.empty()) {
            setButtonsEnabled(false);
            written = write(run);
            setButtonsEnabled(true);
        }
        hourglass = false;
        loaded = false;
        return written;
    };
    return guarded(scan_.diagnostics, {.module = "frmSave"}, body, [&] { return run.values(); });
}

std::int32_t SaveForm::wantedLevels() const {
    switch (GetOptionButtonSelectedIndex(optLevels)) {
        case kAllFolderLevels:
            return kAllLevels;
        case kSomeFolderLevels:
            break;
        default:
            return 0;
    }
    const auto number = parseInteger(txtLevels.text);
    if (!number) throw Fault(kFaultTypeMismatch, kSaveRoutine, "Type mismatch");
    if (*number < std::numeric_limits<std::int32_t>::min() ||
        *number > std::numeric_limits<std::int32_t>::max())
        raiseOverflow(kSaveRoutine);
    return static_cast<std::int32_t>(*number);
}

void SaveForm::setButtonsEnabled(bool enabled) {
    OKButton.enabled = CancelButton.enabled = enabled;
    for (OptionButton& option : optLevels) option.enabled = enabled;
}

bool SaveForm::write(ReportRun& run) {
    const ReportOutcome outcome = run.write(scan_.files);
    if (outcome.written) return true;
    if (!outcome.error) throw Fault(kFaultInvalidCall, kSaveRoutine, run.order.path + " was not written");
    raiseFileError(*outcome.error, run.order.path, leftBehindText(scan_.texts, outcome.leftBehind));
}

}  // namespace hl
