// What a confined helper is refused, and what still works there. Each case is a process of its own.
#include "platform/linux/preview_confinement.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/fs.h>
#include <sched.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <thread>

#include "support/temp_dir.h"
#include "support/whole_files.h"

namespace hl::test {
namespace {

constexpr std::uint64_t kMemory = std::uint64_t{1} << 30;

/// Runs `body` in a confined process; the status as wait() tells it.
template <class Body>
int confined(Body body) {
    const pid_t child = fork();
    if (child == 0) {
        confineHelper(kMemory);
        _exit(body());
    }
    int status = -1;
    waitpid(child, &status, 0);
    return status;
}

/// The error that `body` ends with there, 0 for none; -1 if the process did not come to its end.
template <class Body>
int errorThere(Body body) {
    const int status = confined([&] {
        errno = 0;
        return body() == -1 ? errno : 0;
    });
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

struct PreviewConfinement : testing::Test {
    TempDir dir;
    std::string file = dir.path() + "/file";

    void SetUp() override {
#ifdef HARBORLANTERN_SANITIZED
        GTEST_SKIP() << "calls are not forbidden there";
#endif
        writeFile(file, "content");
    }
};

TEST_F(PreviewConfinement, RefusesWhatReachesOutOfTheProcess) {
    // With arguments that name nothing, so that an allowed one fails otherwise.
    const std::vector<long> calls[] = {
        {SYS_execve, SYS_execveat, SYS_ptrace, SYS_process_vm_readv, SYS_process_vm_writev},
        {SYS_socket, SYS_socketpair, SYS_connect},
        {SYS_tkill, SYS_rt_sigqueueinfo, SYS_rt_tgsigqueueinfo, SYS_pidfd_send_signal},
        {SYS_unlinkat, SYS_renameat2, SYS_linkat, SYS_symlinkat, SYS_mkdirat, SYS_mknodat, SYS_truncate},
        {SYS_fchmod, SYS_fchmodat, SYS_fchown, SYS_fchownat, SYS_utimensat},
        {SYS_setxattr, SYS_lsetxattr, SYS_fsetxattr, SYS_removexattr, SYS_lremovexattr, SYS_fremovexattr},
        {SYS_open_by_handle_at, SYS_openat2, SYS_io_uring_setup},
        {SYS_mount, SYS_umount2, SYS_setns, SYS_unshare, SYS_bpf, SYS_keyctl},
#ifdef SYS_renameat
        {SYS_renameat},
#endif
#ifdef SYS_unlink
        {SYS_unlink, SYS_rename, SYS_link, SYS_symlink, SYS_mkdir, SYS_rmdir, SYS_mknod, SYS_creat},
        {SYS_chmod, SYS_chown, SYS_lchown, SYS_utime, SYS_utimes, SYS_futimesat},
#endif
    };
    for (const auto& group : calls)
        for (const long call : group)
            EXPECT_EQ(errorThere([&] { return syscall(call, -1, -1, -1, -1, -1, -1); }), EPERM) << call;
}

TEST_F(PreviewConfinement, RefusesACallByWhatItIsAskedFor) {
    const int open = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
    const pid_t parent = getpid();
    int flags = 0;
    const auto opened = [&](int how) {
        return errorThere([&, how] { return ::open(file.c_str(), how, 0600); });
    };
    for (const int how : {O_WRONLY, O_RDWR, O_RDONLY | O_TRUNC, O_RDONLY | O_CREAT})
        EXPECT_EQ(opened(how), EPERM) << how;
    EXPECT_EQ(opened(O_RDONLY), 0);
    EXPECT_EQ(errorThere([&] { return kill(parent, 0); }), EPERM);
    EXPECT_EQ(errorThere([&] { return syscall(SYS_tgkill, parent, parent, 0); }), EPERM);
    EXPECT_EQ(errorThere([] { return syscall(SYS_tgkill, getpid(), getpid(), 0); }), 0);
    EXPECT_EQ(errorThere([] { return fork(); }), EPERM);
#ifdef SYS_fork
    EXPECT_EQ(errorThere([] { return syscall(SYS_fork); }), EPERM);
#endif

    EXPECT_EQ(errorThere([&] { return ioctl(open, FS_IOC_SETFLAGS, &flags); }), EPERM);
    EXPECT_EQ(errorThere([&] { return ioctl(open, FS_IOC_FSSETXATTR, nullptr); }), EPERM);
    EXPECT_EQ(errorThere([&] { return ioctl(open, FIONREAD, &flags); }), 0);
    close(open);
    EXPECT_EQ(contentOf(file), "content");
}

TEST_F(PreviewConfinement, LeavesThreadsFilesAndItsOwnEnd) {
    const int status = confined([&] {
        std::size_t read = 0;
        std::thread([&] { read = contentOf(file).size(); }).join();
        return static_cast<int>(read);
    });
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 7) << status;
    const int aborted = confined([]() -> int { std::abort(); });
    EXPECT_TRUE(WIFSIGNALED(aborted) && WTERMSIG(aborted) == SIGABRT) << aborted;
}

TEST_F(PreviewConfinement, LimitsMemory) {
    const int status = confined([] { return std::malloc(kMemory) == nullptr ? 1 : 2; });
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 1) << status;
}

}  // namespace
}  // namespace hl::test
