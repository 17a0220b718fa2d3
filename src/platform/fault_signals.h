// Faults of the processor as errors of the program.
//
// While installed, a bad read or write or a division by zero in the program's own code, on a thread that runs
// a guarded routine, is thrown as a Fault with the number kFaultProcessor and goes to that routine's trap.
// Where that is not safe (in a library, with the stack used up, in a second fault while the first is in work,
// on an unguarded thread), `lastWords` is called with the same description and the process ends with
// status 1.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace hl {

/// How deep this thread stands in guarded routines. Counted by the trap; read by the signal handler.
class GuardedRoutine {
  public:
    GuardedRoutine();
    ~GuardedRoutine();
    GuardedRoutine(const GuardedRoutine&) = delete;
    GuardedRoutine& operator=(const GuardedRoutine&) = delete;
    static int depth();

  private:
    static thread_local int depth_;
};

/// "An unhandled error (NAME) CR LF occurred at: ADDRESS. TEXT": the description of a processor fault.
std::string faultDescription(std::string_view name, std::uintptr_t address);

class FaultSignals {
  public:
    virtual ~FaultSignals() = default;
    /// Called at most once, on a thread in an unknown state, with some seconds to do its work; must not
    /// throw.
    using LastWords = void (*)(const char* description);
    /// Once per process; a second call does nothing. `lastWords` may be null.
    virtual void InstallExceptionFilter(LastWords lastWords) = 0;
    virtual void RemoveExceptionFilter() = 0;
    /// To be called at the start of every further thread: gives it a stack of its own for the handler.
    virtual void prepareThread() = 0;
};

}  // namespace hl
