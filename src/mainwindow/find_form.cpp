#include "mainwindow/find_form.h"

#include <utility>

#include "robustness/trap.h"
#include "scan/file_kinds.h"
#include "scan/find_terms.h"
#include "views/find_texts.h"
#include "views/group_texts.h"

namespace hl {

namespace {

constexpr const char* kFindModule = "frmFind";
constexpr std::string_view kNameTerm = "name=", kKindTerm = "kind=", kTypeTerm = "type=";
constexpr std::string_view kTypeLetters = "flo";  // In the order of the box, behind "any".

}  // namespace

FindForm::FindForm(const Services& services, const std::string& filter, FindFilter::OwnerNumber owners)
    : services_(services), owners_(std::move(owners)) {
    makeTexts();
    cboKind.index = cboType.index = 0;
    read(filter);
}

void FindForm::makeTexts() {
    const Texts& texts = services_.texts;
    caption = texts.TL(9949, "Filter");
    lblName = texts.TL(9102, "Dateiname") + ":";
    lblLeast = texts.TL(9970, "Mindestgröße (10M, 1.5G):");
    lblMost = texts.TL(9971, "Höchstgröße:");
    lblOlder = texts.TL(9972, "Älter als (12h, 30d, 2w, 6m, 1y):");
    lblYounger = texts.TL(9973, "Jünger als:");
    lblKind = texts.TL(9974, "Art") + ":";
    lblOwner = texts.TL(9763, "Eigentümer") + ":";
    lblType = texts.TL(9104, "Typ") + ":";
    cboKind.items = {""};
    for (std::size_t kind = 0; kind < kFileKinds; ++kind)
        cboKind.items.emplace_back(texts.TL(kKindTexts[kind].id, kKindTexts[kind].german));
    cboType.items = {"", texts.TL(9769, "Datei"), texts.TL(9114, "Verknüpfung"), texts.TL(9948, "anderes")};
    cmdOK.caption = texts.TL(9945, "Finden");
    cmdCancel.caption = texts.TL(3609, "Abbrechen");
}

Form FindForm::form() {
    Form form{.name = kFindModule, .caption = caption, .items = {}, .buttons = {}, .loaded = &loaded};
    int row = 0;
    const auto add = [&](std::string& label, FormItem::Control control) {
        form.items.push_back({.control = &label, .row = row});
        form.items.push_back({.control = control, .row = row, .column = 1, .name = label});
        ++row;
    };
    add(lblName, &txtName);
    add(lblLeast, &txtLeast);
    add(lblMost, &txtMost);
    add(lblOlder, &txtOlder);
    add(lblYounger, &txtYounger);
    add(lblKind, &cboKind);
    add(lblOwner, &txtOwner);
    add(lblType, &cboType);
    form.items.push_back({.control = &lblProblem, .row = row, .columnSpan = 2});
    form.buttons = {{.control = &cmdOK, .changed = [this] { cmdOK_Click(); }},
                    {.control = &cmdCancel, .changed = [this] { loaded = false; }}};
    form.cancel = [this] { loaded = false; };
    return form;
}

void FindForm::cmdOK_Click() {
    guarded(services_.diagnostics, {.module = kFindModule}, [&] {
        const auto read = FindFilter::read(filter(), owners_);
        if (const auto* problem = std::get_if<FilterProblem>(&read)) {
            lblProblem = filterProblemText(services_.texts, *problem);
            return;
        }
        accepted_ = true;
        loaded = false;
    });
}

// --- from the text to the fields and back

void FindForm::read(const std::string& filter) {
    for (const std::string& term : filterTerms(filter)) {
        bool taken = readChoice(term) || readName(term);
        for (Field* field : {&least_, &most_, &older_, &younger_, &owner_})
            taken = taken || readInto(*field, term);
        if (!taken) others_ += " " + term;
    }
}

// What is typed without a pattern is a part of the name.
bool FindForm::readName(std::string_view term) {
    constexpr std::string_view kSigns = "*?[|", kNotInWord = "!=<>\"";
    if (!txtName.text.empty()) return false;
    const bool word = term.find_first_of(kNotInWord) == std::string_view::npos;
    if (!word && !term.starts_with(kNameTerm)) return false;
    std::string value = word ? "*" + std::string(term) + "*" : termValue(term.substr(kNameTerm.size()));
    if (value.find_first_of(kSigns) == std::string::npos) return false;
    const std::string inner = value.size() > 2 ? value.substr(1, value.size() - 2) : "";
    const bool isPart = value.starts_with('*') && value.ends_with('*') && !inner.empty() &&
                        inner.find_first_of(kSigns) == std::string::npos;
    txtName.text = isPart ? inner : value;
    return true;
}

// A stricter or looser comparison than the field's own is kept.
bool FindForm::readInto(Field& field, std::string_view term) {
    const std::string_view own = field.begins;
    const std::string_view strict = own.ends_with("=") ? own.substr(0, own.size() - 1) : own;
    const bool compares = strict.ends_with('>') || strict.ends_with('<');
    if (field.isSet || !term.starts_with(compares ? strict : own)) return false;
    const std::string_view behind = term.substr((compares ? strict : own).size());
    const bool orEqual = compares && behind.starts_with('=');
    field.box->text = termValue(behind.substr(orEqual ? 1 : 0));
    if (compares) field.begins = std::string(strict) + (orEqual ? "=" : "");
    return field.isSet = true;
}

bool FindForm::readChoice(std::string_view term) {
    if (cboKind.index == 0 && term.starts_with(kKindTerm)) {
        const auto kind = kindNamed(termValue(term.substr(kKindTerm.size())));
        if (kind) cboKind.index = 1 + static_cast<int>(*kind);
        return kind.has_value();
    }
    if (cboType.index != 0 || !term.starts_with(kTypeTerm)) return false;
    const std::string letter = termValue(term.substr(kTypeTerm.size()));
    const std::size_t at = letter.size() == 1 ? kTypeLetters.find(letter) : std::string_view::npos;
    if (at != std::string_view::npos) cboType.index = 1 + static_cast<int>(at);
    return at != std::string_view::npos;
}

std::string FindForm::filter() const {
    std::string text;
    const auto add = [&](std::string_view begins, std::string_view value) {
        if (value.empty()) return;
        text.append(text.empty() ? "" : " ").append(begins).append(quotedValue(value));
    };
    const bool isPart = txtName.text.find_first_of("*?[|") == std::string::npos;
    if (!txtName.text.empty()) add(kNameTerm, isPart ? "*" + txtName.text + "*" : txtName.text);
    for (const Field* field : {&least_, &most_, &older_, &younger_}) add(field->begins, field->box->text);
    if (cboKind.index > 0) add(kKindTerm, nameOf(static_cast<FileKind>(cboKind.index - 1)));
    add(owner_.begins, txtOwner.text);
    if (cboType.index > 0)
        add(kTypeTerm, kTypeLetters.substr(static_cast<std::size_t>(cboType.index - 1), 1));
    if (text.empty() && !others_.empty()) return others_.substr(1);
    return text + others_;
}

}  // namespace hl
