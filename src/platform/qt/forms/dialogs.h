// The window's own questions. Each call returns when the question is answered; texts are UTF-8, names of
// files are bytes. For the window's thread.
#pragma once

#include <QDialog>
#include <functional>
#include <optional>
#include <string>

#include "platform/patience.h"
#include "platform/window.h"

namespace hl {

/// What all questions have in common: texts in the user's language, and who asks the disks.
struct DialogTexts {
    QString name;                  ///< The program's name, for the title.
    QString yes, no, ok, cancel;   ///< The captions of the buttons.
    Patience* patience = nullptr;  ///< Null means that all disks answer.
    QString silent = {};           ///< Tells that a disk does not answer.
};

/// Returns true for yes, and for a message that is no question.
bool showMessage(QWidget* parent, const DialogTexts& texts, MessageKind kind, const std::string& text);
struct Confirmation {
    std::string text;
    std::string action;  ///< The caption of the button that does it.
};

/// Returns true if the button that does it was pressed; the other one is the default. `live` (may be null)
/// must not throw.
bool askToConfirm(QWidget* parent, const DialogTexts& texts, const Confirmation& what,
                  const std::function<std::string()>& live);
/// Returns an empty text if the user cancelled.
std::string askForText(QWidget* parent, const DialogTexts& texts, const std::string& prompt,
                       const std::string& preset);
// The toolkit's dialogs for folders and files look at every disk that they show, and would not come back from
// one that does not answer. While there is such a disk, a line of text is asked for instead; a relative path
// is one below the folder that it begins with.

/// The dialog begins at `start`, or above it if that is gone or has a name that is not UTF-8. If the user
/// changes nothing, the bytes of `start` come back.
std::string askForFolder(QWidget* parent, const DialogTexts& texts, const std::string& title,
                         const std::string& start);
/// `filter` is "TXT (*.txt)|*.txt". A name typed without an extension gets `extension`; before an existing
/// file is replaced, the user is asked. `name` is what the dialog proposes; may be empty.
std::string askForSavePath(QWidget* parent, const DialogTexts& texts, const std::string& filter,
                           const std::string& extension, const std::string& folder,
                           const std::string& name = {});
/// The same for a file that is there.
std::string askForOpenPath(QWidget* parent, const DialogTexts& texts, const std::string& filter,
                           const std::string& folder);
std::optional<GridFont> askForFont(QWidget* parent, const GridFont& start);

/// Removes pictures of the theme, which only the toolkit's own dialogs put on their buttons.
void dropPictures(const QDialog& dialog);

QFont qtFont(const GridFont& font);

/// Converts "TXT (*.txt)|*.txt|All|*" to Qt's form "TXT (*.txt);;All (*)".
QString qtFilter(const std::string& filter);

}  // namespace hl
