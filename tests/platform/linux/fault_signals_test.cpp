#include "platform/linux/fault_signals.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <functional>
#include <optional>
#include <string>
#include <thread>

#include "base/fault.h"
#include "support/temp_dir.h"

namespace hl {
namespace {

constexpr int kHungLimitMilliseconds = 60'000;

// Faults that the compiler can neither see through nor leave out.
#define HL_RAW [[gnu::noinline]] __attribute__((no_sanitize("address", "undefined", "thread")))

volatile std::uintptr_t nullAddress = 0;
volatile std::uintptr_t wildAddress = 0x10000;
volatile std::uintptr_t nonCanonicalAddress = 0xdead000000000000;
volatile int zero = 0;
volatile int sunk = 0;

HL_RAW void readAt(std::uintptr_t address) {
    sunk = *reinterpret_cast<volatile int*>(address);
}
HL_RAW void writeAt(std::uintptr_t address) {
    *reinterpret_cast<volatile int*>(address) = 1;
}
HL_RAW void divideByZero() {
    sunk = 7 / zero;
}

HL_RAW void readBehindTheEndOfAMappedFile() {
    test::TempDir dir;
    const std::string path = dir.path() + "/mapped";
    const int fd = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    void* page = ftruncate(fd, 1) == 0 ? mmap(nullptr, 1, PROT_READ, MAP_SHARED, fd, 0) : MAP_FAILED;
    if (page == MAP_FAILED || ftruncate(fd, 0) != 0) return;
    readAt(reinterpret_cast<std::uintptr_t>(page));
}

HL_RAW void faultInTheLibrary() {
    std::size_t (*volatile length)(const char*) = std::strlen;
    sunk = static_cast<int>(length(reinterpret_cast<const char*>(nullAddress)));
}

HL_RAW void callThroughNull() {
    void (*volatile nothing)() = nullptr;
    nothing();
}

HL_RAW int useUpTheStack(int depth) {  // NOLINT(misc-no-recursion)
    volatile char frame[1024] = {};
    frame[static_cast<unsigned>(depth) % sizeof frame] = 1;
    if (zero != 0) return depth;
    return useUpTheStack(depth + 1) + frame[0];
}

[[maybe_unused]] HL_RAW void faultWhereNothingMayBeThrown() noexcept {
    readAt(nullAddress);
}

// Says last words into the pipe to the parent.
int wordsPipe = -1;
void sayWords(const char* description) {
    if (write(wordsPipe, description, std::strlen(description)) < 0) _exit(2);
}

struct Outcome {
    bool hung = false;
    int exitStatus = -1;  // -1 if a signal killed the child.
    std::string words;
};

// What the child writes until it ends, or nothing if that takes too long.
std::optional<std::string> readToEnd(int fd) {
    std::string text;
    char buffer[512];
    for (;;) {
        pollfd wanted = {fd, POLLIN, 0};
        if (poll(&wanted, 1, kHungLimitMilliseconds) == 0) return std::nullopt;
        const ssize_t got = read(fd, buffer, sizeof buffer);
        if (got <= 0) return text;
        text.append(buffer, static_cast<std::size_t>(got));
    }
}

Outcome runInChild(const std::function<int()>& body, FaultSignals::LastWords lastWords = sayWords) {
    int ends[2];
    if (pipe(ends) != 0) return {};
    const pid_t child = fork();
    if (child == 0) {
        wordsPipe = ends[1];
        close(ends[0]);
        LinuxFaultSignals().InstallExceptionFilter(lastWords);
        _exit(body());
    }
    close(ends[1]);
    const std::optional<std::string> words = readToEnd(ends[0]);
    close(ends[0]);
    if (!words) kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    return {!words, WIFEXITED(status) ? WEXITSTATUS(status) : -1, words.value_or("")};
}

// A trap as the routines have it.
std::optional<Fault> trapped(const std::function<void()>& body) {
    try {
        GuardedRoutine guard;
        body();
    } catch (const Fault& fault) {
        return fault;
    }
    return std::nullopt;
}

struct Case {
    const char* name;
    void (*raise)();
    const char* words;
    bool guarded = true;
};

std::string nameOfCase(const testing::TestParamInfo<Case>& info) {
    return info.param.name;
}

const Case kThrown[] = {
    {"nullRead", [] { readAt(nullAddress); }, "(EXCEPTION_ACCESS_VIOLATION) \r\noccurred at: "},
    {"nullWrite", [] { writeAt(nullAddress); }, "EXCEPTION_ACCESS_VIOLATION"},
    {"wildRead", [] { readAt(wildAddress); }, "EXCEPTION_ACCESS_VIOLATION"},
    {"wildWrite", [] { writeAt(wildAddress); }, "EXCEPTION_ACCESS_VIOLATION"},
    {"nonCanonicalRead", [] { readAt(nonCanonicalAddress); }, "EXCEPTION_ACCESS_VIOLATION"},
    {"nonCanonicalWrite", [] { writeAt(nonCanonicalAddress); }, "EXCEPTION_ACCESS_VIOLATION"},
#if defined(__x86_64__)  // Other processors divide by zero without a fault.
    {"divisionByZero", divideByZero, "EXCEPTION_INT_DIVIDE_BY_ZERO"},
#endif
    {"truncatedMappedFile", readBehindTheEndOfAMappedFile, "EXCEPTION_ACCESS_VIOLATION"},
};

#ifdef __SANITIZE_THREAD__
constexpr bool kHandlersMayThrow = false;
#else
constexpr bool kHandlersMayThrow = true;
#endif

class ProcessorFaults : public testing::Test {
  protected:
    void SetUp() override {
        if (!kHandlersMayThrow)
            GTEST_SKIP() << "the thread sanitizer does not let a handler leave by an exception";
    }
};

class ThrownFaults : public ProcessorFaults, public testing::WithParamInterface<Case> {};

TEST_P(ThrownFaults, AreCaughtByTheTrapAfterDestructorsAndTheProcessGoesOn) {
    const Case& kind = GetParam();
    const Outcome outcome = runInChild([&] {
        int destroyed = 0;
        for (int round = 1; round <= 3; ++round) {
            struct Counter {
                int& count;
                ~Counter() { ++count; }
            };
            const std::optional<Fault> fault = trapped([&] {
                Counter counter{destroyed};
                kind.raise();
            });
            if (!fault || fault->number() != kFaultProcessor) return 10;
            if (fault->source() != "Exception Handler") return 11;
            if (fault->description().find(kind.words) == std::string::npos) return 12;
            if (destroyed != round) return 13;
            if (GuardedRoutine::depth() != 0) return 14;
        }
        return 0;
    });
    EXPECT_FALSE(outcome.hung);
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(outcome.words, "");
}

INSTANTIATE_TEST_SUITE_P(Kinds, ThrownFaults, testing::ValuesIn(kThrown), nameOfCase);

void onAThread(void (*body)()) {
    std::thread([body] {
        LinuxFaultSignals().prepareThread();
        body();
    }).join();
}

HL_RAW void waitInOwnCode() {
    while (zero == 0) continue;
}

// The signal comes where a fault of our own would be thrown.
void beSentASignal() {
    if (fork() == 0) _exit(kill(getppid(), SIGSEGV));
    waitInOwnCode();
}

struct FaultsWhenDestroyed {
    FaultsWhenDestroyed() = default;
    ~FaultsWhenDestroyed() noexcept(false) { readAt(nullAddress); }
};

const Case kFatal[] = {
    {"inTheLibrary", faultInTheLibrary, "EXCEPTION_ACCESS_VIOLATION"},
    {"trapInstruction", [] { __builtin_trap(); }, "EXCEPTION_"},
    {"callThroughNull", callThroughNull, "(EXCEPTION_ACCESS_VIOLATION) \r\noccurred at: 0. "},
    {"stackUsedUp", [] { sunk = useUpTheStack(0); }, "EXCEPTION_ACCESS_VIOLATION"},
    {"stackOfAThreadUsedUp", [] { onAThread([] { trapped([] { sunk = useUpTheStack(0); }); }); },
     "EXCEPTION_ACCESS_VIOLATION"},
    {"withNoGuardedRoutine", [] { readAt(nullAddress); }, "EXCEPTION_ACCESS_VIOLATION", false},
    {"onAnUnguardedThread", [] { onAThread([] { readAt(nullAddress); }); }, "EXCEPTION_ACCESS_VIOLATION"},
#ifndef __SANITIZE_THREAD__  // It does not let a handler leave by an exception.
    {"inANoexceptFunction", faultWhereNothingMayBeThrown, "EXCEPTION_ACCESS_VIOLATION"},
    {"whileAFaultIsInWork",
     [] {
         FaultsWhenDestroyed first;
         writeAt(nullAddress);
     },
     "EXCEPTION_ACCESS_VIOLATION"},
#endif
    {"whileAnExceptionIsOnItsWay",
     [] {
         FaultsWhenDestroyed first;
         throw Fault(1, "", "");
     },
     "EXCEPTION_ACCESS_VIOLATION"},
    {"signalSentByAProcess", beSentASignal, "EXCEPTION_ACCESS_VIOLATION"},
    {"abort", [] { abort(); }, "Unknown exception type"},
    {"exceptionThatNobodyCatches", [] { onAThread([] { throw Fault(1, "", "the cause"); }); }, "the cause"},
};

class FatalFaults : public testing::TestWithParam<Case> {};

TEST_P(FatalFaults, WriteLastWordsAndEndWithStatusOne) {
    const Case& kind = GetParam();
    const Outcome outcome = runInChild([&] {
        if (!kind.guarded) kind.raise();
        trapped(kind.raise);
        return 0;
    });
    EXPECT_FALSE(outcome.hung);
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_NE(outcome.words.find(kind.words), std::string::npos) << outcome.words;
}

INSTANTIATE_TEST_SUITE_P(Kinds, FatalFaults, testing::ValuesIn(kFatal), nameOfCase);

// The alarm is rung by hand where it would take seconds by itself.
TEST_F(ProcessorFaults, WatchTheUnwindingWithAnAlarmUntilTheTrapIsLeft) {
    const Outcome outcome = runInChild([] {
        unsigned left = 0;
        struct Looker {
            unsigned& seconds;
            ~Looker() { seconds = alarm(5); }
        };
        trapped([&] {
            Looker looker{left};
            readAt(nullAddress);
        });
        if (left == 0) return 10;
        return alarm(0) == 0 ? 0 : 11;
    });
    EXPECT_EQ(outcome.exitStatus, 0);
}

TEST_F(ProcessorFaults, EndTheProcessWhenUnwindingHangs) {
    const Outcome outcome = runInChild([] {
        struct Hanger {
            ~Hanger() {
                raise(SIGALRM);
                for (;;) pause();
            }
        };
        trapped([&] {
            Hanger hanger;
            readAt(nullAddress);
        });
        return 0;
    });
    EXPECT_FALSE(outcome.hung);
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_NE(outcome.words.find("An unhandled error (EXCEPTION_ACCESS_VIOLATION)"), std::string::npos);
}

TEST_F(ProcessorFaults, AnAlarmThatAnotherThreadReceivesStillFindsTheThreadThatHangs) {
    const Outcome outcome = runInChild([] {
        struct Hanger {
            ~Hanger() {
                alarm(0);
                std::thread([] { raise(SIGALRM); }).join();
                for (;;) pause();
            }
        };
        trapped([&] {
            Hanger hanger;
            readAt(nullAddress);
        });
        return 0;
    });
    EXPECT_FALSE(outcome.hung);
    EXPECT_EQ(outcome.exitStatus, 1);
}

TEST_F(ProcessorFaults, AnAlarmThatComesWhenTheFaultIsCaughtDoesNothing) {
    const Outcome outcome = runInChild([] {
        try {
            GuardedRoutine guard;
            readAt(nullAddress);
        } catch (const Fault&) {
            raise(SIGALRM);  // As in a dialog that stays open.
        }
        raise(SIGALRM);
        return 0;
    });
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(outcome.words, "");
}

TEST_F(ProcessorFaults, AFaultInsideATrapGoesToTheTrapAroundIt) {
    const Outcome outcome = runInChild([] {
        const std::optional<Fault> outer = trapped([] {
            try {
                GuardedRoutine guard;
                readAt(nullAddress);
            } catch (const Fault&) {
                if (!trapped([] { writeAt(nullAddress); })) _exit(10);
                readAt(nonCanonicalAddress);
            }
        });
        return outer ? 0 : 11;
    });
    EXPECT_EQ(outcome.exitStatus, 0);
}

TEST_F(ProcessorFaults, EndTheProcessWhenTheLastWordsFault) {
    const auto words = [](const char* description) {
        sayWords(description);
        readAt(nullAddress);
    };
    const Outcome outcome = runInChild([] { return readAt(nullAddress), 0; }, words);
    EXPECT_FALSE(outcome.hung);
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_EQ(outcome.words.rfind("An unhandled error"), 0U) << "said more than once: " << outcome.words;
}

TEST_F(ProcessorFaults, EndTheProcessWhenTheLastWordsHang) {
    const auto words = [](const char*) {
        raise(SIGALRM);
        for (;;) pause();
    };
    const Outcome outcome = runInChild([] { return readAt(nullAddress), 0; }, words);
    EXPECT_FALSE(outcome.hung);
    EXPECT_EQ(outcome.exitStatus, 1);
}

TEST_F(ProcessorFaults, EndTheProcessWithoutLastWordsToo) {
    const Outcome outcome = runInChild([] { return readAt(nullAddress), 0; }, nullptr);
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_EQ(outcome.words, "");
}

TEST_F(ProcessorFaults, ASecondInstallationChangesNothingAndRemovalGivesTheSignalsBack) {
    const Outcome outcome = runInChild([] {
        struct sigaction before = {}, again = {}, after = {};
        LinuxFaultSignals signals;
        sigaction(SIGSEGV, nullptr, &before);
        signals.InstallExceptionFilter(nullptr);
        sigaction(SIGSEGV, nullptr, &again);
        signals.RemoveExceptionFilter();
        sigaction(SIGSEGV, nullptr, &after);
        if (before.sa_sigaction != again.sa_sigaction) return 10;
        if (after.sa_sigaction == before.sa_sigaction) return 11;
        signals.InstallExceptionFilter(sayWords);
        return trapped([] { readAt(nullAddress); }) ? 0 : 12;
    });
    EXPECT_EQ(outcome.exitStatus, 0);
}

TEST(GuardedRoutine, CountsForEachThreadByItself) {
    GuardedRoutine outer;
    {
        GuardedRoutine inner;
        EXPECT_EQ(GuardedRoutine::depth(), 2);
        std::thread([] { EXPECT_EQ(GuardedRoutine::depth(), 0); }).join();
    }
    EXPECT_EQ(GuardedRoutine::depth(), 1);
}

TEST(FaultDescription, NamesTheFaultAndItsAddressInDecimals) {
    EXPECT_EQ(faultDescription("EXCEPTION_BREAKPOINT", 4096),
              "An unhandled error (EXCEPTION_BREAKPOINT) \r\noccurred at: 4096. "
              "Probably safe to continue, but better not.");
    EXPECT_EQ(faultDescription("", UINT64_MAX),
              "An unhandled error () \r\noccurred at: 18446744073709551615. "
              "Probably safe to continue, but better not.");
}

}  // namespace
}  // namespace hl
