// The preview's files and helper processes on Linux.
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
    /// `programFolder` has the helpers and modules, `path` the folders of commands with a colon between them.
    /// Private folders are made below `temporary`; with an empty one, below /tmp. `cache`: cacheFolder().
    /// `disks`, which outlives this, tells which disks may not answer; with null all are trusted to.
    LinuxPreviewTools(std::string programFolder, std::string path, std::string temporary,
                      std::string cache = {}, SilentDisks* disks = nullptr);
    ~LinuxPreviewTools() override;

    std::unique_ptr<OpenFile> open(const std::string& path, std::string& error) override;
    std::unique_ptr<PreviewOpening> openBeside(const std::string& path, bool beginning) override;
    std::unique_ptr<OpenFile> again(const OpenFile& file, std::string& error) override;
    std::unique_ptr<OpenFile> inMemory(std::string_view content, std::string& error) override;
    std::string errorText(int code) override;
    std::string helper(const std::string& name) override;
    std::string command(const std::string& name) override;
    std::unique_ptr<PrivateFolder> makeFolder(std::string& error) override;
    std::unique_ptr<HelperProcess> start(const ProcessOrder& order, std::string& error) override;
    std::string cacheFolder() const override { return cache_; }
    void* moduleFunction(const std::string& module, const char* function, std::string& reason) override;

    /// Processes that were killed and have not ended yet: one that waits for a dead disk may take long. They
    /// are looked at with each start.
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
