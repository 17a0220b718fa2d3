// Reads and changes the settings file. Every call accesses the file; nothing is kept between two calls.
//
// A change is made under a lock in the folder and replaces the file in one step, so that several instances
// lose nothing to one another and a killed process leaves a complete file. Failures are silent: what cannot
// be read counts as missing, and what cannot be written is not written. For the thread of the logic.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "app/ini_file.h"
#include "app/simple_value.h"
#include "platform/files.h"

namespace hl {

class SettingsStore {
  public:
    /// `files` must outlive the store. `iniPath` is used wherever a call names no file.
    SettingsStore(Files& files, std::string iniPath) : files_(files), iniPath_(std::move(iniPath)) {}

    const std::string& iniPath() const { return iniPath_; }

    std::string ProfileGetItem(std::string_view section, std::string_view key, std::string_view defaultValue,
                               const std::string& file) const;
    void ProfileWriteItem(std::string_view section, std::string_view key, std::string_view value,
                          const std::string& file);

    std::string GetSettings(std::string_view section, std::string_view key,
                            const SimpleValue& defaultValue = "", const std::string& file = {}) const;
    void StoreSettings(std::string_view section, std::string_view key, const SimpleValue& value,
                       const std::string& file = {});

    /// Returns the file as it is now, for many look-ups at once; empty if it cannot be read. An empty `file`
    /// means iniPath.
    IniText read(const std::string& file = {}) const;
    /// Makes many changes at once. The file is not written if they change nothing; nor if it exists but
    /// cannot be read, since its content would be lost.
    void change(const std::function<void(IniText&)>& change, const std::string& file = {});

  private:
    const std::string& pathOf(const std::string& file) const { return file.empty() ? iniPath_ : file; }

    Files& files_;
    std::string iniPath_;
};

/// A default that no value equals. It ends a numbered list at the first key that is missing, and is never
/// written.
inline constexpr std::string_view kEndOfList = "!(nix].-.";

/// Returns the values of the keys "0" + suffix, "1" + suffix and so on, up to the first one that is missing.
std::vector<std::string> readNumberedList(const IniText& ini, std::string_view section,
                                          std::string_view suffix);
/// Replaces the whole section by the list; values that are too long for the file are left out.
void writeNumberedList(IniText& ini, std::string_view section, std::string_view suffix,
                       const std::vector<std::string>& values);

}  // namespace hl
