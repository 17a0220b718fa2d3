// The map of the report: each folder and each of the largest files is a tile, as large as its share. It shows
// what the report has, selects in the report and follows its selection. For the thread of the logic only.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/map_pane.h"
#include "scan/scan_context.h"
#include "views/map_colours.h"
#include "views/map_report.h"

namespace hl {

/// What the map asks of the rest of the window.
class MapHost {
  public:
    virtual ~MapHost() = default;
    /// Selects the folder's row in the report. Messages may run meanwhile.
    virtual void selectFolder(Row row) = 0;
    /// Selects the file in the list of files, if that shows and has it.
    virtual void selectFile(const std::string& folder, const std::string& name) = 0;
    /// Opens the menu of a folder's row. `at` is a place of the screen.
    virtual void openFolderMenu(Row row, Point at) = 0;
};

class MapView final : public MapEvents {
  public:
    /// The arguments must outlive the view.
    MapView(ScanContext& scan, MapHost& host)
        : scan_(scan), grid_(scan.tvwPL), report_(scan), colours_(scan, report_), host_(host) {}

    /// `pane` may be null. It is told whom to ask.
    void setPane(MapPane* pane);
    /// The report's rows or their sizes have changed.
    void reportChanged();
    void selectionChanged();
    /// Tells whether there is a map to be saved or printed.
    bool isEmpty() const { return tiles_.empty(); }
    bool isThin() const { return report_.isThin(); }
    /// Returns the map as an SVG drawing, as the pane shows it.
    std::string svg();
    /// Returns the path of what the map shows; empty for all sources.
    std::string path() const;

    // --- MapEvents
    void paint(const MapPixels& pixels, const MapLooks& looks) override;
    MapOverlay overlay() override;
    void pressed(Point at, MouseButton button, Point onScreen) override;
    void levelAt(Point at, bool down) override;
    void stepped(MapStep step) override;
    void menuKey() override;
    std::string tip(Point at) override;
    std::string spoken() override;
    std::size_t itemCount() override { return tiles_.size(); }
    MapItem item(std::size_t number) override;
    std::size_t itemAt(Point at) override { return tileAt(tiles_, at.x, at.y); }
    std::size_t selectedItem() override;
    void selectItem(std::size_t number) override;

  private:
    /// A file whose tile was clicked; its folder is selected in the report.
    struct PickedFile {
        Row folder = kNoRow;
        std::string name;
    };

    Row topThere() const;
    Row aboveTop() const;
    void setTop(Row row);
    bool select(std::size_t tile);
    void goInto(std::size_t tile);
    std::size_t selectedTile() const;
    std::string textOf(std::size_t tile) const;
    std::string restText(std::size_t tile) const;
    std::string shareText(double bytes) const;
    void addHeadings(MapOverlay& overlay, std::vector<Rect>& taken) const;
    void addNames(MapOverlay& overlay) const;

    ScanContext& scan_;
    const Grid& grid_;
    MapReport report_;
    MapColours colours_;
    MapHost& host_;
    MapPane* pane_ = nullptr;
    /// The folder that the map shows; kNoRow for all sources. A row that goes may give its number to another,
    /// so the path tells whether it is still that folder.
    Row top_ = kNoRow;
    std::string topPath_;
    std::vector<MapTile> tiles_;  ///< As they were painted last.
    double whole_ = 0;            ///< The size of what they show.
    PickedFile picked_;
    int width_ = 0, height_ = 0, lineHeight_ = 0;
};

}  // namespace hl
