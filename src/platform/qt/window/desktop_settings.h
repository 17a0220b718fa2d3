// Fits the window into the desktop, and controls what Qt and its libraries write or print. For the window's
// thread.
#pragma once

#include <QByteArray>
#include <optional>
#include <string>

#include "platform/window.h"

namespace hl {

/// Makes Qt and fontconfig write into `folder`. The user's own settings of the desktop are still read from
/// their place, and programs started later get the user's environment.
///
/// Must be made before the QApplication; settle() must be called once that exists.
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

/// Drops messages of Qt that tell nothing to the user of a terminal, for the rest of the process.
void quietMessages();

/// Sets style, icon theme and the texts of Qt's own dialogs. Numbers keep the form that they have in a run
/// without a window. REQUIRES: there is a QApplication.
void followDesktop(const WindowParts& parts);

}  // namespace hl
