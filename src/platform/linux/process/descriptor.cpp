#include "platform/linux/process/descriptor.h"

#include <fcntl.h>
#include <pthread.h>
#include <signal.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <memory>

namespace hl {

namespace {

// Keeps SIGPIPE away from this thread. A signal that comes meanwhile is dropped; an earlier one stays
// pending.
class NoBrokenPipeSignal {
  public:
    NoBrokenPipeSignal() {
        sigemptyset(&pipe_);
        sigaddset(&pipe_, SIGPIPE);
        sigset_t pending;
        sigpending(&pending);
        wasPending_ = sigismember(&pending, SIGPIPE) == 1;
        pthread_sigmask(SIG_BLOCK, &pipe_, &before_);
    }
    ~NoBrokenPipeSignal() {
        const timespec now{};
        if (!wasPending_) sigtimedwait(&pipe_, nullptr, &now);
        pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    }
    NoBrokenPipeSignal(const NoBrokenPipeSignal&) = delete;
    NoBrokenPipeSignal& operator=(const NoBrokenPipeSignal&) = delete;

  private:
    sigset_t pipe_{};
    sigset_t before_{};
    bool wasPending_ = false;
};

// Returns the bytes moved by `call`, which is repeated while it is interrupted; -1 with errno set if it
// fails.
template <class Call>
ssize_t uninterrupted(Call call) {
    ssize_t moved = 0;
    do {
        moved = call();
    } while (moved < 0 && errno == EINTR);
    return moved;
}

}  // namespace

int Descriptor::close() {
    if (number_ < 0) return 0;
    // Linux has closed it even if it says EINTR.
    return ::close(std::exchange(number_, -1)) == 0 || errno == EINTR ? 0 : errno;
}

Descriptor openAt(int folder, const std::string& path, int flags, unsigned mode) {
    return Descriptor(static_cast<int>(
        uninterrupted([&] { return openat(folder, path.c_str(), flags | O_CLOEXEC | O_NOCTTY, mode); })));
}

Descriptor openToLook(const std::string& path, int flags) {
    flags |= O_RDONLY | O_NONBLOCK;
    Descriptor file = openAt(AT_FDCWD, path, flags | O_NOATIME);
    return file.isOpen() || errno != EPERM ? std::move(file) : openAt(AT_FDCWD, path, flags);
}

std::string pathOfFolder(const Descriptor& folder) {
    const std::string link = "/proc/self/fd/" + std::to_string(folder.number());
    std::string path(PATH_MAX, '\0');
    const ssize_t length = readlink(link.c_str(), path.data(), path.size());
    const bool told = length > 0 && length < PATH_MAX && path.front() == '/';
    path.resize(told ? static_cast<std::size_t>(length) : 0);
    return path;
}

int writeAll(int file, std::string_view bytes) {
    const NoBrokenPipeSignal quiet;
    while (!bytes.empty()) {
        const ssize_t written = uninterrupted([&] { return write(file, bytes.data(), bytes.size()); });
        if (written < 0) return errno;
        if (written == 0) return ENOSPC;  // Some devices report in this way that they take no more.
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return 0;
}

int readAll(int file, std::size_t limit, std::string& out) {
    constexpr std::size_t kBuffer = 16384;  // With a larger one the heap would grow and shrink for each file.
    const auto buffer = std::make_unique_for_overwrite<char[]>(kBuffer);  // The stack may be small.
    for (std::size_t total = 0;;) {
        const std::size_t room = limit - total;
        const std::size_t wanted = room < kBuffer ? room + 1 : kBuffer;
        const ssize_t got = uninterrupted([&] { return read(file, buffer.get(), wanted); });
        if (got < 0) return errno;
        if (got == 0) return 0;
        total += static_cast<std::size_t>(got);
        if (total > limit) return EFBIG;
        out.append(buffer.get(), static_cast<std::size_t>(got));
    }
}

std::string contentOf(const std::string& path, std::size_t limit) {
    std::string content;
    const Descriptor file = openAt(AT_FDCWD, path, O_RDONLY);
    if (file.isOpen()) readAll(file.number(), limit, content);
    return content;
}

}  // namespace hl
