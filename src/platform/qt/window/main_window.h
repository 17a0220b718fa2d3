// The main window: a frame with the main bar, the panes, and the status bar. For the thread of the logic.
#pragma once

#include <array>
#include <memory>

#include "platform/desktop/desktop_programs.h"
#include "platform/qt/bars/icon_store.h"
#include "platform/qt/bars/source_combo.h"
#include "platform/qt/bars/status_panels.h"
#include "platform/qt/bars/tool_bar.h"
#include "platform/qt/grid/grid_view.h"
#include "platform/qt/map/map_area.h"
#include "platform/qt/preview/preview_area.h"
#include "platform/qt/window/clipboard.h"
#include "platform/qt/window/desktop_file_types.h"
#include "platform/qt/window/frame.h"
#include "platform/qt/window/splitter_widget.h"
#include "platform/qt/window/start_view.h"
#include "platform/qt/window/window_dialogs.h"
#include "platform/window.h"

class QVBoxLayout;

namespace hl {

/// Shows the parts and asks what the logic asks. It makes every pane once; the splitters decide which ones
/// are visible. REQUIRES: there is a QApplication; `parts` and `events` outlive the window.
class MainWindow final : public WindowFrame, public SourcePane {
  public:
    MainWindow(WindowParts& parts, WindowEvents& events);
    ~MainWindow() override;

    /// All that the logic may ask of it.
    const Window& window() const { return *window_; }
    Frame& frame() { return *frame_; }
    ToolBar& bar(BarId id) { return *bars_[static_cast<std::size_t>(id)]; }
    GridView& grid(GridId id) { return *grids_[static_cast<std::size_t>(id)]; }

    void setTitle(const std::string& title) override;
    void setBusyPointer(bool busy) override;
    Rect screen() override;
    ScreenFacts screenFacts() override;
    Rect normalGeometry() override;
    void setGeometry(const Rect& rect) override;
    Rect clientArea() override;
    WindowState state() override;
    void setState(WindowState state) override;
    void show() override;
    void close() override;
    void bringToFront() override;
    void setStatus(const StatusPanels& panels) override;
    void setSources(const std::vector<ComboItem>& items, const std::string& text, int selected) override;
    bool openUrl(const std::string& url) override;
    // --- SourcePane
    void setStartPage(const StartPage& page) override;
    void focusBox() override;

  private:
    std::vector<QWidget*> tabStops() const;
    void makePanes();
    void makeWindow();
    void makeGrid(std::size_t number);
    QWidget* pane(const PaneRef& ref);
    void makeStartPage();
    bool startPageShows() const;
    void placeMainBar();
    void renewLooks();
    bool pressAccelerator(int key, bool control);
    bool pressIn(BarId id, int key);
    bool focusNextPane(std::optional<BarId> focused);
    std::optional<BarId> barOfFocus() const;

    WindowParts& parts_;
    WindowEvents& events_;
    DesktopFileTypes fileTypes_;
    DesktopPrograms desktop_;
    IconStore icons_;
    std::unique_ptr<Frame> frame_;
    WindowDialogs dialogs_;
    WindowClipboard clipboard_;
    std::unique_ptr<Window> window_;
    QVBoxLayout* rows_ = nullptr;
    SourceComboBox* sources_ = nullptr;
    QWidget* reportPane_ = nullptr;  ///< Holds the report, and over it the start page.
    StartView* start_ = nullptr;
    StatusPanelBar* status_ = nullptr;
    PreviewArea* preview_ = nullptr;
    MapArea* map_ = nullptr;
    std::array<ToolBar*, kBarCount> bars_{};
    std::array<GridView*, kGridCount> grids_{};
    std::array<SplitterWidget*, kSplitterCount> splitters_{};
    bool busy_ = false;
};

}  // namespace hl
