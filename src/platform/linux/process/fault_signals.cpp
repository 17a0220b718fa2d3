// A fault is thrown as an exception only if all of the following holds; otherwise the last words are said and
// the process ends:
//   - it is a bad access or a failed division, raised by an instruction and not sent by a process;
//   - a guarded routine runs on this thread, so that a trap waits;
//   - the instruction is in our own text, the program's or that of one of its modules: a library may hold a
//   lock, and has no tables for unwinding from there;
//   - no call of a library is between it and the innermost guarded routine: a toolkit that called us would
//   not be cleaned up on the way;
//   - no other exception is on its way on this thread;
//   - the address is not near the stack pointer: then the stack is used up and unwinding would need more of
//   it.
// From the throw to the end of the trap an alarm clock runs. If it rings before the exception has been
// caught, unwinding hangs, and the process ends in the same way. A function that cannot be unwound (because
// it is noexcept) ends in the terminate handler, which does the same.
//
// The handler runs, and throws, on a separate stack for each thread. Destructors and the trap run on the
// thread's normal stack again.
#include "platform/linux/process/fault_signals.h"

#include <link.h>
#include <signal.h>
#include <ucontext.h>
#include <unistd.h>
#include <unwind.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <exception>
#include <memory>

#include "base/fault.h"
#include "platform/fault_description.h"

namespace hl {

namespace {

constexpr unsigned kPatienceSeconds = 5;
constexpr std::uintptr_t kNearStack = std::uintptr_t{64} << 10;
// Enough for the unwinder and for last words that open a file.
constexpr std::size_t kHandlerStackBytes = std::size_t{128} << 10;
constexpr std::array kSignals = {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGTRAP, SIGABRT, SIGALRM};

struct Range {
    std::uintptr_t begin = 0, end = 0;
};

// The handler may read it while modules are added.
struct OwnText {
    std::array<Range, 16> ranges;
    std::atomic<std::size_t> count{0};

    bool contains(std::uintptr_t address) const {
        const auto* last = ranges.begin() + count.load();
        return std::any_of(ranges.begin(), last, [address](const Range& range) {
            return address >= range.begin && address < range.end;
        });
    }
    void add(const Range& range) {
        if (contains(range.begin) || count == ranges.size()) return;
        ranges[count] = range;
        ++count;
    }
};

// A signal handler can reach its state only through a global.
struct HandlerState {
    bool installed = false;
    FaultSignals::LastWords lastWords = nullptr;
    OwnText ownText;
    std::array<struct sigaction, kSignals.size()> formerActions;
    std::terminate_handler formerTerminate = nullptr;
    // The last fault that was thrown, as it is described if nobody catches it; its place; its thread.
    FaultDescription thrown{"", 0, FaultOutcome::kEnds};
    std::uintptr_t thrownAt = 0;
    std::atomic<pid_t> throwingThread{0};
    std::atomic<pid_t> endingThread{0};  // The thread that says the last words.
};
HandlerState state;
thread_local volatile bool makingException = false;

[[noreturn]] void end(const char* description, std::uintptr_t instruction = 0) {
    pid_t ending = 0;
    if (!state.endingThread.compare_exchange_strong(ending, gettid())) {
        if (ending == gettid()) _exit(1);  // The last words themselves failed.
        for (;;) pause();                  // Waits until the other thread is done, or its alarm rings.
    }
    alarm(kPatienceSeconds);
    if (state.lastWords != nullptr) state.lastWords(description, reinterpret_cast<const void*>(instruction));
    _exit(1);
}

bool exceptionOnItsWay() {
    return makingException || std::uncaught_exceptions() > 0;
}

// Runs the alarm clock while it exists, which is until the trap that caught it is left.
class ProcessorFault : public Fault {
  public:
    explicit ProcessorFault(const char* description)
        : Fault(kFaultProcessor, "Exception Handler", description) {
        makingException = false;
    }
    ProcessorFault(const ProcessorFault&) = delete;
    ProcessorFault& operator=(const ProcessorFault&) = delete;
    ~ProcessorFault() override {
        if (state.endingThread == 0) alarm(0);
    }
};

struct Registers {
    std::uintptr_t instruction = 0, stack = 0;
};

Registers registersOf(const void* context) {
    const mcontext_t& machine = static_cast<const ucontext_t*>(context)->uc_mcontext;
#if defined(__x86_64__)
    return {static_cast<std::uintptr_t>(machine.gregs[REG_RIP]),
            static_cast<std::uintptr_t>(machine.gregs[REG_RSP])};
#elif defined(__aarch64__)
    return {machine.pc, machine.sp};
#else
    static_cast<void>(machine);
    return {};  // Then no address counts as our text, and every fault ends the process.
#endif
}

const char* nameOfArithmetic(int code) {
    switch (code) {
        case FPE_INTDIV:
            return "EXCEPTION_INT_DIVIDE_BY_ZERO";
        case FPE_INTOVF:
            return "EXCEPTION_INT_OVERFLOW";
        case FPE_FLTDIV:
            return "EXCEPTION_FLT_DIVIDE_BY_ZERO";
        case FPE_FLTOVF:
            return "EXCEPTION_FLT_OVERFLOW";
        case FPE_FLTINV:
            return "EXCEPTION_FLT_INVALID_OPERATION";
        case FPE_FLTSUB:
            return "EXCEPTION_ARRAY_BOUNDS_EXCEEDED";
        default:
            return "Unknown exception type";
    }
}

const char* nameOf(int signal, int code) {
    switch (signal) {
        case SIGSEGV:
        case SIGBUS:
            return "EXCEPTION_ACCESS_VIOLATION";
        case SIGFPE:
            return nameOfArithmetic(code);
        case SIGILL:
            return code == ILL_PRVOPC ? "EXCEPTION_PRIV_INSTRUCTION" : "EXCEPTION_ILLEGAL_INSTRUCTION";
        case SIGTRAP:
            return "EXCEPTION_BREAKPOINT";
        default:
            return "Unknown exception type";
    }
}

bool nearStack(std::uintptr_t address, std::uintptr_t stack) {
    return address > stack - kNearStack && address < stack + kNearStack;
}

// A walk from the faulting instruction up to the frame that has the guard.
struct WayToGuard {
    std::uintptr_t instruction, guard;
    bool begun = false;
    bool throughOwnText = false;
};

_Unwind_Reason_Code lookAtFrame(_Unwind_Context* frame, void* walk) {
    auto& way = *static_cast<WayToGuard*>(walk);
    const std::uintptr_t at = _Unwind_GetIP(frame);
    way.begun = way.begun || at == way.instruction;
    if (!way.begun) return _URC_NO_REASON;  // These are the handler's own frames.
    // The frame's stack ends here: if that is behind the guard, the guard's frame has been looked at.
    way.throughOwnText = _Unwind_GetCFA(frame) > way.guard;
    if (way.throughOwnText || !state.ownText.contains(at)) return _URC_END_OF_STACK;
    return _URC_NO_REASON;
}

bool leadsToGuardWithinOwnText(std::uintptr_t instruction) {
    WayToGuard way{instruction, reinterpret_cast<std::uintptr_t>(GuardedRoutine::counter()().innermost())};
    if (way.guard != 0) _Unwind_Backtrace(lookAtFrame, &way);
    return way.throughOwnText;
}

bool mayThrow(int signal, const siginfo_t& info, const Registers& at) {
    const bool kind = signal == SIGSEGV || signal == SIGBUS || signal == SIGFPE;
    const bool raisedHere = info.si_code > 0;
    if (!kind || !raisedHere || GuardedRoutine::depth() == 0 || state.endingThread != 0) return false;
    if (!state.ownText.contains(at.instruction)) return false;
    const auto address = reinterpret_cast<std::uintptr_t>(info.si_addr);
    if (signal == SIGSEGV && nearStack(address, at.stack)) return false;
    return !exceptionOnItsWay() && leadsToGuardWithinOwnText(at.instruction);
}

void onFault(int signal, siginfo_t* info, void* context) {
    const Registers at = registersOf(context);
    const char* name = nameOf(signal, info->si_code);
    const FaultDescription last(name, at.instruction, FaultOutcome::kEnds);
    if (!mayThrow(signal, *info, at)) end(last.text(), at.instruction);
    makingException = true;
    state.thrown = last;
    state.thrownAt = at.instruction;
    state.throwingThread = gettid();
    alarm(kPatienceSeconds);
    throw ProcessorFault(FaultDescription(name, at.instruction, FaultOutcome::kGoesOn).text());
}

void onAlarm(int, siginfo_t*, void*) {
    if (state.endingThread != 0) _exit(1);
    const pid_t thread = state.throwingThread;
    if (thread == 0) return;
    if (thread != gettid()) {
        tgkill(getpid(), thread, SIGALRM);  // Only the thread itself knows whether its exception was caught.
    } else if (exceptionOnItsWay()) {
        end(state.thrown.text(), state.thrownAt);
    }
}

[[noreturn]] void onTerminate() {
    if (!std::current_exception()) end("Terminated");
    try {
        throw;
    } catch (const ProcessorFault&) {
        end(state.thrown.text(), state.thrownAt);
    } catch (const std::exception& error) {
        end(error.what());
    } catch (...) {
        end("Unknown exception");
    }
}

// Notes the executable segments of the module that contains `inside`.
int noteOwnText(dl_phdr_info* module, std::size_t, void* inside) {
    std::array<Range, 4> ranges;
    std::size_t count = 0;
    for (std::size_t i = 0; i < module->dlpi_phnum && count < ranges.size(); ++i) {
        const auto& segment = module->dlpi_phdr[i];
        if (segment.p_type != PT_LOAD || (segment.p_flags & PF_X) == 0) continue;
        const std::uintptr_t begin = module->dlpi_addr + segment.p_vaddr;
        ranges[count++] = {begin, begin + segment.p_memsz};
    }
    const auto address = reinterpret_cast<std::uintptr_t>(inside);
    const bool own = std::any_of(ranges.begin(), ranges.begin() + count, [address](const Range& range) {
        return address >= range.begin && address < range.end;
    });
    if (own) std::for_each_n(ranges.begin(), count, [](const Range& range) { state.ownText.add(range); });
    return own ? 1 : 0;
}

void setActions() {
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        struct sigaction action = {};
        action.sa_sigaction = kSignals[i] == SIGALRM ? onAlarm : onFault;
        action.sa_flags = SA_SIGINFO | SA_NODEFER | SA_ONSTACK | SA_RESTART;
        sigaction(kSignals[i], &action, &state.formerActions[i]);
    }
}

// The handler's stack of one thread, used from the first prepareThread until the thread ends.
class HandlerStack {
  public:
    HandlerStack() : memory_(new char[kHandlerStackBytes]) {
        stack_t stack = {};
        stack.ss_sp = memory_.get();
        stack.ss_size = kHandlerStackBytes;
        sigaltstack(&stack, &former_);
    }
    ~HandlerStack() { sigaltstack(&former_, nullptr); }
    HandlerStack(const HandlerStack&) = delete;
    HandlerStack& operator=(const HandlerStack&) = delete;

  private:
    std::unique_ptr<char[]> memory_;
    stack_t former_ = {};
};

}  // namespace

void LinuxFaultSignals::InstallExceptionFilter(LastWords lastWords) {
    if (state.installed) return;
    state.installed = true;
    state.lastWords = lastWords;
    addOwnModule(reinterpret_cast<const void*>(&noteOwnText));
    prepareThread();
    state.formerTerminate = std::set_terminate(onTerminate);
    setActions();
}

void LinuxFaultSignals::RemoveExceptionFilter() {
    if (!state.installed) return;
    state.installed = false;
    for (std::size_t i = 0; i < kSignals.size(); ++i)
        sigaction(kSignals[i], &state.formerActions[i], nullptr);
    std::set_terminate(state.formerTerminate);
    state.lastWords = nullptr;
}

void LinuxFaultSignals::addOwnModule(const void* inside) {
    dl_iterate_phdr(noteOwnText, const_cast<void*>(inside));
}

void LinuxFaultSignals::prepareThread() {
    thread_local const HandlerStack stack;
}

}  // namespace hl
