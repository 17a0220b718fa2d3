// Turns faults of the processor into errors of the program.
//
// While installed, a bad read or write or a division by zero in the program's own code (its modules
// included), on a thread that runs a guarded routine, is thrown as a Fault with the number kFaultProcessor
// and goes to that routine's trap. Where that is not safe (in a library or in what a library calls, with the
// stack used up, in a second fault during the first, on an unguarded thread), `lastWords` is called with a
// description that says so, and the process ends with status 1.
#pragma once

#include <array>

namespace hl {

/// Counts how many guarded routines are active on this thread. The trap counts; the signal handler reads. A
/// loaded module has its own copy of this class, so it is given the program's counter.
class GuardedRoutine {
  public:
    GuardedRoutine();
    ~GuardedRoutine();
    GuardedRoutine(const GuardedRoutine&) = delete;
    GuardedRoutine& operator=(const GuardedRoutine&) = delete;
    static int depth();

    /// The count of one thread. The outermost guards are remembered by their place on the stack.
    struct Count {
        int depth = 0;
        std::array<const void*, 64> guards{};
        const void* innermost() const;  ///< Null if it is unknown.
    };
    using Counter = Count& (*)();  ///< Returns the count of the calling thread.
    static Counter counter() { return counter_; }
    /// REQUIRES: no guarded routine of this module runs.
    static void countWith(Counter counter) { counter_ = counter; }

  private:
    static Counter counter_;
};

class FaultSignals {
  public:
    virtual ~FaultSignals() = default;
    /// Is called at most once, on a thread in an unknown state, and has some seconds; it must not throw,
    /// allocate memory or take locks. `instruction` is where the fault was, or null if unknown.
    using LastWords = void (*)(const char* description, const void* instruction);
    /// Installs the handler, once per process; a second call does nothing. `lastWords` may be null.
    virtual void InstallExceptionFilter(LastWords lastWords) = 0;
    virtual void RemoveExceptionFilter() = 0;
    /// From now on, faults in the module that contains the address `inside` count as those of the program's
    /// own code.
    virtual void addOwnModule(const void* inside) = 0;
    /// Must be called at the start of every further thread: it gives the thread a stack for the handler.
    virtual void prepareThread() = 0;
};

}  // namespace hl
