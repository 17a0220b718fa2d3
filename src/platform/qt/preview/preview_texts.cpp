#include "platform/qt/preview/preview_texts.h"

#include <QPalette>

#include "base/text_encoding.h"
#include "platform/qt/common/qt_convert.h"
#include "platform/qt/preview/preview_web.h"

namespace hl {

namespace {

/// The most characters in a line that the toolkit lays out quickly; a longer line is shown as several.
constexpr qsizetype kLongestLine = 8192;

/// The toolkit needs some two microseconds for each.
constexpr int kMostLines = 50'000;

bool endsLine(QChar c) {
    return c == QLatin1Char('\n') || c == QLatin1Char('\r') || c == QChar::LineSeparator ||
           c == QChar::ParagraphSeparator;
}

/// `cut` becomes true if there are more lines than are shown.
QString splitLines(const QString& text, bool& cut) {
    QString out;
    out.reserve(text.size());
    qsizetype line = 0;
    int ends = 0;
    for (const QChar c : text) {
        if (ends == kMostLines) {
            cut = true;
            break;
        }
        const bool end = endsLine(c) && !(c == QLatin1Char('\n') && out.endsWith(QLatin1Char('\r')));
        ends += end ? 1 : 0;
        line = endsLine(c) ? 0 : line + 1;
        if (line > kLongestLine && !c.isLowSurrogate()) {
            out += QLatin1Char('\n');
            line = 1;
        }
        out += c.isNull() ? QChar(0x2400) : c;
    }
    return out;
}

// Pages set some of their colours and expect white paper for the rest.
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
    QString text = splitLines(QString::fromStdString(decodedText(bytes, cut)), cut);
    if (cut) text += QLatin1String("\n\n") + qtText(note);
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
