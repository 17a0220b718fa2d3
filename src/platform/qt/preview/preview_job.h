// A running helper of the preview, whose output is read as it comes, within limits of size and time. For the
// window's thread.
#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>
#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "platform/preview_tools.h"
#include "platform/window.h"

namespace hl {

/// What the viewers have in common; all of it outlives them.
struct PreviewContext {
    PreviewTools& tools;
    WindowEvents& events;
    const PreviewTexts& texts;
    /// The current file cannot be shown.
    std::function<void(const Error& error)> failed;
    /// A helper or a library is missing.
    std::function<void(const std::string& what)> missing;
};

class PreviewJob final : public QObject {
  public:
    /// `limit` is the number of output bytes that may wait to be taken. The destructor ends the process.
    PreviewJob(std::unique_ptr<HelperProcess> process, std::size_t limit, WindowEvents& events);

    /// There is new output.
    std::function<void()> onOutput;
    /// There will be no more output: the process has ended, its time is over, or it wrote too much. Called
    /// once.
    std::function<void(bool well)> onEnd;

    std::string& output() { return output_; }
    bool send(const std::string& text) { return process_->send(text); }
    /// Sets the time until the process must end, or until the next call of this.
    void setTime(std::chrono::milliseconds time) { timer_.start(time); }
    void stopTime() { timer_.stop(); }

    /// Ends the process now, and deletes the object after the caller has returned. Nothing is reported any
    /// more. Null does nothing.
    static void drop(PreviewJob*& job);

  private:
    void read();
    void end(bool well);

    std::unique_ptr<HelperProcess> process_;
    std::size_t limit_;
    WindowEvents& events_;
    std::string output_;
    std::unique_ptr<QSocketNotifier> notifier_;
    QTimer timer_;
};

/// Starts a helper that answers requests about the file. The time until its first answer begins. The caller
/// must drop the result; it is null once the context has been told why not.
PreviewJob* startDecoder(const PreviewContext& context, const char* helper, const OpenFile& file,
                         std::chrono::milliseconds time);

}  // namespace hl
