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
    void reportChanged() { view_.reportChanged(); }

  private:
    void selectFolder(const std::string& path) override;
    void selectFile(const std::string& folder, const std::string& name) override;
    void openFolderMenu(Row row, Point at) override;

    MainForm& form_;
    MapView view_;
};

}  // namespace hl
