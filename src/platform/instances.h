// One instance of the program per user: who is first, and how a later start hands its command line over.
//
// For the thread of the logic. All of it works without an instance to talk to; nothing here throws.
#pragma once

#include <functional>
#include <string>

namespace hl {

class Instances {
  public:
    virtual ~Instances() = default;
    /// Takes the mark of the first instance, held until this object goes. True if it could be taken, and from
    /// then on. True as well where the system has no place for a mark: nobody can be found there.
    virtual bool takeFirst() = 0;
    /// Whether some process holds the mark.
    virtual bool isHeld() = 0;
    /// Delivers a command line, any bytes, to the first instance, which comes to the front; an empty one asks
    /// for no more than that. Waits at most three seconds. False if nobody took it.
    virtual bool deliver(const std::string& commandLine) = 0;
    /// Number of the process that the last delivery found; 0 if it got to none.
    virtual long process() const = 0;
    /// Gives up mark and socket, also for processes that have them from this one. For an end that the kernel
    /// may hold up: what is on its way to a disk that does not answer keeps a process in being.
    virtual void letGo() = 0;

    /// Begins to listen; REQUIRES: takeFirst() was true. A descriptor, owned by this object, that is readable
    /// when something arrived; -1 on failure.
    virtual int listen() = 0;
    /// Takes one delivery that waits, if there is one, and calls `taken` with its line once the sender knows
    /// that it arrived, so that `taken` may last. Lines of other users are dropped, and those of a sender
    /// that stops in the middle, after one second.
    virtual void receive(const std::function<void(const std::string&)>& taken) = 0;
};

}  // namespace hl
