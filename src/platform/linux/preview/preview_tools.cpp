#include "platform/linux/preview/preview_tools.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>

#include "platform/linux/preview/helper_process.h"
#include "platform/linux/process/descriptor.h"
#include "platform/linux/process/fault_signals.h"
#include "platform/linux/process/system_error.h"

namespace hl {

namespace {

bool isProgram(const std::string& path) {
    struct stat facts {};
    return ::stat(path.c_str(), &facts) == 0 && S_ISREG(facts.st_mode) && ::access(path.c_str(), X_OK) == 0;
}

class LinuxPrivateFolder final : public PrivateFolder {
  public:
    explicit LinuxPrivateFolder(std::string path) : path_(std::move(path)) {}
    ~LinuxPrivateFolder() override {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    const std::string& path() const override { return path_; }
    Result<> makeFolder(const std::string& name) override {
        return systemResult(::mkdir((path_ + "/" + name).c_str(), 0700) == 0 ? 0 : errno);
    }
    Result<> write(const std::string& name, std::string_view content) override {
        const Descriptor file = make(name);
        return systemResult(file.isOpen() ? writeAll(file.number(), content) : errno);
    }
    Result<> copy(const OpenFile& from, const std::string& name, std::uint64_t limit) override {
        if (from.size() > limit) return systemError(EFBIG);
        const Descriptor file = make(name);
        if (!file.isOpen()) return systemError(errno);
        std::uint64_t left = from.size();
        off_t at = 0;
        while (left > 0) {
            const ssize_t moved = ::copy_file_range(from.descriptor(), &at, file.number(), nullptr,
                                                    static_cast<std::size_t>(left), 0);
            if (moved <= 0) break;
            left -= static_cast<std::uint64_t>(moved);
        }
        return systemResult(left == 0 ? 0 : copyByHand(from, file, at, left));
    }

  private:
    Descriptor make(const std::string& name) const {
        return openAt(AT_FDCWD, path_ + "/" + name, O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC,
                      0600);
    }
    static int copyByHand(const OpenFile& from, const Descriptor& to, off_t at, std::uint64_t left) {
        std::string buffer(1U << 20, '\0');
        while (left > 0) {
            const ssize_t got =
                ::pread(from.descriptor(), buffer.data(),
                        static_cast<std::size_t>(std::min<std::uint64_t>(buffer.size(), left)), at);
            if (got < 0 && errno == EINTR) continue;
            if (got <= 0) return got < 0 ? errno : EIO;
            const auto read = std::string_view(buffer).substr(0, static_cast<std::size_t>(got));
            if (const int error = writeAll(to.number(), read); error != 0) return error;
            at += got;
            left -= static_cast<std::uint64_t>(got);
        }
        return 0;
    }

    std::string path_;
};

}  // namespace

LinuxPreviewTools::LinuxPreviewTools(std::string programFolder, std::string path, std::string temporary,
                                     std::string cache, SilentDisks* disks)
    : programFolder_(std::move(programFolder)),
      path_(std::move(path)),
      temporary_(std::move(temporary)),
      cache_(std::move(cache)),
      disks_(disks) {}

LinuxPreviewTools::~LinuxPreviewTools() {
    reap();
}

Result<std::unique_ptr<OpenFile>> LinuxPreviewTools::open(const std::string& path) {
    return openForPreview(path);
}

std::unique_ptr<PreviewOpening> LinuxPreviewTools::openBeside(const std::string& path, FilePart part) {
    const std::uint64_t disk = disks_ != nullptr ? disks_->of(path) : 0;
    return disk != 0 ? openings_.begin(disk, path, part) : nullptr;
}

Result<std::unique_ptr<OpenFile>> LinuxPreviewTools::again(const OpenFile& file) {
    return open("/proc/self/fd/" + std::to_string(file.descriptor()));
}

Result<std::unique_ptr<OpenFile>> LinuxPreviewTools::inMemory(std::string_view content) {
    Descriptor file(::memfd_create("preview", MFD_CLOEXEC));
    int code = file.isOpen() ? writeAll(file.number(), content) : errno;
    if (code == 0 && ::lseek(file.number(), 0, SEEK_SET) != 0) code = errno;
    if (code != 0) return systemError(code);
    return makeOpenFile(std::move(file), content.size());
}

std::string LinuxPreviewTools::helper(const std::string& name) {
    const std::string path = programFolder_ + "/" + name;
    return isProgram(path) ? path : std::string();
}

std::string LinuxPreviewTools::command(const std::string& name) {
    std::string_view rest = path_;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find(':'), rest.size());
        const std::string_view folder = rest.substr(0, end);
        rest.remove_prefix(std::min(end + 1, rest.size()));
        // A relative folder would find what is beside the file.
        if (!folder.starts_with('/')) continue;
        if (std::string path = std::string(folder) + "/" + name; isProgram(path)) return path;
    }
    return {};
}

Result<std::unique_ptr<PrivateFolder>> LinuxPreviewTools::makeFolder() {
    std::string path = (temporary_.empty() ? "/tmp" : temporary_) + "/harborlantern-preview.XXXXXX";
    if (::mkdtemp(path.data()) == nullptr) return systemError(errno);
    return std::make_unique<LinuxPrivateFolder>(path);
}

Result<std::unique_ptr<HelperProcess>> LinuxPreviewTools::start(const ProcessOrder& order) {
    reap();
    auto process = LinuxHelperProcess::start(order, ending_);
    if (!process) return systemError(errno);
    return process;
}

void LinuxPreviewTools::reap() {
    std::erase_if(ending_, [](pid_t process) { return ::waitpid(process, nullptr, WNOHANG) != 0; });
}

Result<void*> LinuxPreviewTools::moduleFunction(const std::string& module, const char* function) {
    void* loaded = ::dlopen((programFolder_ + "/" + module).c_str(), RTLD_NOW | RTLD_LOCAL);
    void* found = loaded != nullptr ? ::dlsym(loaded, function) : nullptr;
    if (found != nullptr) {
        LinuxFaultSignals().addOwnModule(found);
        return found;
    }
    const char* reason = ::dlerror();
    return Error{.text = reason != nullptr ? reason : module, .name = module};
}

}  // namespace hl
