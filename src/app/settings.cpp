#include "app/settings.h"

#include <cerrno>
#include <optional>

#include "base/text.h"

namespace hl {

namespace {

constexpr std::size_t kLargestIni = 4 << 20;  // Larger files are ignored, since no real settings take that
                                              // much.

int writeWhole(Files& files, const std::string& path, std::string_view text) {
    int error = 0;
    const auto file = files.replace(path, error);
    if (!file) return error;
    error = file->write(text);
    return error == 0 ? file->commit() : error;
}

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
    int error = 0;
    return IniText(files_.readWhole(pathOf(file), kLargestIni, error).value_or(std::string()));
}

void SettingsStore::change(const std::function<void(IniText&)>& change, const std::string& file) {
    const std::string& path = pathOf(file);
    const auto lock = files_.lockFolderOf(path);
    int error = 0;
    const auto before = files_.readWhole(path, kLargestIni, error);
    if (!before && error != ENOENT) return;
    IniText ini(before.value_or(std::string()));
    change(ini);
    if (ini.text() != before.value_or(std::string())) writeWhole(files_, path, ini.text());
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
