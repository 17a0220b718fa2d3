#include "mainwindow/options_form.h"

#include <algorithm>

#include "app/instance_start.h"
#include "app/option_table.h"
#include "app/product.h"
#include "app/setting_keys.h"
#include "base/text.h"
#include "robustness/api_error_text.h"
#include "robustness/trap.h"
#include "scan/left_out.h"

namespace hl {

namespace {

constexpr const char* kModule = "frmOptionen";
constexpr std::string_view kDateFormat = "DateFormat";

std::string_view defaultDateFormat() {
    return std::ranges::find(kOptionTable, kDateFormat, &OptionKey::key)->defaultValue;
}

}  // namespace

OptionsForm::OptionsForm(const Services& services, FolderVerb& verb, const std::string& executable,
                         std::function<std::optional<std::size_t>()> removeKept)
    : services_(services), verb_(verb), executable_(executable), removeKept_(std::move(removeKept)) {
    guarded(services_.diagnostics, {.routine = "Form_Load", .module = kModule}, [&] {
        const Texts& texts = services_.texts;
        caption = texts.TL(3597, "Optionen");
        chkKontextmenu.caption = texts.TL(9450, "Harborlantern im Windows Explorer Kontextmenü anzeigen");
        chkInstanz.caption = texts.TL(9451, "Nur eine Programminstanz von Harborlantern starten");
        chkAskBeforeDelete.caption = texts.TL(9806, "Vor dem Löschen für immer fragen");
        chkCountSnapshots.caption =
            texts.TL(9906, "Snapshots (btrfs) mitzählen, deren Ursprung in derselben Quelle liegt");
        lblDateFormat = texts.TL(9452, "Datumsformat für den Zeitstempel von Dateien:");
        lblRules = texts.TL(9940, "Beim Einlesen auslassen, eine Regel je Zeile (wie in .gitignore):");
        lblKeepScans =
            texts.TL(9122, "Von jeder Quelle so viele Scans zum Vergleichen aufheben (0 bis 255, 0: keine):");
        cmdRemoveKept.caption = texts.TL(9123, "Aufgehobene Scans löschen");
        cmdOK.caption = texts.TL(3610, "OK");
        cmdCancel.caption = texts.TL(3609, "Abbrechen");
        OptionenLaden();
    });
}

Form OptionsForm::form() {
    return {
        .name = kModule,
        .caption = caption,
        .items =
            {{.control = &chkKontextmenu, .changed = [this] { chkKontextmenu_Click(); }},
             {.control = &chkInstanz, .row = 1, .changed = [this] { chkInstanz_Click(); }},
             {.control = &chkAskBeforeDelete, .row = 2, .changed = [this] { chkAskBeforeDelete_Click(); }},
             {.control = &chkCountSnapshots, .row = 3, .changed = [this] { chkCountSnapshots_Click(); }},
             {.control = &lblDateFormat, .row = 4},
             {.control = &txtDateFormat,
              .row = 5,
              .changed = [this] { txtDateFormat_Change(); },
              .name = lblDateFormat},
             {.control = &lblRules, .row = 6},
             {.control = &txtRules,
              .row = 7,
              .changed = [this] { txtRules_Change(); },
              .tooltip = services_.texts.TL(9943,
                                            "Zum Beispiel *.o, node_modules/, /var/cache. Mit ! davor gilt, "
                                            "was eine Regel darüber auslässt, wieder als gewollt."),
              .name = lblRules},
             {.control = &lblRulesProblem, .row = 8},
             {.control = &lblKeepScans, .row = 9},
             {.control = &txtKeepScans,
              .row = 10,
              .changed = [this] { txtKeepScans_Change(); },
              .keyPress = digitKey,
              .name = lblKeepScans}},
        .buttons = {{.control = &cmdOK, .changed = [this] { cmdOK_Click(); }},
                    {.control = &cmdCancel, .changed = [this] { cmdCancel_Click(); }},
                    {.control = &cmdRemoveKept, .changed = [this] { cmdRemoveKept_Click(); }}},
        .activated = [this] { Form_Activate(); },
        .cancel = [this] { cmdCancel_Click(); },
        .loaded = &loaded};
}

void OptionsForm::txtRules_Change() {
    changed_ |= activated_;
    lblRulesProblem = problemOfRules();
}

// Clicked once, there is nothing more to delete.
void OptionsForm::cmdRemoveKept_Click() {
    if (!removeKept_) return;
    const std::optional<std::size_t> count = removeKept_();
    if (!count) return;
    cmdRemoveKept.caption =
        services_.texts.TL(9124, "Aufgehobene Scans gelöscht: %1", {static_cast<int>(*count)});
    cmdRemoveKept.enabled = false;
}

std::vector<std::string> OptionsForm::rules() const {
    std::vector<std::string> rules;
    for (const std::string_view line : ruleLines(txtRules.text))
        if (!line.empty()) rules.emplace_back(line);
    return rules;
}

std::string OptionsForm::problemOfRules() const {
    const Texts& texts = services_.texts;
    const std::vector<std::string> all = rules();
    for (const std::string& rule : all)
        if (const RuleProblem problem = readRule(rule).problem; problem != RuleProblem::kNone)
            return ruleProblemText(texts, rule, problem);
    IniText file;
    if (writeRules(file, all) == all.size()) return {};
    return texts.TL(9941, "Die Einstellungen fassen höchstens 100 Regeln mit je höchstens 2.047 Bytes.");
}

void OptionsForm::cmdOK_Click() {
    if (changed_ && !(lblRulesProblem = problemOfRules()).empty()) return;
    guarded(services_.diagnostics, {.module = kModule}, [&] {
        if (changed_) OptionenSpeichern();
    });
    loaded = false;
}

void OptionsForm::OptionenLaden() {
    const SettingsStore& settings = services_.settings;
    const auto& verb = kKeyExplorerVerb;
    const std::string state = settings.GetSettings(verb.section, verb.key, verb.defaultValue);
    chkKontextmenu.checked = parseInteger(state) == 1;
    chkInstanz.checked = singleInstanceWanted(settings);
    const auto isSet = [&](const NumberKey& key) {
        const std::string value = settings.GetSettings(key.section, key.key, key.defaultValue);
        return parseInteger(value).value_or(key.defaultValue) != 0;
    };
    chkAskBeforeDelete.checked = isSet(kKeyAskBeforeDelete);
    chkCountSnapshots.checked = isSet(kKeyCountSnapshots);
    const auto& keep = kKeyKeepScans;
    const std::string kept = settings.GetSettings(keep.section, keep.key, keep.defaultValue);
    txtKeepScans.text = std::to_string(parseInteger(kept).value_or(keep.defaultValue));
    for (const std::string& rule : readRules(settings.read()))
        txtRules.text.append(txtRules.text.empty() ? "" : "\n").append(rule);
    txtDateFormat.text = settings.GetSettings(kSectionOptions, kDateFormat, defaultDateFormat());
    ApplyExplorerVerb(chkKontextmenu.checked);
}

void OptionsForm::OptionenSpeichern() {
    services_.settings.change([&](IniText& ini) {
        ini.set(kKeyExplorerVerb.section, kKeyExplorerVerb.key, chkKontextmenu.checked ? "1" : "0");
        ini.set(kKeySingleInstance.section, kKeySingleInstance.key, chkInstanz.checked ? "1" : "0");
        ini.set(kKeyAskBeforeDelete.section, kKeyAskBeforeDelete.key, chkAskBeforeDelete.checked ? "1" : "0");
        ini.set(kKeyCountSnapshots.section, kKeyCountSnapshots.key, chkCountSnapshots.checked ? "1" : "0");
        ini.set(kSectionOptions, kDateFormat, txtDateFormat.text);
        const std::int64_t keep =
            std::clamp<std::int64_t>(parseInteger(txtKeepScans.text).value_or(0), 0, 255);
        ini.set(kKeyKeepScans.section, kKeyKeepScans.key, std::to_string(keep));
        writeRules(ini, rules());
    });
    ApplyExplorerVerb(chkKontextmenu.checked);
}

void OptionsForm::ApplyExplorerVerb(bool offered) {
    const Result<> done = offered ? verb_.offer({std::string(kProductName), executable_}) : verb_.withdraw();
    if (done) return;
    services_.log.LogDebug("ApplyExplorerVerb: ", {ApiErrorText(true, done.error()), done.error().name});
}

}  // namespace hl
