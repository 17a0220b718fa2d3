#include "mainwindow/start_control.h"

#include <algorithm>
#include <cmath>

#include "base/size_text.h"
#include "base/text.h"
#include "mainwindow/main_form.h"
#include "platform/icons.h"
#include "robustness/trap.h"
#include "scan/records.h"

namespace hl {

namespace {

constexpr std::size_t kMostReadLast = 6;

}  // namespace

void StartControl::show() {
    if (form_.closed || form_.window == nullptr || form_.window->sources == nullptr) return;
    StartPage wanted = form_.session.tvwPL.rowCount() == 0 ? page() : StartPage{};
    wanted.enabled = !locked_;
    if (wanted == shown_) return;
    shown_ = std::move(wanted);
    form_.window->sources->setStartPage(shown_);
}

void StartControl::lock(bool locked) {
    locked_ = locked;
    show();
}

void StartControl::chosen(const std::string& tag) {
    if (form_.session.state.ScanActive || form_.closed) return;
    form_.sources.duringCommand([&] {
        guarded(form_.services().diagnostics, {.routine = "startPage_Click"}, [&] {
            const std::string source =
                tag.empty() ? form_.window->dialogs.askFolder("", form_.services().bases.home) : tag;
            if (!source.empty()) form_.sources.read({source});
        });
    });
}

void StartControl::sourcesLoaded() {
    for (const SourceItem& item : form_.session.cboOrdner.items())
        if (item.image == kPictureSource) read_.push_back(item.tag);
}

void StartControl::sourceBegan(const std::string& source) {
    std::erase(read_, source);
    read_.insert(read_.begin(), source);
}

// --- what the page has

StartPage StartControl::page() const {
    const Texts& texts = form_.services().texts;
    const std::string& home = form_.services().bases.home;
    StartGroup first;
    if (!home.empty())
        first.entries.push_back({.caption = texts.TL(9691, "Persönlicher Ordner"),
                                 .note = visible(home),
                                 .tag = home,
                                 .picture = kIconFolder});
    first.entries.push_back({.caption = texts.TL(9692, "Ordner auswählen ..."), .picture = kIconNew});
    StartPage page{.title = texts.TL(9690, "Was soll eingelesen werden?"),
                   .groups = {std::move(first)},
                   .hint = texts.TL(9695, "Ordner können auch in das Fenster gezogen werden.")};
    StartGroup drives = this->drives();
    StartGroup last = readLast(drives, home);
    for (StartGroup* group : {&drives, &last})
        if (!group->entries.empty()) page.groups.push_back(std::move(*group));
    return page;
}

// The list of drives has asked them already; one that has not answered has a total of 0.
StartGroup StartControl::drives() const {
    const Services& services = form_.services();
    const Grid& list = form_.session.lvwDiskinfo;
    const auto size = [&](Row row, DriveCell cell) {
        const auto bytes = static_cast<std::uint64_t>(list.number(row, cell));
        return FormatSizeAuto(SizeValue::fromBytes(bytes), true, services.numbers);
    };
    StartGroup group{.title = services.texts.TL(9260, "Laufwerke"), .entries = {}};
    for (Row row = list.firstRoot(); row != kNoRow; row = list.nextSibling(row)) {
        StartEntry entry{.caption = visible(list.text(row)), .picture = list.picture(row)};
        const auto share = form_.own.drives.network(list.text(row));
        entry.tag = share ? share->root : std::string(list.text(row));
        if (list.number(row, kGsize) > 0) {
            entry.note = services.texts.TL(9694, "%1 von %2 frei", {size(row, kFsize), size(row, kGsize)});
            entry.percent = static_cast<int>(list.number(row, kBsizeP));
        }
        group.entries.push_back(std::move(entry));
    }
    return group;
}

StartGroup StartControl::readLast(const StartGroup& drives, const std::string& home) const {
    const PathRules& paths = form_.services().paths;
    const auto keyOf = [&](const std::string& path) {
        return identityKey(AddTrailingSlash(path, paths), paths);
    };
    std::vector<std::string> known = {keyOf(home)};
    for (const StartEntry& drive : drives.entries) known.push_back(keyOf(drive.tag));
    StartGroup group{.title = form_.services().texts.TL(9693, "Zuletzt eingelesen"), .entries = {}};
    for (const std::string& source : read_) {
        const std::string key = keyOf(source);
        // What the user removed from the box is not offered any more.
        const bool inBox = form_.session.cboOrdner.has(key);
        if (!inBox || std::ranges::find(known, key) != known.end()) continue;
        known.push_back(key);
        group.entries.push_back({.caption = visible(source), .tag = source, .picture = kIconSource});
        if (group.entries.size() == kMostReadLast) break;
    }
    return group;
}

}  // namespace hl
