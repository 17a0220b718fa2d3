// The questions of the window, asked in front of it. For the thread of the window.
#pragma once

#include "platform/dialogs.h"
#include "platform/qt/bars/icon_store.h"
#include "platform/qt/forms/dialogs.h"
#include "platform/window.h"

namespace hl {

class WindowDialogs final : public Dialogs {
  public:
    /// What is passed in outlives it; `events` hears of errors. Texts and icons come from `parts`.
    WindowDialogs(const WindowParts& parts, WindowEvents& events, QWidget& frame);

    /// What the next question stands in front of: the question that is asked now, else the window.
    QWidget* asker();
    /// To be called after a change of the palette.
    void renewIcons() {
        icons_.clear();
        paperIcons_.clear();
    }

    void showForm(Form& form) override;
    bool message(MessageKind kind, const std::string& text) override;
    bool confirm(const std::string& text, const std::string& action, const LiveText& live) override;
    std::string askText(const std::string& prompt, const std::string& preset) override;
    std::string askFolder(const std::string& title, const std::string& start) override;
    std::string askOpenPath(const std::string& filter, const std::string& folder) override;
    std::string askSavePath(const std::string& filter, const std::string& extension,
                            const std::string& folder) override;
    std::optional<GridFont> askFont(const GridFont& start) override;
    void previewPrint(const PrintJob& job) override;
    void print(const PrintJob& job) override;
    int showMenu(const std::vector<MenuEntry>& entries, Point at) override;

  private:
    WindowEvents& events_;
    QWidget& frame_;
    DialogTexts texts_;
    IconStore icons_;       ///< In the colours of the palette.
    IconStore paperIcons_;  ///< In the colours of paper.
};

}  // namespace hl
