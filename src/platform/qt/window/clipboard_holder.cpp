#include "platform/qt/window/clipboard_holder.h"

#include <QClipboard>
#include <QGuiApplication>

namespace hl {

int holdOnClipboard(int argc, char** argv, const std::string& text, const std::function<void()>& held) {
    qunsetenv("SESSION_MANAGER");  // The session manager would start the helper again with the next session.
    QGuiApplication application(argc, argv);
    QClipboard& clipboard = *QGuiApplication::clipboard();
    clipboard.setText(QString::fromStdString(text));
    if (!clipboard.ownsClipboard()) return 1;
    QObject::connect(&clipboard, &QClipboard::dataChanged, &application, [&] {
        if (!clipboard.ownsClipboard()) QGuiApplication::quit();
    });
    held();
    return QGuiApplication::exec();
}

}  // namespace hl
