// The program's pictures by number, sharp at every size and scale factor, in the colours of the palette. For
// the thread of the logic only.
#pragma once

#include <QColor>
#include <QHash>
#include <QIcon>
#include <functional>
#include <optional>
#include <string>

namespace hl {

/// Pictures of rows are icons of the desktop's theme, if it has them; all others are drawings of the
/// program's own.
class IconStore {
  public:
    /// `dataFolder` holds the drawings, in "icons". `fileIcon` returns the theme's icon name for a number
    /// that platform/icons.h does not have; empty for none. `ink` replaces the palette's text colour in
    /// drawings.
    explicit IconStore(std::string dataFolder, std::function<std::string(int)> fileIcon = {},
                       std::optional<QColor> ink = {})
        : folder_(std::move(dataFolder) + "/icons/"), fileIcon_(std::move(fileIcon)), ink_(ink) {}

    /// Returns a null icon for a number without a picture.
    QIcon icon(int number);
    /// The icon of the program itself.
    QIcon programIcon();
    /// Must be called when the palette or the theme changes; icons handed out before keep their colours.
    void clear() { cache_.clear(); }

  private:
    QIcon make(int number) const;
    QIcon ofFile(int number) const;
    QIcon drawing(const std::string& name) const;

    std::string folder_;
    std::function<std::string(int)> fileIcon_;
    std::optional<QColor> ink_;
    QHash<int, QIcon> cache_;
};

}  // namespace hl
