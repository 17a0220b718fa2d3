// Asks mounted file systems for their sizes, beside the logic and with a time limit.
//
// Helper threads take the questions, those about local drives first. A question that is not answered within
// the limit is given up: its thread stays behind in the kernel, no longer counts as a helper, and is never
// joined, so that nobody ever waits for a dead share, not even the end of the process. What helpers touch is
// shared with them and outlives the probe. While such a thread hangs, its drive is not asked again: a dead
// share costs one thread.
//
// The limit needs no thread: a timer and the event of an answer stand behind one descriptor.
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

/// Sizes of the file system at a path; nothing if it cannot be asked. Called on helper threads.
using SpaceQuestion = std::function<DriveAnswer(const std::string& path)>;

/// By statvfs: may hang for as long as the system likes.
DriveAnswer spaceAt(const std::string& path);

/// Thread of the logic only.
class DriveProbe {
  public:
    using Answered = std::function<void(const DriveAnswer&)>;

    /// `limit` is that of one question, from the moment a helper takes it.
    DriveProbe(SpaceQuestion question, std::chrono::milliseconds limit);
    /// Questions not yet taken are dropped; nobody is waited for.
    ~DriveProbe();
    DriveProbe(const DriveProbe&) = delete;
    DriveProbe& operator=(const DriveProbe&) = delete;

    /// Questions about a path that is being asked already share its answer.
    void ask(const std::string& path, bool remote, Answered answered);
    /// Calls `answered`, which must not throw, for what has arrived and for what is given up.
    void takeAnswers();
    /// Readable when takeAnswers() has something to do.
    int descriptor() const { return ready_.number(); }
    /// Threads left behind that have not come back yet.
    std::size_t hangingThreads() const;

  private:
    struct Shared;
    static void help(const std::shared_ptr<Shared>& shared);
    void startHelpers();

    std::shared_ptr<Shared> shared_;
    Descriptor ready_;
    std::unordered_map<std::uint64_t, Answered> answered_;  ///< By the number of the question.
    std::uint64_t lastNumber_ = 0;
};

}  // namespace hl
