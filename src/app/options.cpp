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

// To whole numbers ties go to even, as everywhere in the program where a text becomes a whole number.
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

class Loader {
  public:
    Loader(Options& options, const IniText& ini) : options_(options), values_(ini.section(kSectionOptions)) {}

    void load(LoadStep step) {
        for (const OptionKey& key : kOptionTable) {
            if (key.step != step) continue;
            std::visit([&](auto field) { read(key, options_.*field); }, key.field);
        }
    }

  private:
    template <class Field>
    void read(const OptionKey& key, Field& field) {
        convert(value(key, std::string(key.key)), field);
    }

    void read(const OptionKey& key, std::int32_t& field) {
        field = topCountOf(value(key, std::string(key.key)));
    }

    template <std::size_t N>
    void read(const OptionKey& key, std::array<Flag, N>& columns) {
        for (std::size_t i = 0; i < N; ++i)
            convert(value(key, std::to_string(i).append(key.key)), columns[i]);
    }

    std::string value(const OptionKey& key, const std::string& name) const {
        const auto found = values_.find(lowerCase(name));
        return found == values_.end() ? std::string(key.defaultValue) : found->second;
    }

    Options& options_;
    std::map<std::string, std::string, std::less<>> values_;
};

template <class Field>
void save(IniText& ini, const OptionKey& key, const Field& field) {
    ini.set(kSectionOptions, key.key, SimpleValue(field).text());
}

template <std::size_t N>
void save(IniText& ini, const OptionKey& key, const std::array<Flag, N>& columns) {
    for (std::size_t i = 0; i < key.savedColumns; ++i)
        ini.set(kSectionOptions, std::to_string(i).append(key.key), SimpleValue(columns[i]).text());
}

struct BarRoutine {
    LoadStep step;
    const char* name;
};

BarRoutine routineOf(OptionBar bar) {
    switch (bar) {
        case OptionBar::kMain:
            return {LoadStep::kBarMain, "Init_ToolbarMain"};
        case OptionBar::kFiles:
            return {LoadStep::kBarFiles, "Init_Toolbar_Files"};
        case OptionBar::kTop:
            return {LoadStep::kBarTop, "Init_Toolbar_TOP"};
        case OptionBar::kHardlinks:
            break;
    }
    return {LoadStep::kBarHardlinks, "Init_Toolbar_Hardlinks"};
}

}  // namespace

std::int32_t topCountOf(std::string_view text) {
    constexpr double kMost = std::numeric_limits<std::int32_t>::max();
    constexpr std::int32_t kUsual = 100;
    const auto number = parseNumber(text);
    if (!number || std::isnan(*number)) return kUsual;
    return static_cast<std::int32_t>(std::nearbyint(std::clamp<double>(*number, kLeastTopCount, kMost)));
}

void OptionenLadenMain(Options& options, const SettingsStore& store, Diagnostics& diagnostics,
                       bool onlyDateFormat) {
    guarded(diagnostics, "OptionenLadenMain", "frmMain", [&] {
        Loader loader(options, store.read());
        const LoadStep last = onlyDateFormat ? LoadStep::kDateFormat : LoadStep::kLastOfMain;
        for (int step = 0; step <= static_cast<int>(last); ++step) loader.load(static_cast<LoadStep>(step));
    });
}

void loadBarOptions(Options& options, const SettingsStore& store, Diagnostics& diagnostics, OptionBar bar) {
    const BarRoutine routine = routineOf(bar);
    guarded(diagnostics, routine.name, "frmMain", [&] {
        Loader loader(options, store.read());
        if (bar == OptionBar::kTop) loader.load(LoadStep::kTopCount);
        loader.load(routine.step);
    });
}

void OptionenSpeichernMain(const Options& options, SettingsStore& store) {
    store.change([&](IniText& ini) {
        for (const OptionKey& key : kOptionTable) {
            if (key.step == LoadStep::kDateFormat) continue;  // The options dialog's.
            std::visit([&](auto field) { save(ini, key, options.*field); }, key.field);
        }
    });
}

}  // namespace hl
