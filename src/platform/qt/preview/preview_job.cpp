#include "platform/qt/preview/preview_job.h"

#include <utility>

#include "platform/preview_protocol.h"
#include "platform/qt/common/qt_guard.h"

namespace hl {

constexpr QtGuard kPreviewJobGuard{"PreviewJob"};

PreviewJob::PreviewJob(std::unique_ptr<HelperProcess> process, std::size_t limit, WindowEvents& events)
    : process_(std::move(process)),
      limit_(limit),
      events_(events),
      notifier_(std::make_unique<QSocketNotifier>(process_->outputDescriptor(), QSocketNotifier::Read)) {
    timer_.setSingleShot(true);
    connect(notifier_.get(), &QSocketNotifier::activated, this,
            [this] { kPreviewJobGuard(events_, "read", [this] { read(); }); });
    connect(&timer_, &QTimer::timeout, this,
            [this] { kPreviewJobGuard(events_, "timeout", [this] { end(false); }); });
}

void PreviewJob::read() {
    const bool more = process_->readOutput(output_, limit_);
    if (const auto told = onOutput) told();
    // Whoever takes output makes room; if the output does not fit even then, it is too much.
    if (!process_) return;
    if (!more) return end(process_->endedWell());
    if (output_.size() >= limit_) end(false);
}

void PreviewJob::end(bool well) {
    notifier_->setEnabled(false);
    timer_.stop();
    if (const auto told = std::exchange(onEnd, nullptr)) told(well);
}

void PreviewJob::drop(PreviewJob*& job) {
    PreviewJob* old = std::exchange(job, nullptr);
    if (old == nullptr) return;
    old->onOutput = nullptr;
    old->onEnd = nullptr;
    old->timer_.stop();
    old->notifier_->setEnabled(false);
    old->notifier_->disconnect();
    old->process_.reset();
    old->deleteLater();
}

PreviewJob* startDecoder(const PreviewContext& context, const char* helper, const OpenFile& file,
                         std::chrono::milliseconds time) {
    const std::string program = context.tools.helper(helper);
    if (program.empty()) {
        context.missing(helper);
        return nullptr;
    }
    const auto input = context.tools.again(file);
    if (!input) return context.failed(input.error()), nullptr;
    auto process = context.tools.start({.program = program, .input = input->get()});
    if (!process) return context.failed(process.error()), nullptr;
    constexpr std::size_t kLongestAnswer = sizeof(AnswerHeader) + kMaxPictureBytes;
    auto* job = new PreviewJob(*std::move(process), kLongestAnswer + 1, context.events);
    job->setTime(time);
    return job;
}

}  // namespace hl
