// The program's pictures by number, sharp at every size and scale factor, in the colours of the palette.
#pragma once

#include <QColor>
#include <QHash>
#include <QIcon>
#include <functional>
#include <optional>
#include <string>

namespace hl {

/// Pictures of rows come from the desktop's icon theme where that has them; all others are drawings of the
/// program's own. Thread of the logic only.
class IconStore {
  public:
    /// `dataFolder` holds the drawings, in "icons".
    /// `fileIcon`: name of the theme's icon for a number that platform/icons.h does not have; empty for none.
    /// `ink`: what the drawings are drawn with in place of the palette's colour of text.
    explicit IconStore(std::string dataFolder, std::function<std::string(int)> fileIcon = {},
                       std::optional<QColor> ink = {})
        : folder_(std::move(dataFolder) + "/icons/"), fileIcon_(std::move(fileIcon)), ink_(ink) {}

    /// A null icon for a number that has no picture.
    QIcon icon(int number);
    /// Of the program itself.
    QIcon programIcon();
    /// To be called when the palette or the theme changes; icons handed out before keep their colours.
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
