#include "platform/linux/process/background.h"

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace hl {

namespace {

constexpr int kReadyPipe = STDERR_FILENO + 1;

// Closes everything but the pipe.
void letGoOfAll(int pipe) {
    ::setsid();
    [[maybe_unused]] const int moved = ::chdir("/");
    const int nowhere = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) ::dup2(nowhere, standard);
    if (pipe != kReadyPipe) ::dup3(pipe, kReadyPipe, O_CLOEXEC);
    ::syscall(SYS_close_range, kReadyPipe + 1, ~0U, 0);
}

}  // namespace

int goOnInBackground(const std::function<int(const std::function<void()>& ready)>& body) {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) return 1;
    const pid_t child = ::fork();
    if (child < 0) return 1;
    if (child > 0) {
        ::close(ends[1]);
        char mark = 0;
        return ::read(ends[0], &mark, 1) == 1 ? 0 : 1;
    }
    letGoOfAll(ends[1]);
    return body([] {
        [[maybe_unused]] const ssize_t written = ::write(kReadyPipe, "", 1);
        ::close(kReadyPipe);
    });
}

}  // namespace hl
