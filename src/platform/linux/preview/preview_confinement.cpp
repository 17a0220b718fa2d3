#include "platform/linux/preview/preview_confinement.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

#include <filesystem>
#include <initializer_list>
#include <span>

namespace hl {

namespace {

using Use = FileConfinement::Use;

#ifdef HARBORLANTERN_SANITIZED
constexpr bool kSanitized =
    true;  // The address sanitizer reserves terabytes, and looks for leaks at the end.
#else
constexpr bool kSanitized = false;
#endif

// Calls that the headers of an older system lack; the numbers are the same on every machine.
constexpr long kFirstOfNewer = 424;
constexpr long kClone3 = 435, kOpenAt2 = 437, kFileAccess2 = 439;
constexpr long kNewer[] = {
    424, 438, 440, 448,            // Signals and descriptors through an open process, advice on its memory.
    425, 426, 427,                 // Rings of calls that no filter sees.
    428, 429, 430, 431, 432, 433,  // The newer form of mounting.
    442, 457, 458, 467,            // Later additions to mounting.
};

constexpr long kDecoding[] = {
    // These work on the open file and the pipes. A rule below lets files be opened for reading only.
    SYS_read,
    SYS_pread64,
    SYS_readv,
    SYS_preadv,
    SYS_write,
    SYS_writev,
    SYS_lseek,
    SYS_close,
    SYS_dup,
    SYS_dup3,
    SYS_pipe2,
    SYS_eventfd2,
    SYS_ppoll,
    SYS_pselect6,
    SYS_fadvise64,
    // These tell facts of files.
    SYS_newfstatat,
    SYS_fstat,
    SYS_statx,
    SYS_faccessat,
    kFileAccess2,
    SYS_readlinkat,
    SYS_getdents64,
    SYS_getcwd,
    SYS_statfs,
    SYS_fstatfs,
    // These are for memory and threads. A rule below excludes new processes.
    SYS_mmap,
    SYS_mprotect,
    SYS_munmap,
    SYS_mremap,
    SYS_madvise,
    SYS_brk,
    SYS_membarrier,
    SYS_futex,
    SYS_set_robust_list,
    SYS_set_tid_address,
    SYS_rseq,
    SYS_exit,
    SYS_exit_group,
    SYS_sched_yield,
    SYS_sched_getaffinity,
    SYS_sched_getparam,
    SYS_sched_getscheduler,
    SYS_sched_get_priority_max,
    SYS_sched_get_priority_min,
    // These are for its own signals and time.
    SYS_rt_sigaction,
    SYS_rt_sigprocmask,
    SYS_rt_sigreturn,
    SYS_sigaltstack,
    SYS_restart_syscall,
    SYS_nanosleep,
    SYS_clock_nanosleep,
    SYS_clock_gettime,
    SYS_clock_getres,
    SYS_gettimeofday,
    SYS_times,
    SYS_setitimer,
    SYS_getitimer,
    SYS_getrusage,
    // These tell who it is.
    SYS_getpid,
    SYS_getppid,
    SYS_gettid,
    SYS_getpgid,
    SYS_getuid,
    SYS_geteuid,
    SYS_getgid,
    SYS_getegid,
    SYS_getresuid,
    SYS_getresgid,
    SYS_uname,
    SYS_sysinfo,
    SYS_getrandom,
#ifdef SYS_stat  // Only some machines have the older forms.
    SYS_stat,
    SYS_lstat,
    SYS_access,
    SYS_readlink,
    SYS_getdents,
    SYS_poll,
    SYS_select,
    SYS_pipe,
    SYS_dup2,
    SYS_time,
    SYS_getpgrp,
    SYS_arch_prctl,
    SYS_getrlimit,
#endif
};

/// To look for leaks, a sanitizer stops the process from a copy of it.
constexpr long kSanitizing[] = {SYS_ptrace, SYS_wait4, SYS_process_vm_readv, SYS_personality, SYS_prctl};

/// Calls that a converter with its own processes and files does not need.
constexpr long kDepths[] = {
    // These look into other processes, and send them signals.
    SYS_ptrace,
    SYS_process_vm_readv,
    SYS_process_vm_writev,
    SYS_kcmp,
    SYS_perf_event_open,
    SYS_userfaultfd,
    SYS_kill,
    SYS_tkill,
    SYS_rt_sigqueueinfo,
    SYS_rt_tgsigqueueinfo,
    SYS_setpriority,
    SYS_ioprio_set,
    SYS_sched_setaffinity,
    SYS_sched_setscheduler,
    SYS_sched_setparam,
    SYS_sched_setattr,
    SYS_migrate_pages,
    SYS_move_pages,
    // Programs of one user share memory by these.
    SYS_shmget,
    SYS_shmat,
    SYS_shmctl,
    SYS_semget,
    SYS_semctl,
    SYS_semop,
    SYS_semtimedop,
    SYS_msgget,
    SYS_msgsnd,
    SYS_msgrcv,
    SYS_msgctl,
    SYS_mq_open,
    SYS_mq_unlink,
    // These reach files in other ways than by name.
    SYS_name_to_handle_at,
    SYS_open_by_handle_at,
    SYS_execveat,
    // These change the system itself.
    SYS_mount,
    SYS_umount2,
    SYS_pivot_root,
    SYS_chroot,
    SYS_setns,
    SYS_unshare,
    SYS_bpf,
    SYS_keyctl,
    SYS_add_key,
    SYS_request_key,
    SYS_init_module,
    SYS_finit_module,
    SYS_delete_module,
    SYS_kexec_load,
    SYS_reboot,
    SYS_swapon,
    SYS_swapoff,
    SYS_acct,
    SYS_quotactl,
    SYS_syslog,
    SYS_sethostname,
    SYS_setdomainname,
    SYS_settimeofday,
    SYS_clock_settime,
    SYS_adjtimex,
    SYS_clock_adjtime,
    SYS_vhangup,
    SYS_fanotify_init,
#ifdef SYS_iopl
    SYS_iopl,
    SYS_ioperm,
    SYS_kexec_file_load,
#endif
};

constexpr std::uint32_t kWrites = O_WRONLY | O_RDWR | O_CREAT | O_TRUNC;
constexpr std::uint32_t kNewSpaces =
    CLONE_NEWNS | CLONE_NEWCGROUP | CLONE_NEWUTS | CLONE_NEWIPC | CLONE_NEWUSER | CLONE_NEWPID | CLONE_NEWNET;

void allowDecoding(CallFilter& calls) {
    if constexpr (kSanitized) calls.allow(kSanitizing);
    calls.allow(kDecoding);
    calls.allowIfNoneOfTheBits(SYS_openat, 2, kWrites);
#ifdef SYS_open
    calls.allowIfNoneOfTheBits(SYS_open, 1, kWrites);
#endif
    // Threads are not processes. The arguments of the newer call are in memory, where no filter sees them.
    calls.hide(kClone3);
    if constexpr (kSanitized) calls.allowIfNoneOfTheBits(SYS_clone, 0, kNewSpaces);
    calls.allowIfABitOf(SYS_clone, 0, CLONE_THREAD);
    // It may set limits only for itself, not for other processes.
    calls.allowIfOneOf(SYS_prlimit64, 0, {0});
    // It may not change who gets the signals of a descriptor.
    calls.allowIfOneOf(SYS_fcntl, 1, {F_DUPFD, F_DUPFD_CLOEXEC, F_GETFD, F_SETFD, F_GETFL, F_SETFL});
    // It may neither type into a terminal nor change the flags of a file.
    calls.allowIfOneOf(SYS_ioctl, 1, {TCGETS, FIONREAD, FIOCLEX, FIONCLEX, TIOCGWINSZ});
    calls.allowIfOneOf(SYS_prctl, 0, {PR_SET_NAME, PR_GET_NAME, PR_GET_DUMPABLE, PR_SET_PDEATHSIG});
}

void refuseRest(CallFilter& calls) {
    calls.hideFrom(kFirstOfNewer);
    calls.refuseOthers();
}

void refuseDepths(CallFilter& calls) {
    calls.refuse(kDepths);
    calls.refuse(kNewer);
    calls.hide(kClone3);
    calls.hide(kOpenAt2);
    calls.allowIfNoneOfTheBits(SYS_clone, 0, kNewSpaces);
    calls.refuseIfOneOf(SYS_tgkill, 0, {static_cast<std::uint32_t>(::getpid())});
    calls.allowIfOneOf(SYS_prlimit64, 0, {0});
    calls.refuseIfOneOf(SYS_fcntl, 1, {F_SETOWN, F_SETOWN_EX, F_SETSIG});
    calls.refuseIfOneOf(SYS_ioctl, 1, {TIOCSTI, TIOCLINUX, TIOCSCTTY, TIOCSETD, FIOSETOWN, SIOCSPGRP});
    calls.allowIfOneOf(SYS_socket, 0, {AF_UNIX});
    // The office program waits for later starts with a socket in /tmp, and would end if it could not.
    calls.pretend({SYS_bind, SYS_listen});
    calls.allowOthers();
}

constexpr const char* kLibraries[] = {"/usr", "/lib", "/lib64", "/lib32", "/opt", "/nix/store", "/gnu/store"};

void allowLibraries(const FileConfinement& files, Use use) {
    for (const char* folder : kLibraries) files.allow(folder, use);
    for (const char* place : {"/etc/fonts", "/etc/ld.so.cache", "/etc/localtime", "/var/cache/fontconfig"})
        files.allow(place, Use::kRead);
    if constexpr (kSanitized) files.allow("/proc", Use::kRead);
}

CallFilter callsOfForeign(bool hasHome) {
    CallFilter calls;
    if (hasHome) {
        refuseDepths(calls);
        return calls;
    }
    constexpr long kStart[] = {SYS_execve};
    calls.allow(kStart);
    allowDecoding(calls);
    refuseRest(calls);
    return calls;
}

}  // namespace

ForeignConfinement::ForeignConfinement(const std::string& program, const std::string& home)
    : calls_(callsOfForeign(!home.empty())) {
    allowLibraries(files_, Use::kRun);
    files_.allow(program, Use::kRun);
    if (home.empty()) return;
    // An unpacked program has its libraries beside it.
    std::error_code none;
    files_.allow(std::filesystem::canonical(program, none).parent_path().string(), Use::kRun);
    files_.allow(home, Use::kAll);
    for (const char* place : {"/etc", "/proc", "/sys", "/var/lib/libreoffice", "/var/spool/libreoffice"})
        files_.allow(place, Use::kRead);
    for (const char* place : {"/dev/null", "/dev/zero", "/dev/full", "/dev/random", "/dev/urandom"})
        files_.allow(place, Use::kReadAndWrite);
}

bool ForeignConfinement::enterFiles() const {
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && files_.enter();
}

bool ForeignConfinement::enterCalls() const {
    return calls_.enter();
}

void confineHelper(std::uint64_t bytes) {
    const rlimit nothing{0, 0};
    ::setrlimit(RLIMIT_CORE, &nothing);
    ::setrlimit(RLIMIT_FSIZE, &nothing);
    const rlimit memory{bytes, bytes};
    if constexpr (!kSanitized) ::setrlimit(RLIMIT_AS, &memory);
    const FileConfinement files;
    allowLibraries(files, Use::kRead);
    CallFilter calls;
    // abort() sends its signal in this way.
    calls.allowIfOneOf(SYS_tgkill, 0, {static_cast<std::uint32_t>(::getpid())});
    allowDecoding(calls);
    refuseRest(calls);
    ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    if (!files.enter() || !calls.enter()) ::_exit(1);
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
