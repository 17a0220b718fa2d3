#include "platform/command_bar.h"

#include <utility>

namespace hl {

namespace {

BarEntry* findIn(std::vector<BarEntry>& entries, int id) {
    for (BarEntry& entry : entries) {
        if (entry.id == id) return &entry;
        if (BarEntry* below = findIn(entry.list, id)) return below;
    }
    return nullptr;
}

}  // namespace

BarEntry& CommandBar::add(BarEntry entry, int parent) {
    auto* above = parent == 0 ? nullptr : const_cast<BarEntry*>(find(parent));
    auto& place = above != nullptr ? above->list : entries_;
    place.push_back(std::move(entry));
    if (observer_ != nullptr) observer_->barChanged(*this);
    return place.back();
}

BarEntry& CommandBar::addPopup(BarEntry popup) {
    popups_.push_back(std::move(popup));
    return popups_.back();
}

const BarEntry* CommandBar::find(int id) const {
    auto& self = const_cast<CommandBar&>(*this);
    const BarEntry* entry = findIn(self.entries_, id);
    return entry != nullptr ? entry : findIn(self.popups_, id);
}

bool CommandBar::isChecked(int id) const {
    const BarEntry* entry = find(id);
    return entry != nullptr && entry->checked;
}

std::string CommandBar::textOf(int id) const {
    const BarEntry* entry = find(id);
    return entry != nullptr ? entry->text : std::string();
}

template <class Change>
void CommandBar::change(int id, Change change) {
    auto* entry = const_cast<BarEntry*>(find(id));
    if (entry != nullptr && change(*entry) && observer_ != nullptr) observer_->entryChanged(*this, *entry);
}

void CommandBar::setChecked(int id, bool on) {
    change(id, [on](BarEntry& entry) { return std::exchange(entry.checked, on) != on; });
}

void CommandBar::setEnabled(int id, bool on) {
    change(id, [on](BarEntry& entry) { return std::exchange(entry.enabled, on) != on; });
}

void CommandBar::setVisible(int id, bool on) {
    change(id, [on](BarEntry& entry) { return std::exchange(entry.visible, on) != on; });
}

void CommandBar::setCaption(int id, std::string_view caption) {
    change(id, [caption](BarEntry& entry) { return std::exchange(entry.caption, caption) != caption; });
}

void CommandBar::setTooltip(int id, std::string_view tooltip) {
    change(id, [tooltip](BarEntry& entry) { return std::exchange(entry.tooltip, tooltip) != tooltip; });
}

void CommandBar::setText(int id, std::string_view text) {
    change(id, [text](BarEntry& entry) { return std::exchange(entry.text, text) != text; });
}

void CommandBar::enableAll(std::vector<BarEntry>& entries, bool on) {
    for (BarEntry& entry : entries) {
        const bool changed = std::exchange(entry.enabled, on) != on;
        if (changed && observer_ != nullptr) observer_->entryChanged(*this, entry);
        enableAll(entry.list, on);
    }
}

void CommandBar::setAllEnabled(bool on) {
    enableAll(entries_, on);
}

template <class Value>
void CommandBar::changeLook(Value& value, const Value& wanted) {
    if (value == wanted) return;
    value = wanted;
    if (observer_ != nullptr) observer_->barChanged(*this);
}

void CommandBar::setPlace(const BarPlace& place) {
    changeLook(place_, place);
}

void CommandBar::setLargeIcons(bool on) {
    changeLook(largeIcons_, on);
}

void CommandBar::setTextBelowIcons(bool on) {
    changeLook(textBelowIcons_, on);
}

void CommandBar::setLargerBy(int points) {
    changeLook(largerBy_, points);
}

void CommandBar::setClips(bool on) {
    changeLook(clips_, on);
}

}  // namespace hl
