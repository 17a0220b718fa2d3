// The programs of a freedesktop desktop, through GIO, and its file manager, through D-Bus. For the thread of
// the logic.
#pragma once

#include <memory>

#include "platform/desktop.h"
#include "platform/patience.h"

namespace hl {

class LauncherEntry;

class DesktopPrograms final : public Desktop {
  public:
    /// Must be made before there are threads that read the environment, which is changed for a moment.
    /// `patience` (null if all disks answer) must outlive it.
    explicit DesktopPrograms(Patience* patience = nullptr);
    ~DesktopPrograms() override;
    OpenResult open(const std::string& path) override;
    std::vector<DesktopProgram> programsFor(const std::vector<std::string>& paths, std::size_t most) override;
    std::vector<DesktopProgram> allPrograms() override;
    bool openWith(const std::string& id, const std::vector<std::string>& paths) override;
    bool runsWhenOpened(const std::string& path) override;
    bool showInFolder(const std::vector<std::string>& paths) override;
    bool showProperties(const std::vector<std::string>& paths) override;
    std::string sha256(std::string_view bytes) override;
    bool openTerminal(const std::string& folder) override;
    std::optional<FileFacts> facts(const std::string& path) override;
    void showProgress(std::optional<int> percent) override;

  private:
    Patience* patience_;
    std::unique_ptr<LauncherEntry> entry_;
};

}  // namespace hl
