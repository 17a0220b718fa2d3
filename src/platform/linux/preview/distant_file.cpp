#include "platform/linux/preview/distant_file.h"

#include <linux/close_range.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <new>
#include <optional>
#include <utility>

#include "platform/linux/preview/preview_opening.h"
#include "platform/linux/process/descriptor.h"
#include "platform/linux/process/helper.h"
#include "platform/linux/process/system_error.h"

namespace hl {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kBlock = std::size_t{128} << 10;  // In bytes.
constexpr std::uint64_t kBlocksAhead = 16;              // 2 MiB, some seconds of a film.
/// The most that is kept, 8 MiB: a film alternates between places, for its pictures and its sound.
constexpr std::size_t kMostBlocks = 64;

/// What the helper and those who read share. It lives as long as one of them.
class DistantFile final : public FileStream {
  public:
    // --- for the helper

    /// Returns when nobody wants to read any more.
    void serve(const std::string& path);
    /// Says that there is no memory to open the file, unless it is open.
    void fail();

    // --- for whoever opens it

    /// Waits until the helper has opened the file, or could not.
    Result<> waitUntilOpened();

    // FileStream
    std::uint64_t size() const override { return size_; }
    Result<std::size_t> read(std::uint64_t offset, char* to, std::size_t bytes) override;
    void allowReading(bool allowed) override;
    void end() override;
    std::chrono::milliseconds waiting() const override;

  private:
    using Lock = std::unique_lock<std::mutex>;
    struct Block {
        std::string bytes;  ///< Fewer than kBlock only at the end of the file.
        int error = 0;      ///< The system's number, if it could not be read.
        std::uint64_t used = 0;
    };

    std::optional<std::uint64_t> nextBlock() const;
    Block readBlock(int file, std::uint64_t index) const;
    void keep(std::uint64_t index, Block block);
    Block* waitFor(std::uint64_t index, Lock& lock);

    std::uint64_t size_ = 0;  ///< Does not change once the file is opened.
    mutable std::mutex mutex_;
    std::condition_variable asked_;     ///< Something changed for the helper.
    std::condition_variable answered_;  ///< Something changed for those who read.
    std::optional<Result<>> opened_;
    bool ended_ = false, allowed_ = true;
    std::map<std::uint64_t, Block> blocks_;
    std::uint64_t uses_ = 0;  ///< Counts the uses of blocks; the block that was used longest ago goes first.
    std::uint64_t wanted_ = 0;
    std::optional<Clock::time_point> waitingSince_;
};

// --- on the helper's thread

// Closing a file asks its disk, too, and a process that this program starts would do that for each file that
// it inherits: it would hang before it begins. So no other thread sees this file, which is in a table of
// descriptors that is the helper's own. On a system that cannot do that (Linux before 5.9), the file is in
// the common table.
void keepDescriptorsApart() {
    ::syscall(SYS_close_range, STDERR_FILENO + 1, ~0U, CLOSE_RANGE_UNSHARE);
}

void DistantFile::serve(const std::string& path) {
    keepDescriptorsApart();
    const auto file = openForPreview(path);
    Lock lock(mutex_);
    if (file) size_ = (*file)->size();
    opened_ = file ? Result<>() : Result<>(file.error());
    answered_.notify_all();
    if (!file) return;
    while (!ended_) {
        const auto index = nextBlock();
        if (!index) {
            asked_.wait(lock);
            continue;
        }
        lock.unlock();
        Block block = readBlock((*file)->descriptor(), *index);
        lock.lock();
        keep(*index, std::move(block));
        answered_.notify_all();
    }
    lock.unlock();  // The file is closed now, which may hang.
}

void DistantFile::fail() {
    const std::lock_guard lock(mutex_);
    if (!opened_) opened_ = systemError(ENOMEM);
    answered_.notify_all();
}

std::optional<std::uint64_t> DistantFile::nextBlock() const {
    for (std::uint64_t index = wanted_; index <= wanted_ + kBlocksAhead; ++index) {
        if (index * kBlock >= size_) break;
        if (!blocks_.contains(index)) return index;
    }
    return std::nullopt;
}

DistantFile::Block DistantFile::readBlock(int file, std::uint64_t index) const {
    Block block;
    block.bytes.resize(kBlock);
    std::size_t have = 0;
    while (have < kBlock) {
        const ssize_t got = ::pread(file, block.bytes.data() + have, kBlock - have,
                                    static_cast<off_t>(index * kBlock + have));
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) block.error = errno;
        if (got <= 0) break;
        have += static_cast<std::size_t>(got);
    }
    block.bytes.resize(have);
    return block;
}

void DistantFile::keep(std::uint64_t index, Block block) {
    block.used = ++uses_;
    blocks_.insert_or_assign(index, std::move(block));
    if (blocks_.size() <= kMostBlocks) return;
    blocks_.erase(std::ranges::min_element(blocks_, {}, [](const auto& one) { return one.second.used; }));
}

// --- for whoever opens it

Result<> DistantFile::waitUntilOpened() {
    Lock lock(mutex_);
    answered_.wait(lock, [this] { return opened_.has_value(); });
    return *opened_;
}

// --- for whoever reads

// Returns null if reading ended, or is not allowed now.
DistantFile::Block* DistantFile::waitFor(std::uint64_t index, Lock& lock) {
    while (!ended_ && allowed_) {
        wanted_ = index;
        asked_.notify_one();
        if (const auto found = blocks_.find(index); found != blocks_.end()) return &found->second;
        if (!waitingSince_) waitingSince_ = Clock::now();
        answered_.wait(lock);
    }
    return nullptr;
}

Result<std::size_t> DistantFile::read(std::uint64_t offset, char* to, std::size_t bytes) {
    std::size_t have = 0;
    Lock lock(mutex_);
    while (have < bytes && offset + have < size_) {
        const std::uint64_t index = (offset + have) / kBlock;
        Block* block = waitFor(index, lock);
        waitingSince_.reset();
        if (block == nullptr) return Error{.kind = ErrorKind::kNoAnswer};
        if (const int error = block->error; error != 0) {
            blocks_.erase(index);  // The next attempt asks the disk again.
            return systemError(error);
        }
        block->used = ++uses_;
        const auto from = static_cast<std::size_t>((offset + have) % kBlock);
        if (from >= block->bytes.size()) break;  // The file has become shorter.
        const std::size_t part = std::min(bytes - have, block->bytes.size() - from);
        std::copy_n(block->bytes.data() + from, part, to + have);
        have += part;
    }
    return have;
}

void DistantFile::allowReading(bool allowed) {
    const std::lock_guard lock(mutex_);
    allowed_ = allowed;
    answered_.notify_all();
}

void DistantFile::end() {
    const std::lock_guard lock(mutex_);
    ended_ = true;
    blocks_.clear();
    asked_.notify_all();
    answered_.notify_all();
}

std::chrono::milliseconds DistantFile::waiting() const {
    using std::chrono::milliseconds;
    const std::lock_guard lock(mutex_);
    if (!waitingSince_) return milliseconds(0);
    return std::chrono::duration_cast<milliseconds>(Clock::now() - *waitingSince_);
}

class DistantOpenFile final : public OpenFile {
  public:
    explicit DistantOpenFile(std::shared_ptr<DistantFile> file) : file_(std::move(file)) {}
    DistantOpenFile(const DistantOpenFile&) = delete;
    DistantOpenFile& operator=(const DistantOpenFile&) = delete;
    ~DistantOpenFile() override { file_->end(); }
    int descriptor() const override { return -1; }
    std::uint64_t size() const override { return file_->size(); }
    Result<std::string> head(std::size_t) const override { return systemError(EBADF); }
    std::shared_ptr<FileStream> stream() const override { return file_; }

  private:
    std::shared_ptr<DistantFile> file_;
};

}  // namespace

Result<std::unique_ptr<OpenFile>> openDistant(const std::string& path) {
    auto file = std::make_shared<DistantFile>();
    const auto work = [file, path](Whereabouts&) {
        try {
            file->serve(path);
        } catch (const std::bad_alloc&) {
            file->fail();
        }
    };
    if (!Helper::start(work, true)) return systemError(EAGAIN);
    auto open = std::make_unique<DistantOpenFile>(file);  // Ends the helper if the file could not be opened.
    if (auto opened = file->waitUntilOpened(); !opened) return opened.error();
    return {std::move(open)};
}

}  // namespace hl
