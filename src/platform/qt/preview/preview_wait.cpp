#include "platform/qt/preview/preview_wait.h"

#include <utility>

#include "platform/qt/common/qt_guard.h"

namespace hl {

namespace {

constexpr QtGuard kPreviewWaitGuard{"PreviewWait"};

constexpr int kUnnoticed = 500;    // How many milliseconds a disk may take before the user is told.
constexpr int kPatience = 30'000;  // How many milliseconds a disk may take before it is given up.

}  // namespace

PreviewWait::PreviewWait(WindowEvents& events) : events_(events) {
    late_.setSingleShot(true);
    QObject::connect(&late_, &QTimer::timeout, &late_,
                     [this] { kPreviewWaitGuard(events_, "late", [this] { late(); }); });
}

void PreviewWait::start(std::unique_ptr<PreviewOpening> opening, Calls calls) {
    opening_ = std::move(opening);
    calls_ = std::move(calls);
    noticed_ = false;
    answer_ = new QSocketNotifier(opening_->descriptor(), QSocketNotifier::Read, &late_);
    QObject::connect(answer_, &QSocketNotifier::activated, &late_,
                     [this] { kPreviewWaitGuard(events_, "over", [this] { endWith(opening_->take()); }); });
    late_.start(kUnnoticed);
}

void PreviewWait::stop() {
    late_.stop();
    if (QSocketNotifier* answer = std::exchange(answer_, nullptr)) {
        answer->setEnabled(false);
        answer->disconnect();
        answer->deleteLater();  // It may be just telling of the answer.
    }
    opening_.reset();
}

// Whoever is told may start the next wait, which sets other calls.
void PreviewWait::endWith(Result<std::unique_ptr<OpenFile>> file) {
    stop();
    const auto opened = std::move(calls_.opened);
    opened(std::move(file));
}

void PreviewWait::late() {
    if (std::exchange(noticed_, true)) return endWith(opening_->givenUp());
    late_.start(kPatience);
    const auto noticed = calls_.noticed;
    noticed();
}

}  // namespace hl
