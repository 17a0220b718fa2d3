// Asks mounted file systems for their sizes, on other threads and with a time limit.
//
// Helper threads take the questions, those about local drives first. A question that is not answered within
// the limit is abandoned: its thread stays behind in the kernel, no longer counts as a helper, and is never
// joined, so that nobody ever waits for a dead share, not even the end of the process. What helpers use is
// shared with them and outlives the probe. While such a thread hangs, its drive is not asked again: a dead
// share costs one thread.
//
// The limit needs no thread: one descriptor stands for a timer and for the event of an answer.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <unordered_map>

#include "platform/drives.h"
#include "platform/linux/process/descriptor.h"

namespace hl {

/// Returns the sizes of the file system at a path; nothing if it cannot be asked. Called on helper threads.
using SpaceQuestion = std::function<DriveAnswer(const std::string& path)>;

/// Asks with statvfs, which may hang for any time.
DriveAnswer spaceAt(const std::string& path);

/// For the thread of the logic only.
class DriveProbe {
  public:
    using Answered = std::function<void(const DriveAnswer&)>;

    /// `limit` is that of one question, from the moment a helper takes it.
    DriveProbe(SpaceQuestion question, std::chrono::milliseconds limit);
    /// Drops questions that no helper has taken, and waits for nobody.
    ~DriveProbe();
    DriveProbe(const DriveProbe&) = delete;
    DriveProbe& operator=(const DriveProbe&) = delete;

    /// A question about a path that is being asked already shares the answer.
    void ask(const std::string& path, bool remote, Answered answered);
    /// Calls `answered`, which must not throw, for answers that have arrived and for questions that are
    /// abandoned.
    void takeAnswers();
    /// Is readable when takeAnswers() has something to do.
    int descriptor() const { return ready_.number(); }
    /// The abandoned threads that have not returned yet.
    std::size_t hangingThreads() const;

  private:
    struct Shared;
    static void help(const std::shared_ptr<Shared>& shared);
    void startHelpers();

    std::shared_ptr<Shared> shared_;
    Descriptor ready_;
    std::unordered_map<std::uint64_t, Answered> answered_;  ///< The keys are the numbers of the questions.
    std::uint64_t lastNumber_ = 0;
};

}  // namespace hl
