// What every command that changes files has around it: a locked window that goes on painting, the status bar
// telling what it is at, and Stop. Thread of the logic only.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "platform/file_operations.h"
#include "platform/window.h"
#include "scan/scan_context.h"

namespace hl {

/// What a command asks of the rest of the main form.
class FileOpsHost {
  public:
    virtual ~FileOpsHost() = default;
    virtual void setFirstPanel(const std::string& text) = 0;
    /// The preview shows the file that is selected now.
    virtual void Preview_ShowFile() = 0;
    /// Rows whose path `went` go from all lists.
    virtual void removeFromLists(const std::function<bool(const std::string& path)>& went) = 0;
    /// The window was closed while something waited for an answer: nothing begins any more.
    virtual bool closed() = 0;
};

/// All of it outlives the commands.
struct FileOps {
    ScanContext& scan;
    FileOperations& operations;
    Window& window;
    FileOpsHost& host;
};

/// Lives as long as a command works. Nothing else may begin meanwhile, so rows stay where they are.
class FileRun final : public OperationWatch {
  public:
    /// `status`: of the status bar, with "%1" for the path that is worked at.
    FileRun(const FileOps& ops, std::string status);
    ~FileRun() override;
    FileRun(const FileRun&) = delete;
    FileRun& operator=(const FileRun&) = delete;

    /// Whether the user has asked for an end, by Stop, Escape or closing the window.
    bool stopped();
    bool stillAt(const std::string& path, bool silent) override;

    bool unanswered = false;  ///< A disk did not answer: what became of the last path is not known.

  private:
    void letMessagesRun();

    const FileOps& ops_;
    std::string status_;
    std::uint64_t lastPump_ = 0;
    std::uint64_t lastStatus_ = 0;
    bool stopped_ = false;
};

/// Of a path that was worked at when its disk did not answer any more.
std::string noAnswerText(const FileOps& ops, const std::string& path);

/// Of a path whose source is another folder than the one that was read.
std::string otherFolderText(const FileOps& ops, const std::string& path);

/// Where a path lies: below the source of the report that holds it, where nothing on the way is a link that
/// the scan has not followed. A path of no source is trusted up to its last name.
FilePlace placeOf(const ScanContext& scan, const std::string& path);

}  // namespace hl
