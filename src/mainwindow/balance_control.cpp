#include "mainwindow/balance_control.h"

#include "base/scope_exit.h"
#include "base/text.h"
#include "mainwindow/balance_form.h"
#include "mainwindow/main_form.h"
#include "output/balance_source.h"
#include "scan/driver.h"
#include "scan/on_disk.h"
#include "scan/rollup.h"
#include "scan/yield.h"

namespace hl {

void BalanceControl::showOf(Row row) {
    const Grid& report = form_.session.tvwPL;
    if (form_.session.state.ScanActive || row == kNoRow) return;
    show(report.rootOf(row));
}

void BalanceControl::showOfDrive() {
    const Grid& drives = form_.session.lvwDiskinfo;
    const auto selected = drives.selectedRows();
    if (form_.session.state.ScanActive || selected.empty()) return;
    const std::string path(drives.text(selected.front()));
    const Grid& report = form_.session.tvwPL;
    Row source = firstLiveSource(form_.scan);
    while (source != kNoRow && report.text(source) != path) source = nextLiveSource(form_.scan, source);
    source == kNoRow ? sayNotRead(path) : show(source);
}

void BalanceControl::show(Row source) {
    const Texts& texts = form_.services().texts;
    if (isFromFile(form_.scan, source)) return form_.status.setFirst(notOnDiskText(form_.scan, source));
    if (!form_.session.state.balance.sources.contains(std::string(form_.session.tvwPL.text(source))))
        return sayNotRead(Report_GetFullpathOfNode(form_.session.tvwPL, source, false, form_.scan.paths));
    std::optional<SourceBalance> balance;
    form_.sources.duringCommand([&] { balance = collect(source); });
    if (!balance || form_.closed) return;
    if (const std::string why = whyNoBalance(texts, *balance); !why.empty()) return say(why);
    BalanceForm frmBalance(form_.services(), std::move(*balance), form_.files, *form_.window);
    Form form = frmBalance.form();
    form_.window->dialogs.showForm(form);
    if (frmBalance.chosen && !form_.closed) leadTo(*frmBalance.chosen, source);
}

// The window is locked meanwhile; Stop and Esc give up.
std::optional<SourceBalance> BalanceControl::collect(Row source) {
    ScanState& state = form_.session.state;
    state.CancelState = kCancelNone;
    const BusyPointer busy(form_.scan.controls);
    const ScopeExit unlock([&] {
        state.CancelState = kCancelNone;
        EnableControls(form_.scan);
    });
    DisableControls(form_.scan, false);
    Yield wait(state, form_.services().pump);
    return balanceOfSource(form_.scan, source, &wait);
}

void BalanceControl::leadTo(BalanceLine line, Row source) {
    const auto showPane = [&](Command show) {
        if (!form_.bars.cbrMain.isChecked(idOf(show))) form_.looks.panes().PanelToggle(show);
    };
    switch (line) {
        case BalanceLine::kFound:
            showPane(Command::kShowTop);
            return form_.window->grid(GridId::kTop).focus();
        case BalanceLine::kFurtherNames:
            showPane(Command::kShowHardlinks);
            return form_.window->grid(GridId::kHardlinks).focus();
        case BalanceLine::kNotRead:
            return form_.report.showNotRead();
        case BalanceLine::kTrash:
            if (const auto rows = trashRows(form_.scan, source); !rows.empty())
                form_.report.goTo(
                    Report_GetFullpathOfNode(form_.session.tvwPL, rows.front(), false, form_.scan.paths));
            return;
        default:
            return;
    }
}

void BalanceControl::say(const std::string& text) {
    form_.window->dialogs.message(MessageKind::kInformation, text);
}

void BalanceControl::sayNotRead(const std::string& path) {
    say(form_.services().texts.TL(
        9867, "Die Bilanz von %1 entsteht beim Einlesen: Lesen Sie diese Quelle zuerst ein.",
        {visible(path)}));
}

}  // namespace hl
