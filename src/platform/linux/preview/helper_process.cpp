#include "platform/linux/preview/helper_process.h"

#include <fcntl.h>
#include <poll.h>
#include <sched.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "platform/linux/preview/preview_confinement.h"
#include "platform/preview_protocol.h"

namespace hl {

namespace {

constexpr int kNotStarted = 127;

struct Pipe {
    Descriptor read, write;
};

bool makePipe(Pipe& pipe) {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) return false;
    pipe.read = Descriptor(ends[0]);
    pipe.write = Descriptor(ends[1]);
    return true;
}

// What the child needs. It is made before the fork, because after that nothing may allocate.
struct Start {
    std::vector<std::string> words, environment;
    std::vector<char*> argv, envp;
    std::string folder;
    std::optional<ForeignConfinement> confinement;
};

std::string variable(const char* name) {
    const char* value = ::getenv(name);
    return value != nullptr ? std::string(name) + "=" + value : std::string();
}

// Little of the user's environment is passed on, because what a library reads from it is a way into the
// helper.
std::vector<std::string> environmentFor(const ProcessOrder& order) {
    std::vector<std::string> all;
    for (const char* name : {"PATH", "LANG", "LC_ALL", "LC_CTYPE", "LD_LIBRARY_PATH", "QT_PLUGIN_PATH",
                             "ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS"})
        if (std::string one = variable(name); !one.empty()) all.push_back(std::move(one));
    const std::string home = order.home != nullptr ? order.home->path() : "/nonexistent";
    for (const char* name : {"HOME=", "TMPDIR=", "XDG_CONFIG_HOME=", "XDG_CACHE_HOME=", "XDG_RUNTIME_DIR="})
        all.push_back(name + home);
    return all;
}

std::vector<char*> pointersTo(std::vector<std::string>& words) {
    std::vector<char*> pointers;
    pointers.reserve(words.size() + 1);
    for (std::string& word : words) pointers.push_back(word.data());
    pointers.push_back(nullptr);
    return pointers;
}

void limit(__rlimit_resource resource, std::uint64_t value) {
    const rlimit both{value, value};
    ::setrlimit(resource, &both);
}

void setLimits(const ProcessLimits& limits) {
    if (limits.memory > 0) limit(RLIMIT_AS, limits.memory);
    // At the soft limit a signal ends the process; so one that does not raise the limit never reaches the
    // hard one.
    if (limits.cpuSeconds > 0) {
        const rlimit both{limits.cpuSeconds, RLIM_INFINITY};
        ::setrlimit(RLIMIT_CPU, &both);
    }
    limit(RLIMIT_FSIZE, limits.fileSize);
    limit(RLIMIT_CORE, 0);
}

// Runs in the child, which reports failures by its status. Its own session has no terminal to type into. Its
// own network namespace has no network at all; if the system does not allow that, the program's own settings
// have to suffice.
[[noreturn]] void become(const Start& start, const ProcessOrder& order, int input, int output, int file) {
    ::setsid();
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    if (order.foreign) ::unshare(CLONE_NEWUSER | CLONE_NEWNET);
    setLimits(order.limits);
    const int nowhere = ::open("/dev/null", O_WRONLY);
    if (start.confinement && !start.confinement->enterFiles()) ::_exit(kNotStarted);
    static_assert(kHelperFile == STDERR_FILENO + 1);
    // These numbers are above all that will be overwritten.
    const auto above = [](int number) { return number >= 0 ? ::fcntl(number, F_DUPFD, 10) : -1; };
    const int kept[] = {above(input), above(output), above(nowhere), above(file)};
    for (const int number : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO, kHelperFile})
        if (kept[number] >= 0) ::dup2(kept[number], number);
    ::syscall(SYS_close_range, file >= 0 ? kHelperFile + 1 : kHelperFile, ~0U, 0);
    for (const int signal : {SIGPIPE, SIGXFSZ, SIGTERM, SIGINT}) ::signal(signal, SIG_DFL);
    sigset_t none;
    sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    if (::chdir(start.folder.c_str()) == 0 && (!start.confinement || start.confinement->enterCalls()))
        ::execve(start.argv[0], start.argv.data(), start.envp.data());
    ::_exit(kNotStarted);
}

}  // namespace

std::unique_ptr<HelperProcess> LinuxHelperProcess::start(const ProcessOrder& order,
                                                         std::vector<pid_t>& ending) {
    Start start;
    start.words = order.arguments;
    start.words.insert(start.words.begin(), order.program);
    start.environment = environmentFor(order);
    start.argv = pointersTo(start.words);
    start.envp = pointersTo(start.environment);
    start.folder = order.home != nullptr ? order.home->path() : "/";
    if (order.foreign)
        start.confinement.emplace(order.program, order.home != nullptr ? start.folder : std::string());
    Pipe input, output;
    if (!makePipe(input) || !makePipe(output)) return nullptr;
    const int file = order.input != nullptr ? order.input->descriptor() : -1;
    const pid_t child = ::fork();
    if (child < 0) return nullptr;
    if (child == 0)
        become(start, order, order.inputIsStandard ? file : input.read.number(), output.write.number(), file);
    if (order.inputIsStandard) input.write.close();
    for (const int end : {input.write.number(), output.read.number()})
        if (end >= 0) ::fcntl(end, F_SETFL, O_NONBLOCK);
    return std::unique_ptr<HelperProcess>(
        new LinuxHelperProcess(child, std::move(input.write), std::move(output.read), ending));
}

LinuxHelperProcess::~LinuxHelperProcess() {
    if (process_ < 0) return;
    ::kill(-process_, SIGKILL);
    ::kill(process_, SIGKILL);
    if (::waitpid(process_, nullptr, WNOHANG) == 0) ending_.push_back(process_);
}

bool LinuxHelperProcess::readOutput(std::string& to, std::size_t limit) {
    std::array<char, 65536> buffer;
    while (to.size() < limit) {
        const ssize_t got =
            ::read(output_.number(), buffer.data(), std::min(buffer.size(), limit - to.size()));
        if (got > 0) {
            to.append(buffer.data(), static_cast<std::size_t>(got));
        } else if (got == 0) {
            return false;
        } else if (errno != EINTR) {
            return errno == EAGAIN;
        }
    }
    return true;
}

bool LinuxHelperProcess::send(std::string_view text) {
    // A request is shorter than a page, so it is written completely or not at all.
    return writeAll(input_.number(), text) == 0;
}

bool LinuxHelperProcess::endedWell() {
    if (process_ < 0) return false;
    int status = 0;
    // Its output is closed: it is ending, or it hides that it goes on.
    constexpr int kTries = 50;
    pid_t ended = 0;
    for (int i = 0; i < kTries && ended == 0; ++i) {
        ended = ::waitpid(process_, &status, WNOHANG);
        if (ended == 0) ::poll(nullptr, 0, 1);
    }
    if (ended != process_) return false;
    ::kill(-std::exchange(process_, -1), SIGKILL);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace hl
