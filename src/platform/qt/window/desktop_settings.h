// How the window fits into the desktop, and what Qt and its libraries would otherwise write or say.
#pragma once

#include <QByteArray>
#include <optional>
#include <string>

#include "platform/window.h"

namespace hl {

/// Leads into `folder` what Qt and fontconfig write. The user's own settings of the desktop are still read
/// from where they are, and programs started later get the user's environment.
///
/// Made before the QApplication; settle() once that lives.
class WritesLedTo {
  public:
    explicit WritesLedTo(const std::string& folder);
    ~WritesLedTo() { settle(); }
    WritesLedTo(const WritesLedTo&) = delete;
    WritesLedTo& operator=(const WritesLedTo&) = delete;
    void settle();

  private:
    std::optional<QByteArray> cacheHome_;
    bool settled_ = false;
};

/// Drops messages of Qt that tell nothing to the user of a terminal. Stays for the life of the process.
void quietMessages();

/// Style, icon theme and the texts of Qt's own dialogs. Numbers keep the form they have in a run with no
/// window. REQUIRES: a QApplication lives.
void followDesktop(const WindowParts& parts);

}  // namespace hl
