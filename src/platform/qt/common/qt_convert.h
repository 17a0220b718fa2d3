// What passes between the logic and Qt: texts, names and keys.
#pragma once

#include <QKeyEvent>
#include <QKeySequence>
#include <QString>
#include <string>
#include <string_view>

namespace hl {

/// UTF-8 as Qt has it; each run of bytes that is none shows as U+FFFD.
QString qtText(std::string_view text);
/// The same, and control characters by a visible stand-in: for names and messages that hold names.
QString shownName(std::string_view bytes);
/// A caption for a button or menu; Qt would take a "&" in it for the mark of a key.
QString captionText(std::string_view caption);
std::string utf8(const QString& text);
/// A name for a box in which it is edited: valid UTF-8 as it is, control characters too; any other byte as a
/// lone low surrogate, U+DC00 and the byte.
QString editableText(std::string_view bytes);
/// The exact inverse, for any bytes. A lone surrogate that editableText() never makes becomes U+FFFD.
std::string bytesOfEditable(const QString& text);

/// Virtual key code of a key that handlers may know; 0 for any other.
int virtualKey(const QKeyEvent& event);
/// The same for the keys of KeyCode alone.
int handledKey(const QKeyEvent& event);
/// The keys that press a BarEntry::key: a function key alone, others with Ctrl. Empty for 0 and for a code
/// that no key has.
QKeySequence acceleratorOf(int key);

}  // namespace hl
