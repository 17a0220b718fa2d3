#include "platform/qt/common/qt_convert.h"

#include <QFontInfo>
#include <QGuiApplication>
#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

#include "base/text.h"
#include "platform/window.h"

namespace hl {

namespace {

constexpr int kF1 = 112, kF24 = 135;
/// Here the stand-ins for bytes that are no UTF-8 begin; bytes below 0x80 always are.
constexpr char32_t kStrayByte = 0xDC00, kFirstStray = 0xDC80, kLastStray = 0xDCFF;
constexpr char32_t kReplacement = 0xFFFD;

/// The virtual key codes that differ from Qt's; letters and digits are the same in both.
constexpr std::array<std::pair<int, int>, 25> kKeys = {{
    {8, Qt::Key_Backspace},       {9, Qt::Key_Tab},        {kKeyReturn, Qt::Key_Return},
    {kKeyEscape, Qt::Key_Escape}, {32, Qt::Key_Space},     {33, Qt::Key_PageUp},
    {34, Qt::Key_PageDown},       {35, Qt::Key_End},       {36, Qt::Key_Home},
    {37, Qt::Key_Left},           {kKeyUp, Qt::Key_Up},    {39, Qt::Key_Right},
    {kKeyDown, Qt::Key_Down},     {45, Qt::Key_Insert},    {kKeyDelete, Qt::Key_Delete},
    {93, Qt::Key_Menu},           {106, Qt::Key_Asterisk}, {107, Qt::Key_Plus},
    {109, Qt::Key_Minus},         {111, Qt::Key_Slash},    {187, Qt::Key_Plus},
    {188, Qt::Key_Comma},         {189, Qt::Key_Minus},    {190, Qt::Key_Period},
    {191, Qt::Key_NumberSign},
}};

bool isLetterOrDigit(int key) {
    return (key >= '0' && key <= '9') || (key >= 'A' && key <= 'Z');
}

int qtKey(int key) {
    if (isLetterOrDigit(key)) return key;
    if (key >= kF1 && key <= kF24) return Qt::Key_F1 + (key - kF1);
    for (const auto& [code, qt] : kKeys)
        if (code == key) return qt;
    return 0;
}

}  // namespace

QString qtText(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QString shownName(std::string_view bytes) {
    return qtText(visible(bytes));
}

QString captionText(std::string_view caption) {
    return qtText(caption).replace(QLatin1Char('&'), QStringLiteral("&&"));
}

std::string utf8(const QString& text) {
    return text.toStdString();
}

QString editableText(std::string_view bytes) {
    QString text;
    while (!bytes.empty()) {
        const auto [value, length] = firstCodePoint(bytes);
        const char32_t stray = kStrayByte + static_cast<unsigned char>(bytes.front());
        text.append(QChar::fromUcs4(value.value_or(stray)));
        bytes.remove_prefix(value ? length : 1);
    }
    return text;
}

std::string bytesOfEditable(const QString& text) {
    std::string bytes;
    for (qsizetype i = 0; i < text.size(); ++i) {
        char32_t c = text[i].unicode();
        if (c >= kFirstStray && c <= kLastStray) {
            bytes += static_cast<char>(c - kStrayByte);
            continue;
        }
        const bool pair = QChar::isHighSurrogate(c) && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        if (pair) {
            c = QChar::surrogateToUcs4(text[i], text[i + 1]);
            ++i;
        }
        appendUtf8(bytes, QChar::isSurrogate(c) ? kReplacement : c);
    }
    return bytes;
}

QFont desktopFont(int largerBy) {
    constexpr qreal kSmallest = 5;
    QFont font;
    if (largerBy == 0) return font;
    // A font with nothing but a size leaves the rest to the desktop.
    const qreal points = QFontInfo(QGuiApplication::font()).pointSizeF();
    font.setPointSizeF(std::max(kSmallest, points + largerBy));
    return font;
}

int virtualKey(const QKeyEvent& event) {
    const int key = event.key();
    if (key == Qt::Key_Enter) return kKeyReturn;
    if (isLetterOrDigit(key)) return key;
    if (key >= Qt::Key_F1 && key <= Qt::Key_F24) return kF1 + (key - Qt::Key_F1);
    for (const auto& [code, qt] : kKeys)
        if (qt == key) return code;
    return 0;
}

int handledKey(const QKeyEvent& event) {
    const int key = virtualKey(event);
    constexpr int kHandled[] = {kKeyReturn, kKeyEscape, kKeyUp, kKeyDown, kKeyDelete, kKeyF2};
    return std::find(std::begin(kHandled), std::end(kHandled), key) != std::end(kHandled) ? key : 0;
}

QKeySequence acceleratorOf(int key) {
    const bool shift = (key & kKeyWithShift) != 0;
    const int qt = qtKey(key & ~kKeyWithShift);
    if (qt == 0) return {};
    const bool alone = key >= kF1 && key <= kF24;
    const int with = static_cast<int>(Qt::CTRL) | (shift ? static_cast<int>(Qt::SHIFT) : 0);
    return QKeySequence(alone ? qt : (qt | with));
}

}  // namespace hl
