#include "platform/qt/preview_texts.h"

#include <QImage>
#include <algorithm>
#include <array>

#include "base/text.h"
#include "base/text_encoding.h"
#include "platform/qt/qt_convert.h"

namespace hl {

namespace {

/// Characters of a line that the toolkit lays out in no time; a longer one is shown as several.
constexpr qsizetype kLongestLine = 8192;
constexpr std::size_t kDeepest = 40;
constexpr std::array<std::string_view, 9> kNesting = {"table", "div", "ul", "ol",    "blockquote",
                                                      "dl",    "td",  "li", "center"};

QString splitLines(const QString& text) {
    QString out;
    out.reserve(text.size());
    qsizetype line = 0;
    for (const QChar c : text) {
        line = c == QLatin1Char('\n') ? 0 : line + 1;
        if (line > kLongestLine && !c.isLowSurrogate()) {
            out += QLatin1Char('\n');
            line = 1;
        }
        out += c.isNull() ? QChar(0x2400) : c;
    }
    return out;
}

std::string_view nameAt(std::string_view markup) {
    const std::size_t end = markup.find_first_of(" \t\r\n/>");
    return markup.substr(0, std::min({end, markup.size(), std::size_t{16}}));
}

}  // namespace

TextView::TextView(QWidget* parent) : QPlainTextEdit(parent) {
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setFrameShape(QFrame::NoFrame);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
}

void TextView::showBytes(std::string_view bytes, bool cut, const std::string& note) {
    QString text = splitLines(QString::fromStdString(decodedText(bytes, cut)));
    if (!note.empty()) text += QLatin1String("\n\n") + qtText(note);
    setPlainText(text);
}

void TextView::showNotice(const std::string& text) {
    setPlainText(qtText(text));
}

WebView::WebView(QWidget* parent) : QTextBrowser(parent) {
    setOpenLinks(false);
    setUndoRedoEnabled(false);
    setFrameShape(QFrame::NoFrame);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
}

bool WebView::showMarkup(std::string_view bytes, bool cut, const std::string& note) {
    const std::string text = decodedText(bytes, cut);
    if (nestingOf(text) > kDeepest) return false;
    setHtml(QString::fromStdString(text));
    if (!note.empty()) append(qtText(note).toHtmlEscaped());
    moveCursor(QTextCursor::Start);
    return true;
}

// A picture that is not given here would be looked for on the disk: every one is an empty one.
QVariant WebView::loadResource(int type, const QUrl&) {
    if (type != QTextDocument::ImageResource) return QByteArray("");
    QImage nothing(1, 1, QImage::Format_ARGB32_Premultiplied);
    nothing.fill(Qt::transparent);
    return nothing;
}

std::size_t nestingOf(std::string_view markup) {
    std::size_t depth = 0, deepest = 0;
    for (std::size_t at = markup.find('<'); at != std::string_view::npos; at = markup.find('<', at + 1)) {
        std::string_view rest = markup.substr(at + 1);
        const bool closes = rest.starts_with('/');
        if (closes) rest.remove_prefix(1);
        if (std::ranges::find(kNesting, lowerCase(nameAt(rest))) == kNesting.end()) continue;
        depth = closes ? depth - std::min<std::size_t>(depth, 1) : depth + 1;
        deepest = std::max(deepest, depth);
    }
    return deepest;
}

}  // namespace hl
