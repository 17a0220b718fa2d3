#include "app/settings.h"

#include <optional>

#include "base/text.h"

namespace hl {

namespace {

constexpr std::size_t kLargestIni = 4 << 20;  // Larger files are ignored, since no real settings take that
                                              // much.

}  // namespace

std::string SettingsStore::ProfileGetItem(std::string_view section, std::string_view key,
                                          std::string_view defaultValue, const std::string& file) const {
    return read(file).find(section, key).value_or(std::string(defaultValue));
}

void SettingsStore::ProfileWriteItem(std::string_view section, std::string_view key, std::string_view value,
                                     const std::string& file) {
    change([&](IniText& ini) { ini.set(section, key, value); }, file);
}

std::string SettingsStore::GetSettings(std::string_view section, std::string_view key,
                                       const SimpleValue& defaultValue, const std::string& file) const {
    return ProfileGetItem(section, key, defaultValue.text(), pathOf(file));
}

void SettingsStore::StoreSettings(std::string_view section, std::string_view key, const SimpleValue& value,
                                  const std::string& file) {
    ProfileWriteItem(section, key, value.text(), pathOf(file));
}

IniText SettingsStore::read(const std::string& file) const {
    return IniText(files_.readWhole(pathOf(file), kLargestIni).valueOr(""));
}

void SettingsStore::change(const std::function<void(IniText&)>& change, const std::string& file) {
    const std::string& path = pathOf(file);
    const auto lock = files_.lockFolderOf(path);
    auto found = files_.readWhole(path, kLargestIni);
    if (!found && !found.failedAs(ErrorKind::kNotFound)) return;
    const std::string before = std::move(found).valueOr("");
    IniText ini(before);
    change(ini);
    // A file that cannot be written costs its settings, and nothing else.
    if (ini.text() != before) static_cast<void>(replaceWhole(files_, path, ini.text()));
}

std::vector<std::string> readNumberedList(const IniText& ini, std::string_view section,
                                          std::string_view suffix) {
    const auto values = ini.section(section);
    const std::string end = lowerCase(suffix);
    std::vector<std::string> list;
    for (;;) {
        const auto value = values.find(std::to_string(list.size()) + end);
        if (value == values.end() || value->second == kEndOfList) return list;
        list.push_back(value->second);
    }
}

void writeNumberedList(IniText& ini, std::string_view section, std::string_view suffix,
                       const std::vector<std::string>& values) {
    ini.removeSection(section);
    std::size_t number = 0;
    for (const std::string& value : values) {
        if (value == kEndOfList) continue;
        if (ini.set(section, std::to_string(number).append(suffix), value)) ++number;
    }
}

}  // namespace hl
