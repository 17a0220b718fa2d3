// The life of the main window, from loading to the end of the process. For the thread of the logic only.
#pragma once

#include "mainwindow/main_form.h"
#include "platform/patience.h"
#include "platform/window.h"

namespace hl {

class WindowForm final : public WindowEvents {
  public:
    WindowForm(const Services& services, const WindowServices& window) : form_(services, window) {}

    /// What the window shows, for the start of the module.
    WindowParts& parts() { return form_.parts; }
    const ScanState& state() const { return form_.session.state; }
    bool restartPending() const { return form_.restartPending; }
    /// Tells that the window was closed; sources handed over now would be lost.
    bool unloaded() const { return form_.closed; }
    /// Locks the window while a disk is waited for.
    DiskWait& diskWait() { return form_.diskWaiting; }
    void takeDriveAnswers() { form_.drives.takeAnswers(); }
    /// Data and controllers, for whoever acts without mouse and keys.
    MainForm& form() { return form_; }

    // --- WindowEvents
    void formLoad(const Window& window, MessagePump& pump) override;
    void formActivate() override;
    bool formQueryUnload() override;
    void formUnload() override;
    void formResize() override;
    void formKeyUp(int key) override;
    void gridChanged(GridId grid) override;
    void gridContentChanged(GridId grid, bool rows) override;
    void handOver(const std::string& commandLine) override { form_.sources.handOver(commandLine); }
    void windowFault(const char* where) override;

  private:
    void load();
    void loadToolbars();
    void initGrids();
    void activate();
    void saveState();

    MainForm form_;
    bool loaded_ = false;  ///< The form has taken over everything that is saved at the end.
};

}  // namespace hl
