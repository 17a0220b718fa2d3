// A logic that records what the window tells it, and does what a test wants.
#pragma once

#include "platform/window.h"

namespace hl::test {

class RecordingEvents : public WindowEvents, public BarEvents, public SourceEvents, public GridEvents {
  public:
    /// Has texts such as "execute 0 7", in order.
    std::vector<std::string> told;
    std::function<void(BarId, int)> onExecute = [](BarId, int) {};
    std::function<void(BarId)> onBarResized = [](BarId) {};

    void formLoad(const Window&, MessagePump&) override {}
    void formActivate() override {}
    bool formQueryUnload() override { return true; }
    void formUnload() override {}
    void formResize() override {}
    void formKeyUp(int key) override { told.push_back("formKeyUp " + std::to_string(key)); }
    void execute(BarId bar, int id) override {
        tell("execute", bar, id);
        onExecute(bar, id);
    }
    void editChanged(BarId bar, int id, const std::string& text) override {
        tell("editChanged", bar, id, " " + text);
    }
    void editKeyDown(BarId bar, int id, int key) override {
        tell("editKeyDown", bar, id, " " + std::to_string(key));
    }
    void editLeft(BarId, int) override {}
    void barResized(BarId bar) override { ++resized, onBarResized(bar); }
    void comboText(const std::string&) override {}
    void comboSelected(int) override {}
    void comboKeyDown(int) override {}
    bool comboRemove(int) override { return false; }
    void startChosen(const std::string& tag) override { told.push_back("start " + tag); }
    void dropped(const std::vector<DroppedPlace>&) override {}
    void GridCellAfterEditing(Row row, const std::string& value) override {
        told.push_back("edited " + std::to_string(row) + " " + value);
    }
    void handOver(const std::string&) override {}
    void windowFault(const char* where) override { told.push_back(std::string("fault ") + where); }

    int resized = 0;

  private:
    void tell(const std::string& what, BarId bar, int id, const std::string& more = "") {
        told.push_back(what + " " + std::to_string(static_cast<int>(bar)) + " " + std::to_string(id) + more);
    }
};

}  // namespace hl::test
