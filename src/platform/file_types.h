// What the desktop knows of kinds of files: their names, and the icons that stand for them.
#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace hl {

/// For the thread of the logic. Implementations keep what they have found for an ending: lists ask for rows
/// by the thousand.
class FileTypes {
  public:
    virtual ~FileTypes() = default;
    /// "PNG image", in the user's language; nothing where the file's name leaves a doubt.
    virtual std::optional<std::string> typeName(std::string_view fileName) = 0;
    /// By name and content, of which `beginning` has the first 4 KiB.
    virtual std::string typeName(std::string_view fileName, std::string_view beginning) = 0;
    /// Name of the icon in the desktop's theme ("image-png"), by the file's name alone: nothing is read.
    /// Never empty.
    virtual std::string iconName(std::string_view fileName) = 0;
};

/// Pictures of rows for kinds of files. A row holds a number; this hands numbers out and knows their icons.
/// Below kFirst are the pictures of platform/icons.h. Owned by the main form; the window reads it.
class FilePictures {
  public:
    static constexpr int kFirst = 160;
    static constexpr int kLast = 255;  ///< What a row can hold; kinds beyond it share this one.
    static constexpr const char* kAnyFile = "text-x-generic";

    /// `types` must outlive it.
    explicit FilePictures(FileTypes& types) : types_(types) {}

    /// The picture for a file of that name, which need not exist.
    int of(std::string_view fileName) {
        std::string icon = types_.iconName(fileName);
        const auto found = std::find(icons_.begin(), icons_.end(), icon);
        const int number = kFirst + static_cast<int>(found - icons_.begin());
        if (number >= kLast) return kLast;
        if (found == icons_.end()) icons_.push_back(std::move(icon));
        return number;
    }
    /// Name of the theme's icon; empty for a number that is no picture of a file.
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
