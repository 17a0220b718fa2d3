// Runs a command once, drops its output, and prints "STATUS WALL USER SYSTEM PEAK": the exit status (128 +
// signal if it was killed), the times in microseconds, and the peak of its resident memory in KiB.
//
// It is a program of its own because the kernel counts the memory of whoever starts a command into the
// command's peak: this one is linked statically and has about half a MiB.
#include <fcntl.h>
#include <spawn.h>
#include <stdio.h>
#include <string.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <time.h>

namespace {

long long micros(const timeval& t) {
    return t.tv_sec * 1000000LL + t.tv_usec;
}

long long now() {
    timespec t;
    clock_gettime(CLOCK_MONOTONIC, &t);
    return t.tv_sec * 1000000LL + t.tv_nsec / 1000;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        fprintf(stderr, "Usage: measure COMMAND [ARGUMENT...]\n");
        return 2;
    }
    posix_spawn_file_actions_t quiet;
    posix_spawn_file_actions_init(&quiet);
    posix_spawn_file_actions_addopen(&quiet, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&quiet, 1, "/dev/null", O_WRONLY, 0);

    pid_t child = 0;
    const long long start = now();
    const int failed = posix_spawnp(&child, argv[1], &quiet, nullptr, argv + 1, environ);
    if (failed != 0) {
        fprintf(stderr, "%s: %s\n", argv[1], strerror(failed));
        return 1;
    }
    int status = 0;
    rusage used;
    if (wait4(child, &status, 0, &used) != child) return 1;
    const long long wall = now() - start;
    printf("%d %lld %lld %lld %ld\n", WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), wall,
           micros(used.ru_utime), micros(used.ru_stime), used.ru_maxrss);
    return 0;
}
