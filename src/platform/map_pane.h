// The pane of the map, as the logic sees it: pixels that the logic paints, with names and a frame above them.
// For the thread of the logic. All places are in pixels of the screen, so on a screen that is scaled by two
// there are twice as many.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/geometry.h"
#include "platform/grid_pane.h"

namespace hl {

/// Pixels of 0xffRRGGBB, which the pane owns.
struct MapPixels {
    std::uint32_t* first = nullptr;
    std::size_t rowLength = 0;  ///< From one row to the next, in pixels.
    int width = 0, height = 0;
};

struct MapName {
    Rect place;
    std::string text;
    /// The name of a folder, at the top left of its tiles; others stand in the middle.
    bool isHeading = false;
    bool onLight = false;  ///< What lies below it is so light that the name has to be dark.
};

/// A colour and what it stands for.
struct MapLegend {
    std::uint32_t colour = 0;  ///< 0xRRGGBB.
    std::string text;
};

/// What lies above the pixels.
struct MapOverlay {
    std::vector<MapName> names;     ///< A name that is too long for its place is shortened.
    std::vector<MapLegend> legend;  ///< Stands below the pixels; the pane shows as much as there is room for.
    Rect frame;                     ///< Around what is selected; empty for nothing.
    std::string hint;               ///< Is shown in the middle of a map without tiles.
};

/// A tile, as a screen reader knows it.
struct MapItem {
    Rect place;
    std::string text;
    int level = 0;  ///< 0 for the whole map.
    bool hasItems = false;
};

/// What the pane needs to know of the desktop's looks when it has something painted.
struct MapLooks {
    int lineHeight = 0;  ///< Of a name.
    bool isDark = false;
};

enum class MapStep : std::uint8_t { kLeft, kRight, kUp, kDown, kInto, kOutOf };

/// What the pane asks and tells. No routine throws.
class MapEvents {
  public:
    virtual ~MapEvents() = default;
    /// Paints all pixels.
    virtual void paint(const MapPixels& pixels, const MapLooks& looks) = 0;
    /// Returns what lies above the pixels that were painted last.
    virtual MapOverlay overlay() = 0;
    virtual void pressed(Point at, MouseButton button, Point onScreen) = 0;
    /// A double click, or the wheel: a level down to what is there, or up.
    virtual void levelAt(Point at, bool down) = 0;
    /// An arrow key moves the selection; Return and Backspace go a level down and up.
    virtual void stepped(MapStep step) = 0;
    /// The key for menus; the menu opens at the middle of what is selected.
    virtual void menuKey() = 0;
    /// Returns what the tooltip tells of the thing there; empty for nothing.
    virtual std::string tip(Point at) = 0;
    /// Returns what a screen reader says of what is selected.
    virtual std::string spoken() = 0;

    // --- the tiles as a screen reader knows them, each before those in it, as they were painted last
    virtual std::size_t itemCount() = 0;
    virtual MapItem item(std::size_t number) = 0;
    /// Returns the deepest one there; itemCount() for none.
    virtual std::size_t itemAt(Point at) = 0;
    /// Returns the number of what is selected; itemCount() for nothing.
    virtual std::size_t selectedItem() = 0;
    virtual void selectItem(std::size_t number) = 0;
};

class MapPane {
  public:
    virtual ~MapPane() = default;
    /// `events` must outlive the pane, or be detached with null.
    virtual void setEvents(MapEvents* events) = 0;
    /// Has the pixels painted anew, soon and once for many calls.
    virtual void refresh() = 0;
    /// Asks for the overlay anew: something else is selected.
    virtual void refreshOverlay() = 0;
    /// Returns what the pane shows, without the frame, as a PNG file; empty for nothing.
    virtual std::string png() = 0;
    /// Returns a place of the pane on the screen, in the desktop's own unit.
    virtual Point onScreen(Point at) = 0;
};

}  // namespace hl
