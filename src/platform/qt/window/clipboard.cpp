#include "platform/qt/window/clipboard.h"

#include <QClipboard>
#include <QEventLoop>
#include <QGuiApplication>
#include <QMimeData>
#include <QProcess>
#include <QStandardPaths>
#include <QTimer>

#include "base/path.h"
#include "platform/qt/common/qt_convert.h"

namespace hl {

namespace {

// In milliseconds.
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

/// Returns one line for each path, with `before` in front and `after` behind it.
template <typename Text>
QByteArray lines(const std::vector<std::string>& paths, Text text, const char* before, const char* after) {
    QByteArray all;
    for (const std::string& path : paths)
        all.append(before).append(QByteArray::fromStdString(text(path))).append(after);
    return all;
}

}  // namespace

void WindowClipboard::copyText(const std::string& text) {
    QGuiApplication::clipboard()->setText(qtText(text));
}

void WindowClipboard::copyFiles(const std::vector<std::string>& paths) {
    const auto url = [](const std::string& path) { return fileUrl(path); };
    const auto itself = [](const std::string& path) { return path; };
    auto* data = new QMimeData;
    data->setData(QStringLiteral("text/uri-list"), lines(paths, url, "", "\r\n"));
    data->setData(QStringLiteral("x-special/gnome-copied-files"), "copy" + lines(paths, url, "\n", ""));
    data->setText(qtText(lines(paths, itself, "\n", "").mid(1).toStdString()));
    QGuiApplication::clipboard()->setMimeData(data);
}

void WindowClipboard::leaveText(const std::string& text) {
    copyText(text);
    const QString platform = QGuiApplication::platformName();
    const QByteArray bytes = qtText(text).toUtf8();
    bool held = true;  // Other platforms do not share a clipboard with other programs.
    if (platform == QLatin1String("xcb"))
        held = handOver(QString::fromStdString(holder_), {QStringLiteral("-platform"), platform}, bytes);
    if (platform.startsWith(QLatin1String("wayland")))
        held = handOver(QStandardPaths::findExecutable(QStringLiteral("wl-copy")),
                        {QStringLiteral("--type"), QStringLiteral("text/plain")}, bytes);
    if (held) return;
    QEventLoop loop;
    QTimer::singleShot(kTimeToFetch, &loop, &QEventLoop::quit);
    loop.exec(QEventLoop::ExcludeUserInputEvents);
}

}  // namespace hl
