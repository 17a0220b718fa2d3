#include "platform/qt/preview_texts.h"

#include <QPalette>

#include "base/text_encoding.h"
#include "platform/qt/preview_web.h"
#include "platform/qt/qt_convert.h"

namespace hl {

namespace {

/// Characters of a line that the toolkit lays out in no time; a longer one is shown as several.
constexpr qsizetype kLongestLine = 8192;

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

// Pages choose some of their colours and count on white paper for the rest.
QPalette paper(QPalette palette) {
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::Text, Qt::black);
    palette.setColor(QPalette::Link, QColor(0, 0, 200));
    return palette;
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
    setPalette(paper(palette()));
    setOpenLinks(false);
    setUndoRedoEnabled(false);
    setFrameShape(QFrame::NoFrame);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
}

void WebView::showMarkup(const std::string& markup, const std::string& note) {
    setHtml(QString::fromStdString(markup));
    if (!note.empty()) append(qtText(note).toHtmlEscaped());
    moveCursor(QTextCursor::Start);
}

QVariant WebView::loadResource(int type, const QUrl&) {
    return nothingInstead(type);
}

}  // namespace hl
