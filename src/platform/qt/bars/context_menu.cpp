#include "platform/qt/bars/context_menu.h"

#include <QKeySequence>
#include <QMenu>

#include "platform/qt/common/qt_convert.h"

namespace hl {

namespace {

void fill(QMenu& menu, const std::vector<MenuEntry>& entries, IconStore& icons) {
    for (const MenuEntry& entry : entries) {
        const QString caption = qtText(entry.caption).replace(QLatin1Char('&'), QLatin1String("&&"));
        if (!entry.entries.empty()) {
            fill(*menu.addMenu(caption), entry.entries, icons);
        } else if (entry.id == 0) {
            menu.addSeparator();
        } else {
            QAction* action = menu.addAction(icons.icon(entry.icon), caption);
            action->setData(entry.id);
            action->setShortcut(QKeySequence::fromString(qtText(entry.key), QKeySequence::PortableText));
        }
    }
}

}  // namespace

int askWithMenu(QWidget* parent, const std::vector<MenuEntry>& entries, IconStore& icons, const QPoint& at) {
    QMenu menu(parent);
    fill(menu, entries, icons);
    const QAction* chosen = menu.exec(at);
    return chosen != nullptr ? chosen->data().toInt() : 0;
}

}  // namespace hl
