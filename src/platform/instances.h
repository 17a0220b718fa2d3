// Ensures one instance of the program per user: finds out who is first, and hands the command line of a later
// start over.
//
// For the thread of the logic. Everything works without another instance, too; nothing here throws.
#pragma once

#include <functional>
#include <string>

namespace hl {

class Instances {
  public:
    virtual ~Instances() = default;
    /// Becomes the first instance, until this object is destroyed. Returns true if that worked or worked
    /// before; also where the system has no place for the mark, since then nobody can be found anyway.
    virtual bool takeFirst() = 0;
    /// Tells whether some process is the first instance.
    virtual bool isHeld() = 0;
    /// Delivers a command line (any bytes) to the first instance, which comes to the front; an empty line
    /// does only that. Waits at most three seconds. Returns false if nobody took it.
    virtual bool deliver(const std::string& commandLine) = 0;
    /// Returns the number of the process that the last delivery reached; 0 if it reached none.
    virtual long process() const = 0;
    /// Gives up mark and socket, even for processes that inherited them. Needed at an end that the kernel may
    /// delay: a pending call to a disk that does not answer keeps a process in existence.
    virtual void letGo() = 0;

    /// Begins to listen. Returns a descriptor, owned by this object, that is readable when something arrived;
    /// -1 on failure. REQUIRES: takeFirst() was true.
    virtual int listen() = 0;
    /// Takes one waiting delivery, if there is one, and calls `taken` with its line. The sender is told
    /// before that it arrived, so `taken` may take long. Lines of other users are dropped; so are those of a
    /// sender that stops in the middle, after one second.
    virtual void receive(const std::function<void(const std::string&)>& taken) = 0;
};

}  // namespace hl
