// A window that shows nothing: it keeps what it was asked, and answers as it was told.
#pragma once

#include "base/path.h"
#include "platform/window.h"
#include "support/recording_desktop.h"

namespace hl::test {

/// One icon for each ending, and no names of types.
struct FakeTypes : FileTypes {
    std::optional<std::string> typeName(std::string_view) override { return {}; }
    std::string typeName(std::string_view, std::string_view) override { return {}; }
    std::string iconName(std::string_view fileName) override { return "icon-" + xGetExtension(fileName); }
};

/// What the parts of the window were asked, and what they answer.
struct FakeAnswers {
    std::vector<std::string> calls;
    bool confirms = true;
    std::string answer;  ///< What the user types when asked for a text.
    std::optional<RowRange> visibleRows;
    std::size_t columnUnderPointer = 0;
    std::string prompt, preset;  ///< What the last question for a text said.
    std::function<void(const PrintJob&)> onPrint = [](const PrintJob&) {};
};

struct FakeFrame : WindowFrame {
    explicit FakeFrame(FakeAnswers& answers) : all(answers) {}
    void setTitle(const std::string&) override {}
    void setBusyPointer(bool) override {}
    Rect screen() override { return {0, 0, 1280, 900}; }
    Rect normalGeometry() override { return {0, 0, 780, 540}; }
    void setGeometry(const Rect&) override {}
    Rect clientArea() override { return {0, 0, 780, 500}; }
    WindowState state() override { return WindowState::kNormal; }
    void setState(WindowState) override {}
    void show() override {}
    void close() override { all.calls.emplace_back("close"); }
    void bringToFront() override { all.calls.emplace_back("front"); }
    void setStatus(const StatusPanels&) override {}
    void setSources(const std::vector<ComboItem>&, const std::string&, int) override {}
    bool openUrl(const std::string& url) override {
        all.calls.push_back(url);
        return true;
    }
    ScreenFacts screenFacts() override { return {1280, 900, 32}; }
    FakeAnswers& all;
};

struct FakeGridPane : GridPane {
    explicit FakeGridPane(FakeAnswers& answers) : all(answers) {}
    void setEvents(GridEvents*) override {}
    bool underPointer() override { return false; }
    void autosizeColumn(std::size_t, int) override {}
    int widthBesideColumns() override { return 0; }
    int innerWidth() override { return 245; }
    int heightOfRows() override { return 60; }
    void scrollIntoView(Row) override {}
    void scrollToMiddle(Row) override {}
    std::optional<RowRange> visibleRows() override { return all.visibleRows; }
    std::size_t columnAt(Point) override { return all.columnUnderPointer; }
    void refresh() override {}
    void focus() override {}
    void editCell(Row) override {}
    GridFont gridFont() const override { return {}; }
    void setGridFont(const GridFont&) override {}
    FakeAnswers& all;
};

struct FakeBarPane : BarPane {
    explicit FakeBarPane(FakeAnswers& answers) : all(answers) {}
    int wrappedHeight() override { return 24; }
    void focusEdit(int id) override { all.calls.push_back("edit " + std::to_string(id)); }
    void markEdit(int id, bool notFound) override {
        if (notFound) all.calls.push_back("not found " + std::to_string(id));
    }
    void showPopup(int popup, Point) override { all.calls.push_back("popup " + std::to_string(popup)); }
    FakeAnswers& all;
};

struct FakeDialogs : Dialogs {
    explicit FakeDialogs(FakeAnswers& answers) : all(answers) {}
    void showForm(Form&) override { all.calls.emplace_back("form"); }
    bool message(MessageKind, const std::string& text) override {
        all.calls.push_back(text);
        return true;
    }
    bool confirm(const std::string& text, const std::string& action, const LiveText&) override {
        all.calls.push_back(action + ": " + text);
        return all.confirms;
    }
    std::string askText(const std::string& prompt, const std::string& preset) override {
        all.prompt = prompt;
        all.preset = preset;
        return all.answer;
    }
    std::string askFolder(const std::string&, const std::string&) override { return {}; }
    std::string askSavePath(const std::string&, const std::string&, const std::string&) override {
        return {};
    }
    std::string askOpenPath(const std::string&, const std::string&) override { return {}; }
    std::optional<GridFont> askFont(const GridFont&) override { return std::nullopt; }
    void previewPrint(const PrintJob& job) override {
        all.calls.push_back("preview " + job.title);
        all.onPrint(job);
    }
    void print(const PrintJob& job) override { all.calls.push_back("print " + job.title); }
    int showMenu(const std::vector<MenuEntry>&, Point) override { return 0; }
    FakeAnswers& all;
};

struct FakeClipboard : Clipboard {
    void copyText(const std::string&) override {}
    void copyFiles(const std::vector<std::string>&) override {}
    void leaveText(const std::string&) override {}
};

/// The parts come before the Window that names them.
struct FakeParts : FakeAnswers {
    FakeFrame frame_{*this};
    FakeGridPane pane_{*this};  ///< Stands for all grids.
    FakeBarPane bar_{*this};    ///< Stands for all bars.
    FakeDialogs dialogs_{*this};
    FakeClipboard clipboard_;
    FakeTypes types_;
    RecordingDesktop desktop_;
};

struct FakeWindow : FakeParts, Window {
    FakeWindow() : Window{frame_, {}, {}, dialogs_, clipboard_, types_, desktop_} {
        grids.fill(&pane_);
        bars.fill(&bar_);
    }
    FakeWindow(const FakeWindow&) = delete;
    FakeWindow& operator=(const FakeWindow&) = delete;
};

}  // namespace hl::test
