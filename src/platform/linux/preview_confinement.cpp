#include "platform/linux/preview_confinement.h"

#include <fcntl.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/fs.h>
#include <linux/seccomp.h>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <vector>

namespace hl {

namespace {

#if defined(__x86_64__)
constexpr std::uint32_t kMachine = AUDIT_ARCH_X86_64;
#elif defined(__aarch64__)
constexpr std::uint32_t kMachine = AUDIT_ARCH_AARCH64;
#else
constexpr std::uint32_t kMachine = 0;  // Calls are not filtered.
#endif

#ifdef HARBORLANTERN_SANITIZED
constexpr bool kSanitized = true;  // The address sanitizer reserves terabytes, and writes its report.
#else
constexpr bool kSanitized = false;
#endif

/// From here on the numbers are those of another table of the same machine, which names the same calls.
constexpr std::uint32_t kOtherTable = 0x4000'0000;
constexpr std::uint32_t kRefused = SECCOMP_RET_ERRNO | EPERM;

constexpr std::uint32_t kForbidden[] = {
    // Other programs, and looks into them.
    SYS_execve,
    SYS_execveat,
    SYS_ptrace,
    SYS_process_vm_readv,
    SYS_process_vm_writev,
#ifdef SYS_fork
    SYS_fork,
    SYS_vfork,
#endif
    // Sockets.
    SYS_socket,
    SYS_socketpair,
    SYS_connect,
    // Signals to others.
    SYS_kill,
    SYS_tkill,
    SYS_rt_sigqueueinfo,
    SYS_rt_tgsigqueueinfo,
#ifdef SYS_pidfd_send_signal
    SYS_pidfd_send_signal,
#endif
    // Names on a disk.
    SYS_unlinkat,
    SYS_renameat2,
    SYS_linkat,
    SYS_symlinkat,
    SYS_mkdirat,
    SYS_mknodat,
#ifdef SYS_renameat
    SYS_renameat,
#endif
#ifdef SYS_unlink
    SYS_unlink,
    SYS_rename,
    SYS_link,
    SYS_symlink,
    SYS_mkdir,
    SYS_rmdir,
    SYS_mknod,
    SYS_creat,
#endif
    // What is told of a file. Some of it may be set on one that is open for reading alone.
    SYS_fchmod,
    SYS_fchmodat,
#ifdef SYS_fchmodat2
    SYS_fchmodat2,
#endif
    SYS_fchown,
    SYS_fchownat,
    SYS_utimensat,
    SYS_setxattr,
    SYS_lsetxattr,
    SYS_fsetxattr,
    SYS_removexattr,
    SYS_lremovexattr,
    SYS_fremovexattr,
    SYS_truncate,
#ifdef SYS_chmod
    SYS_chmod,
    SYS_chown,
    SYS_lchown,
    SYS_utime,
    SYS_utimes,
    SYS_futimesat,
#endif
    // Ways around all this.
    SYS_open_by_handle_at,
    SYS_openat2,
    SYS_io_uring_setup,
    SYS_mount,
    SYS_umount2,
    SYS_setns,
    SYS_unshare,
    SYS_bpf,
    SYS_keyctl,
};

sock_filter statement(std::uint16_t code, std::uint32_t value) {
    return {code, 0, 0, value};
}
// Skips so many statements.
sock_filter jump(std::uint16_t code, std::uint32_t value, std::uint8_t ifSo, std::uint8_t ifNot) {
    return {code, ifSo, ifNot, value};
}

constexpr std::uint16_t kLoad = BPF_LD | BPF_W | BPF_ABS;
constexpr std::uint16_t kEqual = BPF_JMP | BPF_JEQ | BPF_K;
constexpr std::uint16_t kAnyBit = BPF_JMP | BPF_JSET | BPF_K;
constexpr std::uint16_t kReturn = BPF_RET | BPF_K;

/// Holds the number of the call between two rules.
sock_filter loadCall() {
    return statement(kLoad, offsetof(seccomp_data, nr));
}

/// Whether a call is refused if the test of its argument holds, or if it does not.
enum class RefusedIf { kSo, kNot };

// Refuses `call` by its argument: `test` compares the lower half of that with `value`.
void refuseBy(std::vector<sock_filter>& rules, std::uint32_t call, unsigned argument, std::uint16_t test,
              std::uint32_t value, RefusedIf refused) {
    const auto at =
        static_cast<std::uint32_t>(offsetof(seccomp_data, args) + argument * sizeof(std::uint64_t));
    const bool so = refused == RefusedIf::kSo;
    rules.push_back(jump(kEqual, call, 0, 4));
    rules.push_back(statement(kLoad, at));
    rules.push_back(jump(test, value, so ? 0 : 1, so ? 1 : 0));
    rules.push_back(statement(kReturn, kRefused));
    rules.push_back(loadCall());
}

void refuseSome(std::vector<sock_filter>& rules) {
    constexpr std::uint32_t kWrites = O_WRONLY | O_RDWR | O_CREAT | O_TRUNC;
    refuseBy(rules, SYS_openat, 2, kAnyBit, kWrites, RefusedIf::kSo);
#ifdef SYS_open
    refuseBy(rules, SYS_open, 1, kAnyBit, kWrites, RefusedIf::kSo);
#endif
    // abort() sends its signal so.
    refuseBy(rules, SYS_tgkill, 0, kEqual, static_cast<std::uint32_t>(::getpid()), RefusedIf::kNot);
    // Threads are no other programs. What a newer call is asked for lies in memory; the library takes the
    // older one where there is no newer.
    refuseBy(rules, SYS_clone, 0, kAnyBit, CLONE_THREAD, RefusedIf::kNot);
#ifdef SYS_clone3
    rules.push_back(jump(kEqual, SYS_clone3, 0, 1));
    rules.push_back(statement(kReturn, SECCOMP_RET_ERRNO | ENOSYS));
#endif
    // Flags of a file, and of a file system.
    for (const auto command : {FS_IOC_SETFLAGS, FS_IOC_FSSETXATTR, FS_IOC_SETVERSION})
        refuseBy(rules, SYS_ioctl, 1, kEqual, static_cast<std::uint32_t>(command), RefusedIf::kSo);
}

void forbidCalls() {
    if (kMachine == 0) return;
    std::vector<sock_filter> rules = {
        statement(kLoad, offsetof(seccomp_data, arch)),     jump(kEqual, kMachine, 1, 0),
        statement(kReturn, SECCOMP_RET_KILL_PROCESS),       loadCall(),
        jump(BPF_JMP | BPF_JGE | BPF_K, kOtherTable, 0, 1), statement(kReturn, SECCOMP_RET_KILL_PROCESS),
    };
    for (const std::uint32_t call : kForbidden) {
        rules.push_back(jump(kEqual, call, 0, 1));
        rules.push_back(statement(kReturn, kRefused));
    }
    refuseSome(rules);
    rules.push_back(statement(kReturn, SECCOMP_RET_ALLOW));
    const sock_fprog program{static_cast<unsigned short>(rules.size()), rules.data()};
    ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program);
}

}  // namespace

void confineHelper(std::uint64_t bytes) {
    const rlimit nothing{0, 0};
    ::setrlimit(RLIMIT_CORE, &nothing);
    ::setrlimit(RLIMIT_FSIZE, &nothing);
    if constexpr (kSanitized) return;
    const rlimit memory{bytes, bytes};
    ::setrlimit(RLIMIT_AS, &memory);
    forbidCalls();
}

void endAfter(unsigned milliseconds) {
    const itimerval timer{{0, 0}, {milliseconds / 1000, static_cast<long>(milliseconds % 1000) * 1000}};
    ::setitimer(ITIMER_VIRTUAL, &timer, nullptr);
}

void allowSeconds(unsigned seconds) {
    rusage used{};
    ::getrusage(RUSAGE_SELF, &used);
    const auto until = static_cast<rlim_t>(used.ru_utime.tv_sec + used.ru_stime.tv_sec) + seconds + 1;
    const rlimit both{until, RLIM_INFINITY};
    ::setrlimit(RLIMIT_CPU, &both);
}

}  // namespace hl
