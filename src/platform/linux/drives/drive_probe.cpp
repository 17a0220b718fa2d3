#include "platform/linux/drives/drive_probe.h"

#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/statvfs.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <deque>
#include <mutex>
#include <utility>
#include <vector>

#include "platform/linux/process/helper.h"
#include "platform/linux/process/system_error.h"

namespace hl {

namespace {

using Clock = std::chrono::steady_clock;

// Enough that a few shares of one dead server do not delay the other drives.
constexpr unsigned kMostHelpers = 4;

std::uint64_t product(std::uint64_t a, std::uint64_t b) {
    std::uint64_t result = 0;
    return __builtin_mul_overflow(a, b, &result) ? UINT64_MAX : result;
}

// Makes the descriptor unreadable again. Returns whether it was readable.
bool reset(int descriptor) {
    std::uint64_t count = 0;
    return ::read(descriptor, &count, sizeof count) > 0;
}

}  // namespace

DriveAnswer spaceAt(const std::string& path) {
    struct statvfs facts = {};
    int result = 0;
    do {
        result = ::statvfs(path.c_str(), &facts);
    } while (result != 0 && errno == EINTR);
    if (result != 0) return systemError(errno);
    const std::uint64_t cluster = facts.f_frsize != 0 ? facts.f_frsize : facts.f_bsize;
    const auto reserved = facts.f_bfree - std::min(facts.f_bfree, facts.f_bavail);
    return DriveSpace{product(facts.f_blocks, cluster), product(facts.f_bavail, cluster), cluster,
                      product(reserved, cluster), facts.f_files - std::min(facts.f_files, facts.f_ffree)};
}

/// What helpers and the logic both use. The mutex guards all of it but what never changes.
struct DriveProbe::Shared {
    enum class State : std::uint8_t { kWaiting, kRunning, kHanging };
    struct Question {
        std::vector<std::uint64_t> numbers;  ///< The questions to be answered.
        State state = State::kWaiting;
        Clock::time_point started = {};
    };
    struct Answer {
        std::vector<std::uint64_t> numbers;
        DriveAnswer space;
    };

    Shared(SpaceQuestion spaceQuestion, std::chrono::milliseconds timeLimit)
        : question(std::move(spaceQuestion)), limit(timeLimit) {}

    const SpaceQuestion question;
    const std::chrono::milliseconds limit;
    const Descriptor event{::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)};
    const Descriptor timer{::timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC)};

    mutable std::mutex mutex;
    std::unordered_map<std::string, Question> questions;  ///< Their keys are the paths.
    std::deque<std::string> local, remote;                ///< The paths that no helper has taken.
    std::vector<Answer> answers;
    unsigned helpers = 0;  ///< Those that hang are not counted.
    bool timerRuns = false;
    bool stopped = false;

    void put(std::vector<std::uint64_t> numbers, const DriveAnswer& space) {
        answers.push_back({std::move(numbers), space});
        const std::uint64_t one = 1;
        // The write could fail only with the counter at its end, and then the descriptor is readable anyway.
        if (::write(event.number(), &one, sizeof one) < 0) return;
    }

    /// Returns the path of the next question and marks it as running; empty if there is none.
    std::string take() {
        std::deque<std::string>& queue = local.empty() ? remote : local;
        if (stopped || queue.empty()) return {};
        std::string path = std::move(queue.front());
        queue.pop_front();
        Question& taken = questions.at(path);
        taken.state = State::kRunning;
        taken.started = Clock::now();
        if (!timerRuns) startTimer(limit);
        return path;
    }

    void startTimer(Clock::duration after) {
        const auto ns =
            std::max<std::int64_t>(1, std::chrono::duration_cast<std::chrono::nanoseconds>(after).count());
        const itimerspec when = {.it_interval = {},
                                 .it_value = {.tv_sec = ns / 1'000'000'000, .tv_nsec = ns % 1'000'000'000}};
        ::timerfd_settime(timer.number(), 0, &when, nullptr);
        timerRuns = true;
    }

    /// Returns false if the helper was abandoned meanwhile and must end.
    bool finish(const std::string& path, const DriveAnswer& space) {
        const auto found = questions.find(path);
        const bool wanted = found->second.state == State::kRunning;
        if (wanted) put(std::move(found->second.numbers), space);
        questions.erase(found);
        return wanted;
    }

    /// Abandons questions that have run for too long, and sets the timer for the others.
    void giveUp() {
        const Clock::time_point now = Clock::now();
        Clock::time_point oldest = Clock::time_point::max();
        for (auto& [path, asked] : questions) {
            if (asked.state != State::kRunning) continue;
            if (now - asked.started >= limit) {
                asked.state = State::kHanging;
                --helpers;
                put(std::exchange(asked.numbers, {}), systemError(ETIMEDOUT));
            } else {
                oldest = std::min(oldest, asked.started);
            }
        }
        timerRuns = false;
        if (oldest != Clock::time_point::max()) startTimer(oldest + limit - now);
    }

    /// Answers all waiting questions with nothing.
    void refuseWaiting() {
        for (std::deque<std::string>* queue : {&local, &remote}) {
            for (const std::string& path : *queue) {
                put(std::move(questions.at(path).numbers), systemError(ETIMEDOUT));
                questions.erase(path);
            }
            queue->clear();
        }
    }
};

DriveProbe::DriveProbe(SpaceQuestion question, std::chrono::milliseconds limit)
    : shared_(std::make_shared<Shared>(std::move(question), limit)), ready_(::epoll_create1(EPOLL_CLOEXEC)) {
    for (const int part : {shared_->event.number(), shared_->timer.number()}) {
        epoll_event readable = {.events = EPOLLIN, .data = {.fd = part}};
        ::epoll_ctl(ready_.number(), EPOLL_CTL_ADD, part, &readable);
    }
}

DriveProbe::~DriveProbe() {
    const std::lock_guard lock(shared_->mutex);
    shared_->stopped = true;
}

void DriveProbe::ask(const std::string& path, bool remote, Answered answered) {
    const std::uint64_t number = ++lastNumber_;
    answered_.emplace(number, std::move(answered));
    {
        const std::lock_guard lock(shared_->mutex);
        const auto [found, isNew] = shared_->questions.try_emplace(path);
        if (found->second.state == Shared::State::kHanging)
            return shared_->put({number}, systemError(ETIMEDOUT));
        found->second.numbers.push_back(number);
        if (!isNew) return;
        (remote ? shared_->remote : shared_->local).push_back(path);
    }
    startHelpers();
}

// Starts a helper for each waiting question, up to the limit; a helper without work ends.
void DriveProbe::startHelpers() {
    const std::lock_guard lock(shared_->mutex);
    std::size_t waiting = shared_->local.size() + shared_->remote.size();
    for (; shared_->helpers < kMostHelpers && waiting > 0; --waiting) {
        const auto body = [shared = shared_](Whereabouts&) { help(shared); };
        // It fails if the system gives no more threads, or if too many hang on disks.
        if (!Helper::start(body, true)) {
            if (shared_->helpers == 0) shared_->refuseWaiting();
            return;
        }
        ++shared_->helpers;
    }
}

void DriveProbe::help(const std::shared_ptr<Shared>& shared) {
    std::unique_lock lock(shared->mutex);
    for (std::string path = shared->take(); !path.empty(); path = shared->take()) {
        lock.unlock();
        DriveAnswer space = systemError(ETIMEDOUT);
        try {
            space = shared->question(path);
        } catch (...) {  // This gives no answer; nobody on this thread could be told.
        }
        lock.lock();
        if (!shared->finish(path, space)) return;
    }
    --shared->helpers;
}

void DriveProbe::takeAnswers() {
    std::vector<Shared::Answer> answers;
    reset(shared_->event.number());
    const bool limitReached = reset(shared_->timer.number());
    {
        const std::lock_guard lock(shared_->mutex);
        if (limitReached) shared_->giveUp();
        answers.swap(shared_->answers);
    }
    startHelpers();  // They replace those that were abandoned.
    for (const Shared::Answer& answer : answers) {
        for (const std::uint64_t number : answer.numbers) {
            const auto found = answered_.extract(number);
            found.mapped()(answer.space);
        }
    }
}

std::size_t DriveProbe::hangingThreads() const {
    const std::lock_guard lock(shared_->mutex);
    std::size_t count = 0;
    for (const auto& [path, question] : shared_->questions)
        count += question.state == Shared::State::kHanging ? 1U : 0U;
    return count;
}

}  // namespace hl
