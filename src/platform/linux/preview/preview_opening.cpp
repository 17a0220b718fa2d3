#include "platform/linux/preview/preview_opening.h"

#include <sys/eventfd.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <mutex>
#include <utility>

#include "platform/linux/preview/distant_file.h"
#include "platform/linux/process/descriptor.h"
#include "platform/linux/process/helper.h"
#include "platform/linux/process/system_error.h"

namespace hl {

namespace {

class LinuxOpenFile final : public OpenFile {
  public:
    LinuxOpenFile(Descriptor file, std::uint64_t size) : file_(std::move(file)), size_(size) {}
    int descriptor() const override { return file_.number(); }
    std::uint64_t size() const override { return size_; }
    Result<std::string> head(std::size_t limit) const override {
        std::string bytes(static_cast<std::size_t>(std::min<std::uint64_t>(limit, size_)), '\0');
        std::size_t have = 0;
        while (have < bytes.size()) {
            const ssize_t got =
                ::pread(file_.number(), bytes.data() + have, bytes.size() - have, static_cast<off_t>(have));
            if (got < 0 && errno == EINTR) continue;
            if (got < 0) return systemError(errno);
            if (got == 0) break;
            have += static_cast<std::size_t>(got);
        }
        bytes.resize(have);
        return bytes;
    }

  private:
    Descriptor file_;
    std::uint64_t size_;
};

/// Copies the first `bytes` of the file into `memory`. Returns a system error code.
int copyBeginning(const OpenFile& file, const Descriptor& memory, std::uint64_t bytes,
                  const std::atomic<bool>& dropped) {
    std::string block(std::size_t{256} << 10, '\0');
    for (std::uint64_t at = 0; at < bytes;) {
        if (dropped.load()) return ECANCELED;
        const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(block.size(), bytes - at));
        const ssize_t got = ::pread(file.descriptor(), block.data(), wanted, static_cast<off_t>(at));
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) return got < 0 ? errno : 0;
        const auto read = std::string_view(block).substr(0, static_cast<std::size_t>(got));
        if (const int error = writeAll(memory.number(), read); error != 0) return error;
        at += static_cast<std::uint64_t>(got);
    }
    return 0;
}

}  // namespace

std::unique_ptr<OpenFile> makeOpenFile(Descriptor file, std::uint64_t size) {
    return std::make_unique<LinuxOpenFile>(std::move(file), size);
}

// Only a regular file is opened, because opening anything else could wake a writer, or rewind a tape.
Result<std::unique_ptr<OpenFile>> openForPreview(const std::string& path) {
    const Error unsuited = {.kind = ErrorKind::kUnsuited};
    struct stat facts {};
    if (::stat(path.c_str(), &facts) != 0) return systemError(errno);
    if (!S_ISREG(facts.st_mode)) return unsuited;
    Descriptor file = openToLook(path);
    if (!file.isOpen() || ::fstat(file.number(), &facts) != 0) return systemError(errno);
    if (!S_ISREG(facts.st_mode)) return unsuited;  // It may be another file by now.
    return makeOpenFile(std::move(file), static_cast<std::uint64_t>(facts.st_size));
}

/// A file that is wanted. The helper sets `file` before it signals the event; only after that the logic reads
/// it.
struct PreviewOpenings::Request {
    std::string path;
    FilePart part = FilePart::kWhole;
    std::atomic<bool> dropped = false;
    Descriptor event{::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)};
    /// At first this is the error that remains if the helper has no memory even for an error.
    Result<std::unique_ptr<OpenFile>> file = systemError(ENOMEM);

    Result<std::unique_ptr<OpenFile>> open() const {
        struct stat facts {};
        if (part == FilePart::kPlayable && ::stat(path.c_str(), &facts) == 0 &&
            static_cast<std::uint64_t>(facts.st_size) > kMostBytes)
            return openDistant(path);
        return copied();
    }
    /// The file itself is also closed here, because closing may hang as well.
    Result<std::unique_ptr<OpenFile>> copied() const {
        auto there = openForPreview(path);
        if (!there) return there;
        const std::uint64_t size = (*there)->size();
        const bool beginning = part == FilePart::kBeginning;
        if (!beginning && size > kMostBytes) return systemError(EFBIG);
        Descriptor memory(::memfd_create("preview", MFD_CLOEXEC));
        if (!memory.isOpen()) return systemError(errno);
        const std::uint64_t wanted = beginning ? std::min(size, kBeginning) : size;
        if (const int error = copyBeginning(**there, memory, wanted, dropped); error != 0)
            return systemError(error);
        if (::lseek(memory.number(), 0, SEEK_SET) != 0) return systemError(errno);
        return makeOpenFile(std::move(memory), size);
    }
    void tell() const {
        const std::uint64_t one = 1;
        [[maybe_unused]] const ssize_t told = ::write(event.number(), &one, sizeof one);
    }
};

struct PreviewOpenings::Desk {
    std::mutex mutex;
    bool working = false;
    std::shared_ptr<Request> next;
};

class PreviewOpenings::Opening final : public PreviewOpening {
  public:
    explicit Opening(std::shared_ptr<Request> request) : request_(std::move(request)) {}
    ~Opening() override { request_->dropped = true; }
    int descriptor() const override { return request_->event.number(); }
    Result<std::unique_ptr<OpenFile>> take() override {
        std::uint64_t count = 0;
        if (::read(request_->event.number(), &count, sizeof count) < 0) return systemError(errno);
        return std::move(request_->file);
    }
    Error givenUp() const override { return systemError(ETIMEDOUT); }

  private:
    std::shared_ptr<Request> request_;
};

std::unique_ptr<PreviewOpening> PreviewOpenings::begin(std::uint64_t disk, const std::string& path,
                                                       FilePart part) {
    auto request = std::make_shared<Request>();
    request->path = path;
    request->part = part;
    std::shared_ptr<Desk>& desk = desks_[disk];
    if (!desk) desk = std::make_shared<Desk>();
    const std::lock_guard lock(desk->mutex);
    desk->next = request;
    if (!desk->working) {
        desk->working = Helper::start([desk = desk](Whereabouts&) { work(*desk); }, true) != nullptr;
        if (!desk->working) {
            request->file = systemError(EAGAIN);
            request->tell();
        }
    }
    return std::make_unique<Opening>(std::move(request));
}

void PreviewOpenings::work(Desk& desk) {
    for (std::unique_lock lock(desk.mutex);; lock.lock()) {
        const std::shared_ptr<Request> request = std::exchange(desk.next, nullptr);
        desk.working = request != nullptr;
        if (!desk.working) return;
        lock.unlock();
        try {
            if (!request->dropped) request->file = request->open();
        } catch (...) {  // There is no memory, which is what the request says already.
        }
        request->tell();
    }
}

}  // namespace hl
