#include "platform/linux/process/fault_signals.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <cstring>
#include <thread>

#include "base/fault.h"

namespace hl {
namespace {

constexpr int kHungLimitSeconds = 60;

// The compiler can neither see through these faults nor optimise them away.
#define HL_RAW [[maybe_unused, gnu::noinline]] __attribute__((no_sanitize("address", "undefined", "thread")))

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
    void* page = mmap(nullptr, 1, PROT_READ, MAP_SHARED, memfd_create("empty", MFD_CLOEXEC), 0);
    readAt(reinterpret_cast<std::uintptr_t>(page));
}

HL_RAW void faultInTheLibrary() {
    std::size_t (*volatile length)(const char*) = std::strlen;
    sunk = static_cast<int>(length(reinterpret_cast<const char*>(nullAddress)));
}

HL_RAW void faultInACallOfALibrary() {
    int items[2] = {};
    qsort(items, 2, sizeof items[0], [](const void*, const void*) {
        readAt(nullAddress);
        return 0;
    });
}

HL_RAW int useUpTheStack(int depth) {  // NOLINT(misc-no-recursion)
    volatile char frame[1024] = {};
    frame[static_cast<unsigned>(depth) % sizeof frame] = 1;
    if (zero != 0) return depth;
    return useUpTheStack(depth + 1) + frame[0];
}

HL_RAW void faultWhereNothingMayBeThrown() noexcept {
    readAt(nullAddress);
}

void onAThread(void (*body)()) {
    std::thread([body] {
        LinuxFaultSignals().prepareThread();
        body();
    }).join();
}

// The signal comes at a place where a fault of the program itself would be thrown.
HL_RAW void beSentASignal() {
    if (fork() == 0) _exit(kill(getppid(), SIGSEGV));
    while (zero == 0) continue;
}

// Runs its body when it is destroyed.
struct AtTheEnd {
    std::function<void()> body;
    ~AtTheEnd() noexcept(false) { body(); }
};

[[maybe_unused]] std::function<void()> faultThatUnwindsInto(void (*body)()) {
    return [body] {
        const AtTheEnd end{body};
        readAt(nullAddress);
    };
}

void exceptionThatUnwindsIntoAFault() {
    const AtTheEnd end{[] { readAt(nullAddress); }};
    throw Fault(1, "", "");
}

[[noreturn, maybe_unused]] void ringAndHang() {
    raise(SIGALRM);
    for (;;) pause();
}

// Writes the last words into the pipe to the parent.
int wordsPipe = -1;
void sayWords(const char* description, const void*) {
    if (write(wordsPipe, description, std::strlen(description)) < 0) _exit(2);
}

struct Outcome {
    int exitStatus = -1;  // -1 if a signal killed the child.
    std::string words;
};

void beKilledIfThisHangs() {
    sigevent event = {};
    event.sigev_signo = SIGKILL;
    timer_t timer = {};
    const itimerspec limit = {{}, {kHungLimitSeconds, 0}};
    if (timer_create(CLOCK_MONOTONIC, &event, &timer) != 0 || timer_settime(timer, 0, &limit, nullptr) != 0)
        _exit(3);
}

// The child exits with what `body` returns, unless a fault ends it.
Outcome runInChild(const std::function<int()>& body, FaultSignals::LastWords lastWords = sayWords) {
    int ends[2] = {};
    if (pipe(ends) != 0) return {};
    const pid_t child = fork();
    if (child == 0) {
        beKilledIfThisHangs();
        wordsPipe = ends[1];
        LinuxFaultSignals().InstallExceptionFilter(lastWords);
        _exit(body());
    }
    close(ends[1]);
    int status = 0;
    waitpid(child, &status, 0);
    char words[4096];
    const ssize_t length = read(ends[0], words, sizeof words);
    close(ends[0]);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, {words, static_cast<std::size_t>(length)}};
}

// Runs the body in a trap like those of the routines.
std::optional<Fault> trapped(const std::function<void()>& body) {
    try {
        GuardedRoutine guard;
        body();
    } catch (const Fault& fault) {
        return fault;
    }
    return std::nullopt;
}

#ifndef __SANITIZE_THREAD__  // That sanitizer does not let a handler leave by an exception.
// `body` returns 0 if everything is right.
void expectToGoOn(const std::function<int()>& body) {
    const Outcome outcome = runInChild(body);
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(outcome.words, "");
}

TEST(ThrownFaults, AreCaughtAfterDestructorsThatAnAlarmWatchesAndTheProcessGoesOn) {
    const struct {
        void (*raise)();
        const char* words;
    } cases[] = {
        {[] { readAt(nullAddress); }, "(EXCEPTION_ACCESS_VIOLATION) \r\noccurred at: "},
        {[] { writeAt(wildAddress); }, "EXCEPTION_ACCESS_VIOLATION"},
        {[] { readAt(nonCanonicalAddress); }, "EXCEPTION_ACCESS_VIOLATION"},
        {[] { writeAt(nonCanonicalAddress); }, "EXCEPTION_ACCESS_VIOLATION"},
#if defined(__x86_64__)  // Other processors divide by zero without a fault.
        {divideByZero, "EXCEPTION_INT_DIVIDE_BY_ZERO"},
#endif
        {readBehindTheEndOfAMappedFile, "EXCEPTION_ACCESS_VIOLATION"}
    };
    for (const auto& kind : cases) {
        SCOPED_TRACE(&kind - cases);
        expectToGoOn([&] {
            int watched = 0;
            for (int round = 1; round <= 3; ++round) {
                const std::optional<Fault> fault = trapped([&] {
                    AtTheEnd counter{[&] { watched += alarm(5) > 0 ? 1 : 0; }};
                    kind.raise();
                });
                if (!fault || fault->number() != kFaultProcessor) return 10;
                if (fault->description().find(kind.words) == std::string::npos) return 11;
                if (watched != round || alarm(0) != 0 || GuardedRoutine::depth() != 0) return 12;
            }
            return 0;
        });
    }
}

TEST(ThrownFaults, InsideATrapGoToTheTrapAroundItAndALateAlarmDoesNothing) {
    expectToGoOn([] {
        const std::optional<Fault> outer = trapped([] {
            try {
                GuardedRoutine guard;
                readAt(nullAddress);
            } catch (const Fault&) {
                raise(SIGALRM);  // It comes as in a dialog that stays open.
                if (!trapped([] { writeAt(nullAddress); })) _exit(10);
                readAt(nonCanonicalAddress);
            }
        });
        return outer ? raise(SIGALRM) : 11;
    });
}

TEST(ThrownFaults, SurviveASecondInstallationAndRemovalGivesTheSignalsBack) {
    struct sigaction before = {}, after = {};
    sigaction(SIGSEGV, nullptr, &before);
    expectToGoOn([&] {
        LinuxFaultSignals signals;
        signals.InstallExceptionFilter(nullptr);
        signals.RemoveExceptionFilter();
        sigaction(SIGSEGV, nullptr, &after);
        if (after.sa_sigaction != before.sa_sigaction) return 10;
        signals.InstallExceptionFilter(sayWords);
        return trapped([] { readAt(nullAddress); }) ? 0 : 11;
    });
}
#endif

struct Case {
    const char* name;
    std::function<void()> raise;
    const char* words = "An unhandled error (EXCEPTION_ACCESS_VIOLATION)";
    bool guarded = true;
    FaultSignals::LastWords lastWords = sayWords;
};

const Case kFatal[] = {
    {"inTheLibrary", faultInTheLibrary},
    {"inOurCodeThatALibraryCalls", faultInACallOfALibrary},
    {"callThroughNull", [] { reinterpret_cast<void (*)()>(nullAddress)(); },
     "(EXCEPTION_ACCESS_VIOLATION) \r\noccurred at: 0. "},
    {"stackUsedUp", [] { sunk = useUpTheStack(0); }},
    {"stackOfAThreadUsedUp", [] { onAThread([] { trapped([] { sunk = useUpTheStack(0); }); }); }},
    {"withNoGuardedRoutine", [] { readAt(nullAddress); }, "EXCEPTION_ACCESS_VIOLATION", false},
    {"onAnUnguardedThread", [] { onAThread([] { readAt(nullAddress); }); }},
#ifndef __SANITIZE_THREAD__
    {"inANoexceptFunction", faultWhereNothingMayBeThrown},
    {"whileAFaultIsInWork", faultThatUnwindsInto([] { writeAt(nullAddress); })},
    {"whenUnwindingHangs", faultThatUnwindsInto(ringAndHang)},
    {"whenUnwindingHangsAndAnotherThreadReceivesTheAlarm",
     faultThatUnwindsInto([] { alarm(0), std::thread(ringAndHang).join(); })},
#endif
    {"whileAnExceptionIsOnItsWay", exceptionThatUnwindsIntoAFault},
    {"signalSentByAProcess", beSentASignal},
    {"abort", [] { abort(); }, "Unknown exception type"},
    {"exceptionThatNobodyCatches", [] { onAThread([] { throw Fault(1, "", "the cause"); }); }, "the cause"},
// The thread sanitizer holds back a signal that comes while another one is being handled.
#ifndef __SANITIZE_THREAD__
    {"whenTheLastWordsFault", faultInTheLibrary, "An unhandled error", false,
     [](const char* words, const void* at) { sayWords(words, at), readAt(nullAddress); }},
    {"whenTheLastWordsHang", faultInTheLibrary, "", false, [](const char*, const void*) { ringAndHang(); }},
#endif
    {"withoutLastWords", faultInTheLibrary, "", false, nullptr}};

class FatalFaults : public testing::TestWithParam<Case> {};

TEST_P(FatalFaults, WriteLastWordsOnceAndEndWithStatusOne) {
    const Case& kind = GetParam();
    const auto body = [&] {
        if (!kind.guarded) kind.raise();
        trapped(kind.raise);
        return 0;
    };
    const Outcome outcome = runInChild(body, kind.lastWords);
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_NE(outcome.words.find(kind.words), std::string::npos) << outcome.words;
    EXPECT_EQ(outcome.words.find("Probably safe"), std::string::npos) << outcome.words;
    EXPECT_EQ(outcome.words.find("An unhandled error", 1), std::string::npos) << outcome.words;
}

INSTANTIATE_TEST_SUITE_P(Kinds, FatalFaults, testing::ValuesIn(kFatal),
                         [](const auto& tested) { return tested.param.name; });

}  // namespace
}  // namespace hl
