#include "platform/linux/change/files.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <thread>

#include "platform/folder_reader.h"
#include "platform/linux/change/patient_file.h"
#include "platform/linux/change/replacing_files.h"
#include "platform/linux/process/descriptor.h"
#include "platform/linux/process/helper.h"
#include "platform/linux/process/system_error.h"

namespace hl {

namespace {
// Anybody who may read a folder may lock it and delay others, so this file, which only its owner can read, is
// locked.
constexpr const char* kLockName = ".harborlantern-lock";

std::optional<std::string> beginningOf(const std::string& path, std::size_t count) {
    const Descriptor file = openToLook(path, O_NOFOLLOW);
    struct stat status {};
    if (!file.isOpen() || fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
    std::string bytes(count, '\0');
    const ssize_t got = pread(file.number(), bytes.data(), count, 0);
    if (got < 0) return std::nullopt;
    bytes.resize(static_cast<std::size_t>(got));
    return bytes;
}

Result<std::string> wholeOf(const std::string& path, std::size_t limit) {
    // If a pipe has the name, it is refused instead of being waited for.
    const Descriptor file = openAt(AT_FDCWD, path, O_RDONLY | O_NONBLOCK);
    std::string content;
    struct stat status {};
    int error = !file.isOpen() || fstat(file.number(), &status) != 0 ? errno : 0;
    if (error == 0) error = S_ISFIFO(status.st_mode) ? ESPIPE : readAll(file.number(), limit, content);
    if (error != 0) return systemError(error);
    return content;
}

Result<> appendTo(const std::string& path, std::string_view bytes) {
    Descriptor file = openAt(AT_FDCWD, path, O_WRONLY | O_APPEND | O_CREAT | O_NONBLOCK, 0666);
    if (!file.isOpen()) return systemError(errno);
    const int written = writeAll(file.number(), bytes);
    const int closed = file.close();
    return systemResult(written != 0 ? written : closed);
}

std::vector<std::string> namesOf(const std::string& folder) {
    std::vector<std::string> names;
    std::error_code error;
    for (std::filesystem::directory_iterator at(folder, error), end; !error && at != end; at.increment(error))
        names.push_back(at->path().filename().string());
    std::ranges::sort(names);
    return names;
}

/// A file that is locked, or why there is none.
struct LockAttempt {
    std::shared_ptr<Descriptor> file = {};
    bool waited = false;  ///< Another process held it too long.
};

LockAttempt lockIn(const std::string& folder, std::chrono::seconds limit) {
    using namespace std::chrono_literals;
    auto file = std::make_shared<Descriptor>(
        openAt(AT_FDCWD, folder + "/" + kLockName, O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK, 0600));
    struct stat status {};
    if (!file->isOpen() || fstat(file->number(), &status) != 0) return {};
    if (!S_ISREG(status.st_mode) || status.st_uid != geteuid()) return {};
    const auto end = std::chrono::steady_clock::now() + limit;
    while (flock(file->number(), LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK && errno != EINTR) return {};
        if (errno == EWOULDBLOCK && std::chrono::steady_clock::now() >= end) return {.waited = true};
        std::this_thread::sleep_for(5ms);
    }
    return {std::move(file)};
}

}  // namespace

// What follows may concern the program's own folder, and at any time, so no messages run in a wait for it.

Result<std::string> LinuxFiles::readWhole(const std::string& path, std::size_t limit) {
    return askStill<Result<std::string>>(patience_, path, systemError(ETIMEDOUT),
                                         [path, limit] { return wholeOf(path, limit); });
}

// What poll() says is there can be read without waiting, so no helper is needed.
Result<std::string> LinuxFiles::readInput(std::size_t limit, WaitCallback* wait) {
    constexpr int kStep = 15;  // Milliseconds.
    constexpr std::size_t kBuffer = std::size_t{64} << 10;
    const auto buffer = std::make_unique_for_overwrite<char[]>(kBuffer);
    std::string content;
    for (;;) {
        pollfd input{STDIN_FILENO, POLLIN, 0};
        const int ready = ::poll(&input, 1, kStep);
        if (wait != nullptr && !wait->goOnWaiting()) return systemError(ETIMEDOUT);
        if (ready == 0 || (ready < 0 && errno == EINTR)) continue;
        const ssize_t got = ::read(STDIN_FILENO, buffer.get(), kBuffer);
        if (got < 0 && (errno == EINTR || errno == EAGAIN)) continue;
        if (got < 0) return systemError(errno);
        if (got == 0) return content;
        content.append(buffer.get(), static_cast<std::size_t>(got));
        if (content.size() > limit) return systemError(EFBIG);
    }
}

Result<std::unique_ptr<ReplacingFile>> LinuxFiles::replace(const std::string& path) {
    const auto make = [path, unfinished = unfinished_, waits = waitsForReaders_] {
        return makeReplacingFile(path, unfinished, waits);
    };
    return patience_ == nullptr ? make() : replacePatiently(*patience_, path, make);
}

Result<> LinuxFiles::append(const std::string& path, std::string_view bytes) {
    return askStill<Result<>>(patience_, path, systemError(ETIMEDOUT),
                              [path, text = std::string(bytes)] { return appendTo(path, text); });
}

std::optional<std::string> LinuxFiles::beginning(const std::string& path, std::size_t count) {
    return ask<std::optional<std::string>>(
        patience_, path, std::nullopt, [path, count] { return beginningOf(path, count); }, LastName::kItself);
}

std::vector<std::string> LinuxFiles::namesIn(const std::string& folder) {
    return askStill<std::vector<std::string>>(patience_, folder, {}, [folder] { return namesOf(folder); });
}

Result<> LinuxFiles::makePrivateFolder(const std::string& path) {
    return askStill<Result<>>(patience_, path, systemError(ETIMEDOUT), [path]() -> Result<> {
        if (::mkdir(path.c_str(), 0700) == 0 || errno == EEXIST) return {};
        return systemError(errno);
    });
}

Result<> LinuxFiles::remove(const std::string& path) {
    return askStill<Result<>>(patience_, path, systemError(ETIMEDOUT), [path]() -> Result<> {
        if (::unlink(path.c_str()) == 0) return {};
        return systemError(errno);
    });
}

Error LinuxFiles::errorOf(int number) {
    return number == 0 ? Error() : systemError(number);
}

bool LinuxFiles::exists(const std::string& path) {
    return askStill<bool>(patience_, path, false, [path] {
        struct stat status {};
        return stat(path.c_str(), &status) == 0;
    });
}

std::shared_ptr<void> LinuxFiles::lockFolderOf(const std::string& path) {
    const std::string folder = folderOf(path);
    const std::chrono::seconds limit(waitedForLock_ ? 0 : 2);
    const auto attempt =
        askStill<LockAttempt>(patience_, folder, {}, [folder, limit] { return lockIn(folder, limit); });
    waitedForLock_ = attempt.waited;
    if (attempt.file == nullptr || patience_ == nullptr) return attempt.file;
    return {attempt.file.get(), [file = attempt.file](void*) { closeBeside(std::move(*file)); }};
}

}  // namespace hl
