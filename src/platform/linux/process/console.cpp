#include "platform/linux/process/console.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>

#include "base/text.h"

namespace hl {

namespace {

constexpr std::size_t kUsualWidth = 80;

// Writes the text. A console that takes no more (a closed pipe) is no reason to stop. One that takes no more
// at the moment, because somebody made it non-blocking, is waited for.
bool put(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(descriptor, text.data(), text.size());
        if (written > 0) {
            text.remove_prefix(static_cast<std::size_t>(written));
        } else if (written < 0 && errno == EAGAIN) {
            pollfd room{descriptor, POLLOUT, 0};
            ::poll(&room, 1, -1);
        } else if (written == 0 || errno != EINTR) {
            return false;
        }
    }
    return true;
}

std::size_t terminalWidth() {
    struct winsize size = {};
    if (::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return kUsualWidth;
    return size.ws_col;
}

}  // namespace

void occupyStandardDescriptors() {
    for (const int number : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        // open() gives the lowest free number. Child processes inherit it.
        if (::fcntl(number, F_GETFD) < 0 && errno == EBADF) ::open("/dev/null", O_RDONLY);
    }
}

LinuxConsole::LinuxConsole() : terminal_(::isatty(STDERR_FILENO) == 1) {}

LinuxConsole::~LinuxConsole() {
    progress("");
}

bool LinuxConsole::outputLine(std::string_view line) {
    progress("");
    return put(STDOUT_FILENO, std::string(line) + "\n");
}

void LinuxConsole::errorLine(std::string_view line) {
    progress("");
    put(STDERR_FILENO, std::string(line) + "\n");
}

void LinuxConsole::progress(std::string_view line) {
    if (!terminal_ || (line.empty() && !progressShown_)) return;
    // The cursor goes to the left edge, the text is written, and the rest of the line is erased.
    put(STDERR_FILENO, "\r" + std::string(firstCharacters(line, terminalWidth() - 1)) + "\x1b[K");
    progressShown_ = !line.empty();
}

}  // namespace hl
