#include "platform/linux/preview_confinement.h"

#include <fcntl.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/time.h>

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
    SYS_socket,
    SYS_connect,
    SYS_execve,
    SYS_execveat,
    SYS_kill,
    SYS_tkill,
    SYS_ptrace,
    SYS_unlinkat,
    SYS_renameat2,
    SYS_linkat,
    SYS_symlinkat,
    SYS_mkdirat,
    SYS_fchmodat,
    SYS_fchownat,
    SYS_truncate,
    SYS_mount,
    SYS_setns,
    SYS_unshare,
    SYS_bpf,
    SYS_keyctl,
    SYS_openat2,
    SYS_io_uring_setup,
    SYS_process_vm_writev,
#ifdef SYS_fork
    SYS_fork,
    SYS_vfork,
#endif
#ifdef SYS_unlink
    SYS_unlink,
    SYS_rename,
    SYS_link,
    SYS_symlink,
    SYS_mkdir,
    SYS_rmdir,
    SYS_chmod,
    SYS_chown,
    SYS_creat,
#endif
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

// Opening with a flag that writes or makes a file is refused; `argument` has the flags.
void refuseWriting(std::vector<sock_filter>& rules, std::uint32_t call, unsigned argument) {
    constexpr std::uint32_t kWrites = O_WRONLY | O_RDWR | O_CREAT | O_TRUNC;
    const auto flags =
        static_cast<std::uint32_t>(offsetof(seccomp_data, args) + argument * sizeof(std::uint64_t));
    rules.push_back(jump(kEqual, call, 0, 4));
    rules.push_back(statement(kLoad, flags));
    rules.push_back(jump(kAnyBit, kWrites, 0, 1));
    rules.push_back(statement(kReturn, kRefused));
    rules.push_back(statement(kReturn, SECCOMP_RET_ALLOW));
}

void forbidCalls() {
    if (kMachine == 0) return;
    std::vector<sock_filter> rules = {
        statement(kLoad, offsetof(seccomp_data, arch)),     jump(kEqual, kMachine, 1, 0),
        statement(kReturn, SECCOMP_RET_KILL_PROCESS),       statement(kLoad, offsetof(seccomp_data, nr)),
        jump(BPF_JMP | BPF_JGE | BPF_K, kOtherTable, 0, 1), statement(kReturn, SECCOMP_RET_KILL_PROCESS),
    };
    for (const std::uint32_t call : kForbidden) {
        rules.push_back(jump(kEqual, call, 0, 1));
        rules.push_back(statement(kReturn, kRefused));
    }
    refuseWriting(rules, SYS_openat, 2);
#ifdef SYS_open
    refuseWriting(rules, SYS_open, 1);
#endif
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
