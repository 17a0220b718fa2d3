// Questions to disks that may not answer. A server that is gone leaves a call of the system hanging for as
// long as it likes; nobody else is to wait that long. Thread of the logic only.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace hl {

/// System error code of a call that a disk has not answered (ETIMEDOUT).
inline constexpr int kNoAnswerError = 110;

/// What the logic does while a disk is waited for.
class DiskWait {
  public:
    virtual ~DiskWait() = default;
    /// The disk of `path` has not answered at once: until the wait ends nothing else may begin.
    virtual void waitBegins(const std::string& path) = 0;
    /// Some sixty times a second; lets messages run. False: nobody wants the answer any more.
    virtual bool goesOnWaiting() = 0;
    virtual void waitEnds() = 0;
};

/// What a call does with a link at the end of its path.
enum class LastName { kFollowed, kItself };

class Patience {
  public:
    virtual ~Patience() = default;
    /// Does `work`, which touches the disk of `path`; what it throws is thrown here. Where the disk always
    /// answers it is done at once and here. Else a helper does it, and messages run meanwhile; false if it
    /// has not ended in time, or nobody wants it any more. Then it may still be done, at any time and even
    /// after the end of all else, so it owns whatever it touches.
    virtual bool run(const std::string& path, const std::function<void()>& work,
                     LastName last = LastName::kFollowed) = 0;
};

/// What `question` answers; `none` if the disk of `path` does not. `patience` may be null.
template <class Answer>
Answer ask(Patience* patience, const std::string& path, Answer none, std::function<Answer()> question,
           LastName last = LastName::kFollowed) {
    if (patience == nullptr) return question();
    const auto answer = std::make_shared<Answer>();
    const auto work = [answer, question = std::move(question)] { *answer = question(); };
    return patience->run(path, work, last) ? std::move(*answer) : std::move(none);
}

}  // namespace hl
