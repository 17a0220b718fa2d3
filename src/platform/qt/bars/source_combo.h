// The combo box of sources: a list with icons, and a field to type another name. For the window's thread.
#pragma once

#include <QComboBox>

#include "platform/qt/bars/icon_store.h"
#include "platform/window.h"

namespace hl {

/// Names that are longer than the list is wide are cut in the middle there.
class SourceComboBox final : public QComboBox {
  public:
    /// What is passed in outlives it; `faults` hears of errors.
    SourceComboBox(IconStore& icons, WindowEvents& faults, SourceEvents& events);

    /// Sets the sources without telling the logic. `selected` is -1 if `text` was typed.
    void setSources(const std::vector<ComboItem>& items, const std::string& text, int selected);

    /// Must be called after a change of the palette.
    void renewIcons();

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    bool standsOnItem() const;
    bool removeInList();

    IconStore& icons_;
    WindowEvents& faults_;
    SourceEvents& events_;
    std::vector<int> images_;
};

}  // namespace hl
