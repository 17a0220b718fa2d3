#include "platform/qt/lasting_clipboard.h"

#include <QClipboard>
#include <QEventLoop>
#include <QGuiApplication>
#include <QProcess>
#include <QStandardPaths>
#include <QTimer>

#include "platform/qt/qt_convert.h"

namespace hl {

namespace {

// Milliseconds.
constexpr int kPatience = 3000;
constexpr int kTimeToFetch = 1000;

/// Runs a program that reads the text and ends once it holds the clipboard.
bool handOver(const QString& program, const QStringList& arguments, const QByteArray& text) {
    if (program.isEmpty()) return false;
    QProcess process;
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(program, arguments);
    process.write(text);
    process.closeWriteChannel();
    return process.waitForFinished(kPatience) && process.exitStatus() == QProcess::NormalExit &&
           process.exitCode() == 0;
}

}  // namespace

void leaveOnClipboard(const std::string& text, const std::string& holder) {
    QGuiApplication::clipboard()->setText(qtText(text));
    const QString platform = QGuiApplication::platformName();
    const QByteArray bytes = qtText(text).toUtf8();
    bool held = true;  // Other platforms share no clipboard with other programs.
    if (platform == QLatin1String("xcb"))
        held = handOver(QString::fromStdString(holder), {QStringLiteral("-platform"), platform}, bytes);
    if (platform.startsWith(QLatin1String("wayland")))
        held = handOver(QStandardPaths::findExecutable(QStringLiteral("wl-copy")),
                        {QStringLiteral("--type"), QStringLiteral("text/plain")}, bytes);
    if (held) return;
    QEventLoop loop;
    QTimer::singleShot(kTimeToFetch, &loop, &QEventLoop::quit);
    loop.exec(QEventLoop::ExcludeUserInputEvents);
}

}  // namespace hl
