#include "platform/qt/window/dropped_places.h"

#include <QDropEvent>
#include <QMimeData>
#include <QSysInfo>
#include <algorithm>

namespace hl {

namespace {

constexpr const char* kUriList = "text/uri-list";

/// Returns the bytes of the path that a URI names; empty if it is not on this machine.
QByteArray pathOf(QByteArray uri) {
    constexpr qsizetype kScheme = 5;
    if (uri.left(kScheme).toLower() != "file:") return {};
    uri.remove(0, kScheme);
    if (uri.startsWith("//")) {
        const qsizetype slash = uri.indexOf('/', 2);
        if (slash < 0) return {};
        const QByteArray host = uri.mid(2, slash - 2).toLower();
        if (!host.isEmpty() && host != "localhost" && host != QSysInfo::machineHostName().toUtf8().toLower())
            return {};
        uri.remove(0, slash);
    }
    const QByteArray path = QByteArray::fromPercentEncoding(uri);
    return path.startsWith('/') && !path.contains('\0') ? path : QByteArray();
}

}  // namespace

bool hasPlaces(const QMimeData& data) {
    return data.hasFormat(QLatin1String(kUriList));
}

std::vector<DroppedPlace> placesOf(const QMimeData& data) {
    std::vector<DroppedPlace> places;
    for (const QByteArray& line : data.data(QLatin1String(kUriList)).split('\n')) {
        const QByteArray uri = line.trimmed();
        if (uri.isEmpty() || uri.startsWith('#')) continue;
        std::string path = pathOf(uri).toStdString();
        while (path.size() > 1 && path.ends_with('/')) path.pop_back();
        places.push_back({QByteArray::fromPercentEncoding(uri).toStdString(), std::move(path)});
    }
    return places;
}

bool acceptPlaces(QDropEvent& event) {
    if (!hasPlaces(*event.mimeData())) return false;
    const Qt::DropActions offered = event.possibleActions();
    event.setDropAction(offered.testFlag(Qt::CopyAction)   ? Qt::CopyAction
                        : offered.testFlag(Qt::LinkAction) ? Qt::LinkAction
                                                           : Qt::IgnoreAction);
    event.accept();
    return true;
}

}  // namespace hl
