#include "platform/qt/preview_job.h"

#include <utility>

#include "platform/qt/qt_guard.h"

namespace hl {

PreviewJob::PreviewJob(std::unique_ptr<HelperProcess> process, std::size_t limit, WindowEvents& events)
    : process_(std::move(process)),
      limit_(limit),
      events_(events),
      notifier_(std::make_unique<QSocketNotifier>(process_->outputDescriptor(), QSocketNotifier::Read)) {
    timer_.setSingleShot(true);
    connect(notifier_.get(), &QSocketNotifier::activated, this,
            [this] { qtGuard(events_, "PreviewJob::read", [this] { read(); }); });
    connect(&timer_, &QTimer::timeout, this,
            [this] { qtGuard(events_, "PreviewJob::timeout", [this] { end(false); }); });
}

void PreviewJob::read() {
    const bool more = process_->readOutput(output_, limit_);
    if (const auto told = onOutput) told();
    // Whoever takes output makes room; one that does not get it all has too much.
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

}  // namespace hl
