#include "mainwindow/toolbar_state.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <map>
#include <optional>
#include <utility>

#include "app/ini_file.h"
#include "base/text.h"
#include "mainwindow/command_table.h"

namespace hl {

namespace {

constexpr std::size_t kLargestFile = std::size_t{64} << 10;  // In bytes; a real file has less than 1 KiB.
constexpr int kMostOrder = 99;
constexpr std::size_t kFirstLaterBar = static_cast<std::size_t>(BarId::kFind);
constexpr std::string_view kFormatSection = "Format";
constexpr std::string_view kFormatKey = "HarborlanternToolbars";
constexpr std::string_view kFormat = "1";

constexpr std::string_view kEdges[] = {"top", "bottom", "left", "right"};

using Values = std::map<std::string, std::string, std::less<>>;

std::optional<int> numberIn(std::string_view text, int most) {
    const auto number = parseInteger(text);
    if (!number || *number < 0 || *number > most) return std::nullopt;
    return static_cast<int>(*number);
}

std::optional<BarEdge> edgeNamed(std::string_view name) {
    const auto* found = std::find(std::begin(kEdges), std::end(kEdges), name);
    if (found == std::end(kEdges)) return std::nullopt;
    return static_cast<BarEdge>(found - std::begin(kEdges));
}

std::optional<std::vector<int>> idsIn(std::string_view text) {
    std::vector<int> ids;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(' '), text.size());
        const auto id = numberIn(text.substr(0, end), std::numeric_limits<int>::max());
        if (!id) return std::nullopt;
        ids.push_back(*id);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return ids;
}

std::string_view valueOf(const Values& values, std::string_view key) {
    const auto found = values.find(key);
    return found != values.end() ? std::string_view(found->second) : "-";  // "-" is no valid value of any
                                                                           // key.
}

std::optional<BarState> stateIn(const Values& values) {
    const auto edge = edgeNamed(valueOf(values, "edge"));
    const auto order = numberIn(valueOf(values, "order"), kMostOrder);
    const auto visible = numberIn(valueOf(values, "visible"), 1);
    auto hidden = idsIn(valueOf(values, "hidden"));
    if (!edge || !order || !visible || !hidden) return std::nullopt;
    return BarState{{*edge, *order, *visible == 1}, *std::move(hidden)};
}

void writeState(IniText& ini, std::string_view section, const BarState& state) {
    std::string hidden;
    for (const int id : state.hidden) hidden += (hidden.empty() ? "" : " ") + std::to_string(id);
    ini.set(section, "Edge", kEdges[static_cast<std::size_t>(state.place.edge)]);
    ini.set(section, "Order", std::to_string(std::clamp(state.place.order, 0, kMostOrder)));
    ini.set(section, "Visible", state.place.visible ? "1" : "0");
    ini.set(section, "Hidden", hidden);
}

void addHidden(const std::vector<BarEntry>& entries, std::vector<int>& hidden) {
    for (const BarEntry& entry : entries) {
        if (!entry.visible) hidden.push_back(entry.id);
        addHidden(entry.list, hidden);
    }
}

}  // namespace

bool ToolbarStore::load(Files& files, const std::string& path) {
    const auto content = files.readWhole(path, kLargestFile);
    if (!content) return false;
    const IniText ini(*content);
    if (ini.find(kFormatSection, kFormatKey) != kFormat) return false;
    std::array<BarState, kBarCount> states;
    std::array<bool, kBarCount> loaded{};
    for (std::size_t i = 0; i < kBarCount; ++i) {
        const Values values = ini.section(barRows()[i].name);
        if (values.empty() && i >= kFirstLaterBar) continue;
        auto state = stateIn(values);
        if (!state) return false;
        states[i] = *std::move(state);
        loaded[i] = true;
    }
    states_ = std::move(states);
    loaded_ = loaded;
    return true;
}

Result<> ToolbarStore::save(Files& files, const std::string& path) const {
    IniText ini;
    for (std::size_t i = 0; i < kBarCount; ++i) writeState(ini, barRows()[i].name, states_[i]);
    ini.set(kFormatSection, kFormatKey, kFormat);
    // If there is a pipe instead of the file, writing would wait for a reader.
    if (const auto old = files.readWhole(path, kLargestFile); old.failedAs(ErrorKind::kUnsuited))
        return old.error();
    return replaceWhole(files, path, ini.text());
}

void ExchangeState(ToolbarStore& store, CommandBar& bar) {
    BarState& state = store.of(bar.id());
    if (store.isLoaded(bar.id())) {
        bar.setPlace(state.place);
        for (const int id : state.hidden) bar.setVisible(id, false);
        return;
    }
    state = {bar.place(), {}};
    addHidden(bar.entries(), state.hidden);
    addHidden(bar.popups(), state.hidden);
}

}  // namespace hl
