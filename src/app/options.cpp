#include "app/options.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "app/option_table.h"
#include "app/setting_keys.h"
#include "base/fault.h"
#include "base/text.h"
#include "robustness/trap.h"

namespace hl {

namespace {

double numberOf(const std::string& text) {
    const auto number = parseNumber(text);
    if (!number || std::isnan(*number)) throw Fault(kFaultTypeMismatch, "Options", "Type mismatch");
    return *number;
}

// Rounds a text to a whole number; ties go to even, as everywhere in the program.
void convert(const std::string& text, Flag& field) {
    const double number = std::nearbyint(numberOf(text));
    if (number < 0 || number > std::numeric_limits<Flag>::max()) raiseOverflow("Options");
    field = static_cast<Flag>(number);
}

void convert(const std::string& text, float& field) {
    const double number = numberOf(text);
    if (std::abs(number) > std::numeric_limits<float>::max()) raiseOverflow("Options");
    field = static_cast<float>(number);
}

void convert(const std::string& text, std::string& field) {
    field = text;
}

bool isFlag(const std::string& text) {
    const auto number = parseNumber(text);
    return number && *number >= 0 && *number <= std::numeric_limits<Flag>::max();
}

std::string columnKey(std::size_t index, const OptionKey& key) {
    return std::to_string(index).append(key.key);
}

class Loader {
  public:
    explicit Loader(Options& options) : options_(options) {}

    /// Reads the keys of the steps from `first` to `last`.
    void load(const IniText& ini, LoadStep first, LoadStep last) {
        values_ = ini.section(kSectionOptions);
        for (int step = static_cast<int>(first); step <= static_cast<int>(last); ++step) {
            for (const OptionKey& key : kOptionTable) {
                if (static_cast<int>(key.step) != step) continue;
                std::visit([&](auto field) { read(key, options_.*field); }, key.field);
            }
        }
        at_.clear();
    }

    /// The key at which the reading ended, for the error report.
    DebugValues debugValues() const { return at_.empty() ? DebugValues() : DebugValues{at_}; }

  private:
    template <class Field>
    void read(const OptionKey& key, Field& field) {
        readOne(key, std::string(key.key), field);
    }

    void read(const OptionKey& key, std::int32_t& field) {
        const std::string text = value(key, std::string(key.key));
        field = key.step == LoadStep::kTopCount ? topCountOf(text) : largestKeptOf(text);
        options_.keysRead.emplace(key.key);
    }

    void read(const OptionKey& key, ColumnFlags& columns) {
        for (std::size_t i = 0; i < key.columns; ++i) {
            OptionKey column = key;
            if ((key.off >> i & 1U) != 0) column.defaultValue = "0";
            readOne(column, columnKey(i, key), columns[i]);
        }
    }

    template <class Field>
    void readOne(const OptionKey& key, const std::string& name, Field& field) {
        const std::string text = value(key, name);
        at_ = name + "=" + text;
        const bool fallsBack = key.step > LoadStep::kElsewhere && !isFlag(text);
        convert(fallsBack ? std::string(key.defaultValue) : text, field);
        options_.keysRead.insert(name);
    }

    std::string value(const OptionKey& key, const std::string& name) const {
        const auto found = values_.find(lowerCase(name));
        return found == values_.end() ? std::string(key.defaultValue) : found->second;
    }

    Options& options_;
    std::map<std::string, std::string, std::less<>> values_;
    std::string at_;
};

class Saver {
  public:
    Saver(const Options& options, IniText& ini) : options_(options), ini_(ini) {}

    void save(const OptionKey& key) {
        std::visit([&](auto field) { save(key, options_.*field, unset_.*field); }, key.field);
    }

  private:
    template <class Field>
    void save(const OptionKey& key, const Field& field, const Field& unset) {
        saveOne(std::string(key.key), field, unset);
    }

    void save(const OptionKey& key, const ColumnFlags& columns, const ColumnFlags& unset) {
        for (std::size_t i = 0; i < key.columns; ++i)
            if ((key.unsaved >> i & 1U) == 0) saveOne(columnKey(i, key), columns[i], unset[i]);
    }

    template <class Field>
    void saveOne(const std::string& name, const Field& field, const Field& unset) {
        if (field == unset && !options_.keysRead.contains(name)) return;
        ini_.set(kSectionOptions, name, SimpleValue(field).text());
    }

    const Options& options_;
    const Options unset_;
    IniText& ini_;
};

/// Tells whether the options dialog saves what is read in this step.
bool isOfDialog(LoadStep step) {
    return step == LoadStep::kDateFormat || step == LoadStep::kAskBeforeDelete ||
           step == LoadStep::kSnapshots || step == LoadStep::kKeptScans;
}

struct Routine {
    LoadStep first, last;
    const char* name;
};

Routine routineOf(OptionBar bar) {
    using enum LoadStep;
    switch (bar) {
        case OptionBar::kMain:
            return {kBarMain, kBarMain, "Init_ToolbarMain"};
        case OptionBar::kFiles:
            return {kBarFiles, kBarFiles, "Init_Toolbar_Files"};
        case OptionBar::kTop:
            return {kTopCount, kBarTop, "Init_Toolbar_TOP"};
        case OptionBar::kHardlinks:
            break;
    }
    return {kBarHardlinks, kBarHardlinks, "Init_Toolbar_Hardlinks"};
}

void loadTrapped(Options& options, const IniText& ini, Diagnostics& diagnostics, const Routine& routine) {
    Loader loader(options);
    guarded(
        diagnostics, {.routine = routine.name}, [&] { loader.load(ini, routine.first, routine.last); },
        [&] { return loader.debugValues(); });
}

std::string ruleKey(std::size_t index) {
    return std::string(kRuleKey) + std::to_string(index);
}

}  // namespace

std::int32_t topCountOf(std::string_view text) {
    constexpr double kMost = std::numeric_limits<std::int32_t>::max();
    constexpr std::int32_t kUsual = 100;
    const auto number = parseNumber(text);
    if (!number || std::isnan(*number)) return kUsual;
    return static_cast<std::int32_t>(std::nearbyint(std::clamp<double>(*number, kLeastTopCount, kMost)));
}

std::int32_t largestKeptOf(std::string_view text) {
    const auto number = parseNumber(text);
    if (!number || std::isnan(*number)) return kMostLargestKept;
    return static_cast<std::int32_t>(std::nearbyint(std::clamp<double>(*number, 0, kMostLargestKept)));
}

void OptionenLadenMain(Options& options, const IniText& ini, Diagnostics& diagnostics, bool onlyDialog) {
    const LoadStep last = onlyDialog ? LoadStep::kDateFormat : LoadStep::kLastOfMain;
    loadTrapped(options, ini, diagnostics, {LoadStep::kDateFormat, last, "OptionenLadenMain"});
    const auto loadStep = [&](LoadStep step) {
        loadTrapped(options, ini, diagnostics, {step, step, "OptionenLadenMain"});
    };
    loadStep(LoadStep::kAskBeforeDelete);
    if (!onlyDialog) loadStep(LoadStep::kOnDisk);
    loadStep(LoadStep::kSnapshots);
    if (!onlyDialog) loadStep(LoadStep::kFind);
    if (!onlyDialog) loadStep(LoadStep::kStatistics);
    if (!onlyDialog) loadStep(LoadStep::kMap);
    if (!onlyDialog) loadStep(LoadStep::kChanges);
    loadStep(LoadStep::kKeptScans);
    options.Exclude = readRules(ini);
}

void loadBarOptions(Options& options, const IniText& ini, Diagnostics& diagnostics, OptionBar bar) {
    loadTrapped(options, ini, diagnostics, routineOf(bar));
}

std::vector<std::string> readRules(const IniText& ini) {
    const auto values = ini.section(kSectionOptions);
    const std::string key = lowerCase(kRuleKey);
    const auto first = values.lower_bound(key);
    std::vector<std::string> rules;
    if (first == values.end() || !first->first.starts_with(key)) return rules;
    for (std::size_t i = 0; i < kMostRules; ++i) {
        const auto rule = values.find(key + std::to_string(i));
        if (rule != values.end() && !rule->second.empty()) rules.push_back(rule->second);
    }
    return rules;
}

std::size_t writeRules(IniText& ini, const std::vector<std::string>& rules) {
    std::size_t written = 0;
    while (written < std::min(rules.size(), kMostRules) &&
           ini.set(kSectionOptions, ruleKey(written), rules[written]))
        ++written;
    for (std::size_t i = written; i < kMostRules; ++i)
        if (ini.find(kSectionOptions, ruleKey(i))) ini.set(kSectionOptions, ruleKey(i), "");
    return written;
}

void loadComboText(Options& options, const SettingsStore& store) {
    constexpr std::string_view kComboText = "ComboText";
    options.ComboText = store.GetSettings(kSectionOptions, kComboText);
    options.keysRead.emplace(kComboText);
}

void OptionenSpeichernMain(const Options& options, SettingsStore& store) {
    store.change([&](IniText& ini) {
        Saver saver(options, ini);
        for (const OptionKey& key : kOptionTable)
            if (!isOfDialog(key.step)) saver.save(key);
    });
}

}  // namespace hl
