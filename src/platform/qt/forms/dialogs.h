// The window's own questions. Each returns when it is answered; texts are UTF-8, names of files bytes.
#pragma once

#include <QDialog>
#include <optional>
#include <string>

#include "platform/window.h"

namespace hl {

/// Captions of the buttons, in the user's language.
struct DialogTexts {
    QString name;  ///< Of the program, in the title.
    QString yes, no, ok, cancel;
};

/// True for yes and for a message that is no question.
bool showMessage(QWidget* parent, const DialogTexts& texts, MessageKind kind, const std::string& text);
/// Empty if it was cancelled.
std::string askForText(QWidget* parent, const DialogTexts& texts, const std::string& prompt,
                       const std::string& preset);
/// The folder dialogs begin at `start` or, where that is gone or has a name that is not UTF-8, above it; what
/// the user leaves as it was comes back in the bytes it had.
std::string askForFolder(QWidget* parent, const std::string& title, const std::string& start);
/// `filter` is "TXT (*.txt)|*.txt". A name typed without an extension gets `extension`; an existing file is
/// asked about. `name` is what the dialog proposes; empty: nothing.
std::string askForSavePath(QWidget* parent, const std::string& filter, const std::string& extension,
                           const std::string& folder, const std::string& name = {});
std::optional<GridFont> askForFont(QWidget* parent, const GridFont& start);

/// The toolkit's own dialogs put pictures of the theme on their buttons, where all others have none.
void dropPictures(const QDialog& dialog);

QFont qtFont(const GridFont& font);

/// "TXT (*.txt)|*.txt|All|*" as Qt has it: "TXT (*.txt);;All (*)".
QString qtFilter(const std::string& filter);

}  // namespace hl
