// The map in the main window: it shows what the report has. For the thread of the logic only.
#pragma once

#include <string>

#include "views/map_view.h"

namespace hl {

struct MainForm;
struct Window;

class MapControl final : private MapHost {
  public:
    explicit MapControl(MainForm& form);

    /// Tells that the window and its pane exist; null tells that they no longer do.
    void setWindow(const Window* window);
    /// The report's rows or their sizes have changed.
    void reportChanged();
    void selectionChanged() { view_.selectionChanged(); }

    // --- commands of its bar
    void levelUp() { view_.stepped(MapStep::kOutOf); }
    void savePng();
    void saveSvg();
    void print();

  private:
    void selectFolder(Row row) override;
    void selectFile(const std::string& folder, const std::string& name) override;
    void openFolderMenu(Row row, Point at) override;

    std::string title() const;

    MainForm& form_;
    MapView view_;
};

}  // namespace hl
