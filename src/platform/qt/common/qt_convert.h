// Converts texts, names and keys between the logic and Qt. Pure functions.
#pragma once

#include <QFont>
#include <QKeyEvent>
#include <QKeySequence>
#include <QString>
#include <string>
#include <string_view>

namespace hl {

/// Converts UTF-8 for Qt; each run of bytes that are none becomes U+FFFD.
QString qtText(std::string_view text);
/// Converts as qtText does, and makes control characters visible: for names and messages that contain names.
QString shownName(std::string_view bytes);
/// Converts a caption for a button or menu, in which Qt would take a "&" for the mark of a key.
QString captionText(std::string_view caption);
std::string utf8(const QString& text);
/// Converts a name for a box in which it is edited. Valid UTF-8 stays as it is, even control characters; any
/// other byte becomes a lone low surrogate, U+DC00 plus the byte.
QString editableText(std::string_view bytes);
/// The exact inverse of editableText, for any bytes. A lone surrogate that editableText never makes becomes
/// U+FFFD.
std::string bytesOfEditable(const QString& text);

/// Returns a font that differs from the desktop's by so many points, for a widget and what is in it.
QFont desktopFont(int largerBy);

/// Returns the virtual key code of a key that handlers may know; 0 for any other.
int virtualKey(const QKeyEvent& event);
/// Returns the virtual key code if it is one of KeyCode; 0 for any other key.
int handledKey(const QKeyEvent& event);
/// Returns the keys that press a BarEntry::key: a function key alone, others with Ctrl, or with Ctrl and
/// Shift. Empty for 0 and for a code without a key.
QKeySequence acceleratorOf(int key);

}  // namespace hl
