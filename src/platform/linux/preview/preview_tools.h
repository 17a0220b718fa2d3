// The preview's files and helper processes on Linux. For the thread of the logic.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "platform/linux/drives/silent_disks.h"
#include "platform/linux/preview/preview_opening.h"
#include "platform/preview_tools.h"

namespace hl {

class LinuxPreviewTools final : public PreviewTools {
  public:
    /// `programFolder` has the helpers and modules, `path` the folders of commands, separated by colons.
    /// Private folders are made below `temporary`, or below /tmp if that is empty. `cache` is returned by
    /// cacheFolder(). `disks`, which must outlive this object, tells which disks may not answer; null means
    /// that all do.
    LinuxPreviewTools(std::string programFolder, std::string path, std::string temporary,
                      std::string cache = {}, SilentDisks* disks = nullptr);
    ~LinuxPreviewTools() override;

    Result<std::unique_ptr<OpenFile>> open(const std::string& path) override;
    std::unique_ptr<PreviewOpening> openBeside(const std::string& path, FilePart part) override;
    Result<std::unique_ptr<OpenFile>> again(const OpenFile& file) override;
    Result<std::unique_ptr<OpenFile>> inMemory(std::string_view content) override;
    std::string helper(const std::string& name) override;
    std::string command(const std::string& name) override;
    Result<std::unique_ptr<PrivateFolder>> makeFolder() override;
    Result<std::unique_ptr<HelperProcess>> start(const ProcessOrder& order) override;
    std::string cacheFolder() const override { return cache_; }
    Result<void*> moduleFunction(const std::string& module, const char* function) override;

    /// Returns how many killed processes have not ended yet: one that waits for a dead disk may take long.
    /// Each start looks at them again.
    std::size_t ending() const { return ending_.size(); }

  private:
    void reap();

    std::string programFolder_;
    std::string path_;
    std::string temporary_;
    std::string cache_;
    SilentDisks* disks_;
    PreviewOpenings openings_;
    std::vector<pid_t> ending_;
};

}  // namespace hl
