// The desktop's knowledge of file types: their names and icons.
#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace hl {

/// For the thread of the logic. An implementation remembers what it found for an extension, because lists ask
/// for thousands of rows.
class FileTypes {
  public:
    virtual ~FileTypes() = default;
    /// Returns a name such as "PNG image" in the user's language; nothing if the file's name does not decide.
    virtual std::optional<std::string> typeName(std::string_view fileName) = 0;
    /// Decides by name and content; `beginning` is the first 4 KiB of the content. Empty if they do not tell
    /// the type.
    virtual std::string typeName(std::string_view fileName, std::string_view beginning) = 0;
    /// Returns the name of the icon in the desktop's theme ("image-png"), by the file's name alone. Never
    /// empty.
    virtual std::string iconName(std::string_view fileName) = 0;
};

/// Hands out the numbers that rows hold as pictures for file types, and knows the icon of each. Numbers below
/// kFirst are pictures of platform/icons.h. The main form owns it; the window reads it.
class FilePictures {
  public:
    static constexpr int kFirst = 160;
    static constexpr int kLast = 255;  ///< The largest number that a row can hold; all further types share
                                       ///< it.
    static constexpr const char* kAnyFile = "text-x-generic";

    /// `types` must outlive it.
    explicit FilePictures(FileTypes& types) : types_(types) {}

    /// Returns the picture for a file of that name, which need not exist.
    int of(std::string_view fileName) {
        std::string icon = types_.iconName(fileName);
        const auto found = std::find(icons_.begin(), icons_.end(), icon);
        const int number = kFirst + static_cast<int>(found - icons_.begin());
        if (number >= kLast) return kLast;
        if (found == icons_.end()) icons_.push_back(std::move(icon));
        return number;
    }
    /// Returns the name of the theme's icon; empty for a number that was not handed out.
    std::string iconName(int picture) const {
        if (picture < kFirst || picture > kLast) return {};
        const auto index = static_cast<std::size_t>(picture - kFirst);
        return index < icons_.size() ? icons_[index] : kAnyFile;
    }

  private:
    FileTypes& types_;
    std::vector<std::string> icons_;
};

}  // namespace hl
