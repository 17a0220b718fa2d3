#include "mainwindow/balance_form.h"

#include <utility>

#include "base/size_unit.h"
#include "base/text.h"
#include "mainwindow/saved_text.h"
#include "output/print_job.h"
#include "robustness/trap.h"

namespace hl {

namespace {
constexpr const char* kBalanceModule = "frmBalance";
}

bool leadsToRows(BalanceLine line) {
    switch (line) {
        case BalanceLine::kFound:
        case BalanceLine::kFurtherNames:
        case BalanceLine::kNotRead:
        case BalanceLine::kTrash:
            return true;
        default:
            return false;
    }
}

BalanceForm::BalanceForm(const Services& services, SourceBalance balance, SaveDialog& dialog,
                         const Window& window)
    : services_(services), balance_(std::move(balance)), dialog_(dialog), window_(window) {
    const Texts& texts = services_.texts;
    caption = texts.TL(9865, "Bilanz") + ": " + visible(balance_.source);
    lblAsOf = asOf(texts, balance_);
    cmdClose.caption = texts.TL(3610, "OK");
    cmdSpeichern.caption = texts.TL(3612, "Speichern");
    cmdDrucken.caption = texts.TL(3619, "Drucken");
    cmdKopieren.caption = texts.TL(9564, "Kopieren");
    fillTable();
}

void BalanceForm::fillTable() {
    const Texts& texts = services_.texts;
    const SizeUnit bytes = sizeUnit(kModeBytes);
    tblBalance.titles = {texts.TL(9865, "Bilanz"), texts.TL(3623, "Größe"),
                         texts.TL(bytes.title.id, bytes.title.german)};
    for (const BalanceEntry& entry : balance_.entries)
        tblBalance.lines.push_back(
            {.cells = {captionOf(words(), entry), sizeOf(words(), entry), bytesOf(words(), entry)},
             .tooltip = tipOf(words(), entry.line),
             .strong = roleOf(entry.line) == BalanceRole::kSum,
             .leads = leadsToRows(entry.line)});
    // A screen reader says the two figures that tell whether the balance holds; the rest of it is there to be
    // gone through.
    tblBalance.announcement = caption;
    for (const BalanceEntry& entry : balance_.entries)
        if (entry.line == BalanceLine::kUsed || entry.line == BalanceLine::kRest)
            tblBalance.announcement += ", " + captionOf(words(), entry) + " " + sizeOf(words(), entry);
}

Form BalanceForm::form() {
    std::vector<FormItem> items;
    if (!lblAsOf.empty()) items.push_back({.control = &lblAsOf});
    items.push_back(
        {.control = &tblBalance, .row = 1, .changed = [this] { tblBalance_Activated(); }, .name = caption});
    return {.name = kBalanceModule,
            .caption = caption,
            .items = std::move(items),
            .buttons = {{.control = &cmdClose, .changed = [this] { loaded = false; }},
                        {.control = &cmdSpeichern, .changed = [this] { cmdSpeichern_Click(); }},
                        {.control = &cmdDrucken, .changed = [this] { cmdDrucken_Click(); }},
                        {.control = &cmdKopieren, .changed = [this] { cmdKopieren_Click(); }}},
            .cancel = [this] { loaded = false; },
            .loaded = &loaded};
}

std::string BalanceForm::text() const {
    std::string text;
    appendBalanceText(text, words(), balance_);
    return text;
}

void BalanceForm::cmdSpeichern_Click() {
    guarded(services_.diagnostics, {.module = kBalanceModule},
            [&] { saveText(services_, dialog_, window_, text()); });
}

void BalanceForm::cmdDrucken_Click() {
    guarded(services_.diagnostics, {.module = kBalanceModule}, [&] {
        window_.dialogs.previewPrint(printedText(services_.texts, services_.files, caption, text()));
    });
}

void BalanceForm::cmdKopieren_Click() {
    guarded(services_.diagnostics, {.module = kBalanceModule}, [&] { window_.clipboard.copyText(text()); });
}

void BalanceForm::tblBalance_Activated() {
    const auto index = static_cast<std::size_t>(tblBalance.activated);
    if (tblBalance.activated < 0 || index >= balance_.entries.size()) return;
    chosen = balance_.entries[index].line;
    loaded = false;
}

}  // namespace hl
