// The main window: a frame with the main bar, the panes, and the status bar. For the thread of the logic.
#pragma once

#include <array>
#include <memory>

#include "platform/desktop/desktop_programs.h"
#include "platform/qt/bars/icon_store.h"
#include "platform/qt/bars/source_combo.h"
#include "platform/qt/bars/status_panels.h"
#include "platform/qt/bars/tool_bar.h"
#include "platform/qt/forms/dialogs.h"
#include "platform/qt/grid/grid_view.h"
#include "platform/qt/preview/preview_area.h"
#include "platform/qt/window/desktop_file_types.h"
#include "platform/qt/window/frame.h"
#include "platform/qt/window/splitter_widget.h"
#include "platform/window.h"

class QVBoxLayout;

namespace hl {

/// Shows the parts and asks what the logic asks. It makes every pane once; the splitters decide which ones
/// are visible. REQUIRES: there is a QApplication; `parts` and `events` outlive the window.
class MainWindow final : public Window {
  public:
    MainWindow(WindowParts& parts, WindowEvents& events);
    ~MainWindow() override;

    Frame& frame() { return *frame_; }
    ToolBar& bar(BarId id) { return *bars_[static_cast<std::size_t>(id)]; }
    GridView& grid(GridId id) { return *grids_[static_cast<std::size_t>(id)]; }

    void setTitle(const std::string& title) override;
    void setBusyPointer(bool busy) override;
    Rect screen() override;
    ScreenFacts screenFacts() override;
    Rect normalGeometry() override;
    void setGeometry(const Rect& rect) override;
    WindowState state() override;
    void setState(WindowState state) override;
    void show() override;
    void close() override;
    void bringToFront() override;
    void setStatus(const StatusPanels& panels) override;
    void setSources(const std::vector<ComboItem>& items, const std::string& text, int selected) override;

    int barHeight(BarId bar) override;
    int gridWidth(GridId grid) override;
    Rect clientArea() override;

    void autosizeColumn(GridId grid, std::size_t column, int margin) override;
    int widthBesideColumns(GridId grid) override;
    int heightOfRows(GridId grid) override;
    void scrollIntoView(GridId grid, Row row) override;
    std::optional<RowRange> visibleRows(GridId grid) override;
    std::size_t columnAt(GridId grid, Point at) override;
    void refresh(GridId grid) override;
    void focusGrid(GridId grid) override;
    void editCell(GridId grid, Row row) override;
    void focusEdit(BarId bar, int id) override;
    GridFont font(GridId grid) override;
    void setFont(GridId grid, const GridFont& font) override;
    PreviewPane* previewPane() override { return preview_; }

    void showForm(Form& form) override;
    bool message(MessageKind kind, const std::string& text) override;
    std::string askText(const std::string& prompt, const std::string& preset) override;
    std::string askFolder(const std::string& title, const std::string& start) override;
    std::string askSavePath(const std::string& filter, const std::string& extension,
                            const std::string& folder) override;
    std::optional<GridFont> askFont(const GridFont& start) override;
    void previewPrint(const PrintJob& job) override;
    void print(const PrintJob& job) override;
    void showPopup(BarId bar, int popup, Point at) override;
    int showMenu(const std::vector<MenuEntry>& entries, Point at) override;

    bool openUrl(const std::string& url) override;
    void copyText(const std::string& text) override;
    void copyFiles(const std::vector<std::string>& paths) override;
    void leaveText(const std::string& text) override;
    FileTypes& fileTypes() override { return fileTypes_; }
    Desktop& desktop() override { return parts_.desktop != nullptr ? *parts_.desktop : desktop_; }

  private:
    std::vector<QWidget*> tabStops() const;
    void makePanes();
    void makeGrid(std::size_t number);
    QWidget* pane(const PaneRef& ref);
    void placeMainBar();
    void renewLooks();
    bool pressAccelerator(int key, bool control);
    bool pressIn(BarId id, int key);
    bool focusNextPane(std::optional<BarId> focused);
    std::optional<BarId> barOfFocus() const;
    QWidget* asker();

    WindowParts& parts_;
    WindowEvents& events_;
    DesktopFileTypes fileTypes_;
    DesktopPrograms desktop_;
    IconStore icons_;
    IconStore paperIcons_;
    DialogTexts texts_;
    std::unique_ptr<Frame> frame_;
    QVBoxLayout* rows_ = nullptr;
    SourceComboBox* sources_ = nullptr;
    StatusPanelBar* status_ = nullptr;
    PreviewArea* preview_ = nullptr;
    std::array<ToolBar*, kBarCount> bars_{};
    std::array<GridView*, kGridCount> grids_{};
    std::array<SplitterWidget*, kSplitterCount> splitters_{};
    bool busy_ = false;
};

}  // namespace hl
