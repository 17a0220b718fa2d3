#include "platform/qt/preview/preview_web.h"

#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QTextDocument>
#include <algorithm>
#include <cstdio>

#include "base/text.h"

namespace hl {

namespace {

constexpr int kWidth = 600;

std::string_view nameAt(std::string_view markup) {
    const std::size_t end = markup.find_first_of(" \t\r\n/>");
    return markup.substr(0, std::min({end, markup.size(), std::size_t{16}}));
}

class TriedDocument final : public QTextDocument {
  public:
    void layOut(const QString& markup) {
        setHtml(markup);
        setTextWidth(kWidth);
        static_cast<void>(size());
    }

  protected:
    QVariant loadResource(int type, const QUrl&) override { return nothingInstead(type); }
};

}  // namespace

std::string withoutLinks(const std::string& markup) {
    std::string out;
    out.reserve(markup.size());
    std::string_view rest = markup;
    while (!rest.empty()) {
        const std::size_t start = std::min(rest.find('<'), rest.size());
        out.append(rest.substr(0, start));
        rest.remove_prefix(start);
        const bool link = rest.size() > 1 && compareFolded(nameAt(rest.substr(1)), "link") == 0;
        if (link) {
            rest.remove_prefix(std::min(rest.find('>'), rest.size() - 1) + 1);
        } else if (!rest.empty()) {
            out += '<';
            rest.remove_prefix(1);
        }
    }
    return out;
}

QVariant nothingInstead(int type) {
    if (type != QTextDocument::ImageResource) return QByteArray("");
    QImage nothing(1, 1, QImage::Format_ARGB32_Premultiplied);
    nothing.fill(Qt::transparent);
    return nothing;
}

int tryPage(int argc, char** argv, int descriptor, const std::function<void()>& ready) {
    qputenv("QT_QPA_PLATFORM", "minimal");
    const QGuiApplication application(argc, argv);
    QFile file;
    if (!file.open(descriptor, QIODevice::ReadOnly, QFileDevice::DontCloseHandle)) return 1;
    const QString markup = QString::fromUtf8(file.readAll());
    TriedDocument().layOut(QStringLiteral("<b>x</b><i>x</i>"));  // This lets the fonts be found.
    ready();
    TriedDocument().layOut(markup);
    return std::puts(kPageTried) >= 0 ? 0 : 1;
}

}  // namespace hl
