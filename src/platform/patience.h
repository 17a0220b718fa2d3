// Asks disks that may not answer. If a server is gone, a system call may hang for any time; nobody else
// should wait that long. For the thread of the logic only.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace hl {

/// What the logic does while a disk is waited for.
class DiskWait {
  public:
    virtual ~DiskWait() = default;
    /// The disk of `path` has not answered at once: until the wait ends nothing else may begin.
    virtual void waitBegins(const std::string& path) = 0;
    /// Is called some sixty times a second and lets messages run. Returning false means that nobody wants the
    /// answer any more.
    virtual bool goesOnWaiting() = 0;
    virtual void waitEnds() = 0;
};

/// Whether a call follows a link at the end of its path.
enum class LastName { kFollowed, kItself };

class Patience {
  public:
    virtual ~Patience() = default;
    /// Does `work`, which touches the disk of `path`; what it throws is thrown here. If the disk always
    /// answers, the work is done right here. Otherwise a helper thread does it while messages run; the result
    /// is false if it did not end in time, or nobody wants it any more. In that case the work may still be
    /// done at any later time, even after everything else has ended, so it must own whatever it touches.
    virtual bool run(const std::string& path, const std::function<void()>& work,
                     LastName last = LastName::kFollowed) = 0;
    /// Does the work as run() does, but no messages run meanwhile and the wait is a few seconds at most: for
    /// what may happen anywhere, such as a line of the log.
    virtual bool runStill(const std::string& path, const std::function<void()>& work) = 0;
    /// Asks each disk that may not answer for a sign of life, in the manner of run(). Returns where the first
    /// one is mounted that gives none; empty if all answer.
    virtual std::string silentDisk() = 0;
};

/// Returns the answer to `question`, or `none` if the disk of `path` does not answer. `patience` may be null.
template <class Answer>
Answer ask(Patience* patience, const std::string& path, Answer none, std::function<Answer()> question,
           LastName last = LastName::kFollowed) {
    if (patience == nullptr) return question();
    const auto answer = std::make_shared<std::optional<Answer>>();
    const auto work = [answer, question = std::move(question)] { answer->emplace(question()); };
    return patience->run(path, work, last) ? **std::move(answer) : std::move(none);
}

/// Asks as ask() does, but with runStill(): no messages run meanwhile.
template <class Answer>
Answer askStill(Patience* patience, const std::string& path, Answer none, std::function<Answer()> question) {
    if (patience == nullptr) return question();
    const auto answer = std::make_shared<std::optional<Answer>>();
    const auto work = [answer, question = std::move(question)] { answer->emplace(question()); };
    return patience->runStill(path, work) ? **std::move(answer) : std::move(none);
}

}  // namespace hl
