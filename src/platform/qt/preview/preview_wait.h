// The wait for a file whose disk may not answer. For the window's thread.
#pragma once

#include <QSocketNotifier>
#include <QTimer>
#include <functional>
#include <memory>
#include <string>

#include "platform/preview_tools.h"
#include "platform/window.h"

namespace hl {

class PreviewWait {
  public:
    /// What is told of a wait.
    struct Calls {
        /// The wait is over.
        std::function<void(Result<std::unique_ptr<OpenFile>> file)> opened;
        /// The wait takes long enough for the user to notice it; the wait goes on.
        std::function<void()> noticed;
    };

    /// `events` must outlive it.
    explicit PreviewWait(WindowEvents& events);
    ~PreviewWait() { stop(); }
    PreviewWait(const PreviewWait&) = delete;
    PreviewWait& operator=(const PreviewWait&) = delete;

    /// REQUIRES: no other wait is going on.
    void start(std::unique_ptr<PreviewOpening> opening, Calls calls);
    /// Ends the wait, if there is one, and tells nothing.
    void stop();

  private:
    void endWith(Result<std::unique_ptr<OpenFile>> file);
    void late();

    WindowEvents& events_;
    Calls calls_;
    std::unique_ptr<PreviewOpening> opening_;
    QTimer late_;
    QSocketNotifier* answer_ = nullptr;  ///< The timer's child.
    bool noticed_ = false;
};

}  // namespace hl
