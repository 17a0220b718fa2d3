// Faults of the processor as errors of the program.
//
// While installed, a bad read or write or a division by zero in the program's own code, its modules included,
// on a thread that runs a guarded routine, is thrown as a Fault with the number kFaultProcessor and goes to
// that routine's trap. Where that is not safe (in a library or in what one calls within the routine, with the
// stack used up, in a second fault while the first is in work, on an unguarded thread), `lastWords` is called
// with a description that says so, and the process ends with status 1.
#pragma once

#include <array>

namespace hl {

/// How deep this thread stands in guarded routines. Counted by the trap; read by the signal handler. A module
/// that is loaded has a copy of this class, whose count nobody reads: it is told that of the program.
class GuardedRoutine {
  public:
    GuardedRoutine();
    ~GuardedRoutine();
    GuardedRoutine(const GuardedRoutine&) = delete;
    GuardedRoutine& operator=(const GuardedRoutine&) = delete;
    static int depth();

    /// Of one thread. The outermost guards are known by their place on the stack.
    struct Count {
        int depth = 0;
        std::array<const void*, 64> guards{};
        const void* innermost() const;  ///< Null if it is not known.
    };
    using Counter = Count& (*)();  ///< That of the calling thread.
    static Counter counter() { return counter_; }
    /// REQUIRES: no guarded routine of this module runs.
    static void countWith(Counter counter) { counter_ = counter; }

  private:
    static Counter counter_;
};

class FaultSignals {
  public:
    virtual ~FaultSignals() = default;
    /// Called at most once, on a thread in an unknown state, with some seconds to do its work; must not
    /// throw, nor take memory or locks. `instruction` is where the fault was, null where that is not known.
    using LastWords = void (*)(const char* description, const void* instruction);
    /// Once per process; a second call does nothing. `lastWords` may be null.
    virtual void InstallExceptionFilter(LastWords lastWords) = 0;
    virtual void RemoveExceptionFilter() = 0;
    /// Faults in the module that `inside` lies in count as such of the program's own code from now on.
    virtual void addOwnModule(const void* inside) = 0;
    /// To be called at the start of every further thread: gives it a stack of its own for the handler.
    virtual void prepareThread() = 0;
};

}  // namespace hl
