#include "platform/linux/space/awaited_open_files.h"

#include <utility>

namespace hl {

namespace {

constexpr std::chrono::seconds kOpenFilesLimit{2};

}  // namespace

AwaitedOpenFiles::AwaitedOpenFiles(std::shared_ptr<const OpenFiles> files)
    : answer_(std::make_shared<std::optional<OpenFilesAnswer>>()),
      helper_(Helper::start([answer = answer_, files = std::move(files)](
                                Whereabouts&) { answer->emplace(files->list(nullptr)); },
                            true)),
      end_(std::chrono::steady_clock::now() + kOpenFilesLimit) {}

AwaitedOpenFiles::~AwaitedOpenFiles() {
    if (helper_) helper_->leave();
}

bool AwaitedOpenFiles::isDecided(std::chrono::milliseconds wait) {
    came_ = came_ || (helper_ && helper_->endsWithin(wait));
    return came_ || !helper_ || std::chrono::steady_clock::now() >= end_;
}

std::optional<OpenFilesAnswer> AwaitedOpenFiles::take() {
    if (!came_) return std::nullopt;
    helper_->rethrow();
    return std::move(*answer_);
}

}  // namespace hl
