// Tests what confined programs are refused, tried from within in many ways, and what still works there.
#include "platform/linux/preview/preview_confinement.h"

#include <linux/fs.h>
#include <sched.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/syscall.h>

namespace hl::test {
namespace {

constexpr std::uint64_t kMemory = std::uint64_t{1} << 30;
// The calls are made by their numbers, which are the same on every machine, as a hostile program would make
// them.
constexpr int kSeize = 0x4206;  // Looks into a process that keeps running.
constexpr long kNewer[] = {424, 425, 426, 427, 428, 429, 430, 431, 432, 433, 434, 438, 440, 442,
                           444, 445, 446, 447, 448, 452, 457, 458, 463, 464, 465, 466, 467};
constexpr long kOfAll[] = {
    SYS_bpf,    SYS_umount2,     SYS_fanotify_init,     SYS_kill,    SYS_unshare,     SYS_perf_event_open,
    SYS_mount,  SYS_execveat,    SYS_rt_sigqueueinfo,   SYS_setns,   SYS_pivot_root,  SYS_process_vm_writev,
    SYS_tkill,  SYS_kexec_load,  SYS_name_to_handle_at, SYS_keyctl,  SYS_userfaultfd, SYS_open_by_handle_at,
    SYS_chroot, SYS_request_key, SYS_rt_tgsigqueueinfo, SYS_add_key, SYS_init_module};
constexpr long kOfDecoders[] = {
    SYS_socket,       SYS_socketpair,      SYS_connect,   SYS_bind,        SYS_sendmsg,
    SYS_unlinkat,     SYS_renameat2,       SYS_linkat,    SYS_symlinkat,   SYS_mkdirat,
    SYS_mknodat,      SYS_truncate,        SYS_ftruncate, SYS_fchmod,      SYS_fchmodat,
    SYS_fchown,       SYS_fchownat,        SYS_utimensat, SYS_setxattr,    SYS_fsetxattr,
    SYS_fremovexattr, SYS_memfd_create,    SYS_setsid,    SYS_setuid,      SYS_shmat,
    SYS_mq_open,      SYS_inotify_init1,   SYS_seccomp,   SYS_setpriority, SYS_sched_setaffinity,
    SYS_ioprio_set,   SYS_copy_file_range, SYS_sendfile};

/// Returns what `body` says in a child that entered the confinement, and how the child ended unless it ended
/// well.
template <class Enter, class Body>
std::string saidWithin(Enter enter, Body body) {
    int ends[2];
    EXPECT_EQ(pipe(ends), 0);
    const pid_t child = fork();
    if (child == 0) {
        enter();
        const std::string said = body();
        _exit(write(ends[1], said.data(), said.size()) < 0 ? 1 : 0);
    }
    close(ends[1]);
    std::string said(100'000, '\0');
    said.resize(static_cast<std::size_t>(std::max<ssize_t>(read(ends[0], said.data(), said.size()), 0)));
    close(ends[0]);
    int status = -1;
    waitpid(child, &status, 0);
    return status == 0 ? said : said + "ended by " + std::to_string(status);
}

struct Way {
    const char* name;
    std::function<long()> attempt;
    int error;
};
/// Returns the names of those that did not end so.
std::string stillOpen(const std::vector<Way>& ways) {
    std::string said;
    for (const auto& [name, attempt, error] : ways) {
        errno = 0;
        const int got = attempt() == -1 ? errno : 0;
        if (got != error) said += std::string(name) + ": " + std::to_string(got) + "\n";
    }
    return said;
}
/// Makes the calls with arguments that name nothing, so that an allowed call fails in another way.
std::string stillOpen(std::span<const long> calls, int error) {
    std::string said;
    for (const long call : calls) {
        const std::string name = "call " + std::to_string(call);
        said += stillOpen({{name.c_str(), [call] { return syscall(call, -1, -1, -1, -1, -1, -1); }, error}});
    }
    return said;
}

long started(long spaces) {
    const long process = syscall(SYS_clone, spaces | SIGCHLD, 0, 0, 0, 0);
    if (process == 0) _exit(0);
    return process;
}

struct PreviewConfinement : testing::Test {
    TempDir dir, home;
    std::string file = dir.path() + "/file";
    int opened = -1;
    pid_t parent = getpid();

    void SetUp() override {
        writeFile(file, "content");
        opened = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
    }
    void TearDown() override {
        close(opened);
        EXPECT_EQ(contentOf(file), "content");
    }
    static auto asHelper() {
        return [] { confineHelper(kMemory); };
    }
    auto asForeign(bool withHome) const {
        return [this, withHome] {
            const ForeignConfinement all("/bin/sh", withHome ? home.path() : std::string());
            if (!all.enterFiles() || !all.enterCalls()) _exit(2);
        };
    }
    /// Returns ways that lead through the parent or the terminal.
    std::vector<Way> waysToOthers() const {
        return {
            {"limits of the parent", [this] { return prlimit(parent, RLIMIT_NOFILE, nullptr, nullptr); },
             EPERM},
            {"signal", [this] { return kill(parent, 0); }, EPERM},
            {"signal to a thread", [this] { return syscall(SYS_tgkill, parent, parent, 0); }, EPERM},
            {"signal by a descriptor", [this] { return fcntl(opened, F_SETOWN, parent); }, EPERM},
            {"typing", [this] { return ioctl(opened, TIOCSTI, "x"); }, EPERM},
            {"pasting", [this] { return ioctl(opened, TIOCLINUX, "x"); }, EPERM},
            {"newer process", [] { return syscall(435, nullptr, 0); }, ENOSYS},
            {"spaces", [] { return started(CLONE_NEWUSER); }, EPERM},
            {"network", [] { return socket(AF_INET, SOCK_STREAM, 0); }, EPERM},
            {"network, newer", [] { return socket(AF_INET6, SOCK_DGRAM, 0); }, EPERM},
            {"kernel", [] { return socket(AF_NETLINK, SOCK_RAW, 0); }, EPERM},
            {"packets", [] { return socket(AF_VSOCK, SOCK_STREAM, 0); }, EPERM},
        };
    }
    std::vector<Way> waysOfDecoders() const {
        return {
            {"to write", [this] { return ::open(file.c_str(), O_WRONLY); }, EPERM},
            {"to cut", [this] { return ::open(file.c_str(), O_RDONLY | O_TRUNC); }, EPERM},
            {"to make", [this] { return ::open((file + "2").c_str(), O_RDONLY | O_CREAT, 0600); }, EPERM},
            {"flags", [this] { return ioctl(opened, FS_IOC_SETFLAGS, nullptr); }, EPERM},
            {"its own name", [] { return prctl(PR_SET_MM, 0, 0, 0, 0); }, EPERM},
#ifndef HARBORLANTERN_SANITIZED
            {"process", [] { return started(0); }, EPERM},
            {"look", [this] { return syscall(SYS_ptrace, kSeize, parent, 0, 0); }, EPERM},
#endif
            {"what is open", [this] { return ioctl(opened, FIONREAD, &errno); }, 0},
        };
    }
};

TEST_F(PreviewConfinement, ADecoderHasNoWayOut) {
    for (const bool foreign : {false, true}) {
        const auto ways = [this] {
            return stillOpen(kOfAll, EPERM) + stillOpen(kOfDecoders, EPERM) + stillOpen(kNewer, ENOSYS) +
                   stillOpen(waysToOthers()) + stillOpen(waysOfDecoders());
        };
        EXPECT_EQ(foreign ? saidWithin(asForeign(false), ways) : saidWithin(asHelper(), ways), "") << foreign;
    }
    EXPECT_EQ(saidWithin(asHelper(), [] { return stillOpen(std::array{long{SYS_execve}}, EPERM); }), "");
}

TEST_F(PreviewConfinement, AConverterWithAFolderHasNoneButItsFiles) {
    static constexpr long kRefused[] = {424, 425, 426, 427, 428, 429, 430, 431, 432,
                                        433, 438, 440, 442, 448, 457, 458, 467};
    EXPECT_EQ(saidWithin(asForeign(true),
                         [this] {
                             return stillOpen(kOfAll, EPERM) + stillOpen(kRefused, EPERM) +
                                    stillOpen(waysToOthers());
                         }),
              "");
}

TEST_F(PreviewConfinement, ReadsTheSystemsLibrariesAndNothingElse) {
    if (FileConfinement::version() < 1) GTEST_SKIP() << "the system has no Landlock: reading stays open";
    writeFile(home.path() + "/own", "x");
    const auto reads = [](const std::string& path) {
        return [path] { return ::open(path.c_str(), O_RDONLY); };
    };
    const std::string own = home.path() + "/own", memory = "/proc/" + std::to_string(parent) + "/mem";
    const std::vector<Way> all = {
        {"file", reads(file), EACCES},
        {"through a link", reads("/proc/self/fd/" + std::to_string(opened)), EACCES},
        {"folder", reads(dir.path()), EACCES},
        {"root", reads("/"), EACCES},
        {"device", reads("/dev/ptmx"), EACCES},
        {"library", reads("/usr/bin/env"), 0}};
    const std::vector<Way> narrow = {{"own", reads(own), EACCES}, {"users", reads("/etc/passwd"), EACCES}};
    const std::vector<Way> wide = {{"own", reads(own), 0},
                                   {"write own", [&] { return ::open(own.c_str(), O_RDWR); }, 0},
                                   {"write", [this] { return ::open(file.c_str(), O_WRONLY); }, EACCES},
                                   {"delete", [this] { return unlink(file.c_str()); }, EACCES},
                                   {"memory", reads(memory), EACCES}};
    EXPECT_EQ(saidWithin(asHelper(), [&] { return stillOpen(all) + stillOpen(narrow); }), "");
    EXPECT_EQ(saidWithin(asForeign(false), [&] { return stillOpen(all) + stillOpen(narrow); }), "");
    EXPECT_EQ(saidWithin(asForeign(true), [&] { return stillOpen(all) + stillOpen(wide); }), "");
}

TEST_F(PreviewConfinement, LeavesThreadsMemoryAndItsOwnEnd) {
    EXPECT_EQ(saidWithin(asHelper(),
                         [this] {
                             std::string read(7, 0);
                             std::thread([&] { read.resize(pread(opened, read.data(), 7, 0)); }).join();
                             return read;
                         }),
              "content");
    EXPECT_EQ(saidWithin(asHelper(), []() -> std::string { std::abort(); }),
              "ended by " + std::to_string(SIGABRT));
#ifndef HARBORLANTERN_SANITIZED
    EXPECT_EQ(saidWithin(asHelper(), [] { return std::malloc(kMemory) == nullptr ? "none" : "memory"; }),
              "none");
#endif
}

}  // namespace
}  // namespace hl::test
