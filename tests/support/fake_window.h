// A window that shows nothing: it records what it is asked, and gives no answers.
#pragma once

#include <cstdlib>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/window.h"

namespace hl::test {

class FakeWindow : public Window {
  public:
    std::vector<std::string> calls;
    std::function<void(const PrintJob&)> onPrint;

    void setTitle(const std::string&) override {}
    void setBusyPointer(bool) override {}
    Rect screen() override { return {0, 0, 1280, 900}; }
    ScreenFacts screenFacts() override { return {1280, 900, 32}; }
    Rect normalGeometry() override { return {0, 0, 780, 540}; }
    void setGeometry(const Rect&) override {}
    WindowState state() override { return WindowState::kNormal; }
    void setState(WindowState) override {}
    void show() override {}
    void close() override { calls.emplace_back("close"); }
    void bringToFront() override { calls.emplace_back("front"); }
    void setStatus(const StatusPanels&) override {}
    void setSources(const std::vector<ComboItem>&, const std::string&, int) override {}
    int barHeight(BarId) override { return 24; }
    int gridWidth(GridId) override { return 245; }
    Rect clientArea() override { return {0, 0, 780, 500}; }
    void autosizeColumn(GridId, std::size_t column, int margin) override {
        calls.push_back("fit " + std::to_string(column) + " " + std::to_string(margin));
    }
    int widthBesideColumns(GridId) override { return 0; }
    int heightOfRows(GridId) override { return 60; }
    void scrollIntoView(GridId, Row) override { calls.emplace_back("scroll"); }
    std::optional<RowRange> visibleRows(GridId) override { return std::nullopt; }
    std::size_t columnAt(GridId, Point) override { return 0; }
    void refresh(GridId) override {}
    void focusGrid(GridId) override { calls.emplace_back("focus"); }
    void focusEdit(BarId, int id) override { calls.push_back("edit " + std::to_string(id)); }
    void editCell(GridId, Row) override { calls.emplace_back("rename"); }
    GridFont font(GridId) override { return {}; }
    void setFont(GridId, const GridFont&) override {}
    void showForm(Form&) override { calls.emplace_back("form"); }
    bool message(MessageKind, const std::string& text) override {
        calls.push_back(text);
        return true;
    }
    std::string askText(const std::string&, const std::string&) override { return {}; }
    std::string askFolder(const std::string&, const std::string&) override { return {}; }
    std::string askSavePath(const std::string&, const std::string&, const std::string&) override {
        return {};
    }
    std::optional<GridFont> askFont(const GridFont&) override { return std::nullopt; }
    void previewPrint(const PrintJob& job) override {
        calls.push_back("preview " + job.title);
        if (onPrint) onPrint(job);
    }
    void print(const PrintJob& job) override { calls.push_back("print " + job.title); }
    void showPopup(BarId, int popup, Point) override { calls.push_back("popup " + std::to_string(popup)); }
    int showMenu(const std::vector<MenuEntry>&, Point) override { return 0; }
    bool openUrl(const std::string& url) override {
        calls.push_back(url);
        return true;
    }
    void copyText(const std::string&) override {}
    void copyFiles(const std::vector<std::string>&) override {}
    void leaveText(const std::string&) override {}
    /// No test with this window needs these.
    FileTypes& fileTypes() override { std::abort(); }
    Desktop& desktop() override { std::abort(); }
};

}  // namespace hl::test
