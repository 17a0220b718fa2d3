// A helper of the preview at work: its output is read as it comes, within a bound and a time.
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

/// What the viewers have in common. All of it outlives them.
struct PreviewContext {
    PreviewTools& tools;
    WindowEvents& events;
    const PreviewTexts& texts;
    /// The file that is shown cannot be shown.
    std::function<void(const std::string& error)> failed;
    /// A helper or a library is not there.
    std::function<void(const std::string& what)> missing;
};

class PreviewJob final : public QObject {
  public:
    /// `limit`: bytes of output that may wait to be taken. Ends the process with it.
    PreviewJob(std::unique_ptr<HelperProcess> process, std::size_t limit, WindowEvents& events);

    /// New output is there.
    std::function<void()> onOutput;
    /// No more comes: the process has ended, its time is over, or its output is too much. Called once.
    std::function<void(bool well)> onEnd;

    std::string& output() { return output_; }
    bool send(const std::string& text) { return process_->send(text); }
    /// The time in which it has to come to its end, or to the next call of this.
    void setTime(std::chrono::milliseconds time) { timer_.start(time); }
    void stopTime() { timer_.stop(); }

    /// Ends the process now, and the object once whoever calls has returned. Nothing is told any more. Null
    /// does nothing.
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

/// Starts a helper that answers requests about the file; null once the context has been told why not. The
/// time until its first answer runs. To be dropped by the caller.
PreviewJob* startDecoder(const PreviewContext& context, const char* helper, const OpenFile& file,
                         std::chrono::milliseconds time);

}  // namespace hl
