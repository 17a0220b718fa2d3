// The settings file. Every call goes to the file; nothing is kept between two calls.
//
// A change is made under the lock of the folder and replaces the file in one step, so that several instances
// lose nothing to one another and a kill leaves a whole file. Failures are silent: what cannot be read is as
// if it were not there, what cannot be written is not written. For the thread of the logic.
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
    /// `files` must outlive it. `iniPath` is used wherever a call names no file.
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

    /// The file as it is now, for many look-ups at once; empty if it cannot be read. `file` empty: the
    /// default.
    IniText read(const std::string& file = {}) const;
    /// Many changes at once. The file is not touched if none of them changes it, nor if it exists and cannot
    /// be read: what is in it would be lost.
    void change(const std::function<void(IniText&)>& change, const std::string& file = {});

  private:
    const std::string& pathOf(const std::string& file) const { return file.empty() ? iniPath_ : file; }

    Files& files_;
    std::string iniPath_;
};

/// A default that no value equals: the first key of a numbered list that yields it ends the list. Never
/// written.
inline constexpr std::string_view kEndOfList = "!(nix].-.";

/// The values of the keys "0" + suffix, "1" + suffix and so on, up to the first that is missing.
std::vector<std::string> readNumberedList(const IniText& ini, std::string_view section,
                                          std::string_view suffix);
/// Replaces the whole section by the list, without the values that are too long for the file.
void writeNumberedList(IniText& ini, std::string_view section, std::string_view suffix,
                       const std::vector<std::string>& values);

}  // namespace hl
