// The frame of every command that changes files: the window is locked but repaints, the status bar tells what
// is being done, and Stop works. For the thread of the logic only.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "platform/file_operations.h"
#include "platform/window.h"
#include "scan/scan_context.h"

namespace hl {

class FreedSurveys;
class UndoSteps;

/// What a command asks of the rest of the main form.
class FileOpsHost {
  public:
    virtual ~FileOpsHost() = default;
    virtual void setFirstPanel(const std::string& text) = 0;
    /// Sets the first panel like setFirstPanel; it offers to take back the last step.
    virtual void offerTakeBack(const std::string& text) = 0;
    /// Makes the preview show the file that is selected now.
    virtual void Preview_ShowFile() = 0;
    /// Takes the rows for whose path `went` returns true out of all lists, and shows the report's new sizes.
    virtual void filesWent(const std::function<bool(const std::string& path)>& went) = 0;
    /// A file has another name: rows of lists follow.
    virtual void fileRenamed(const std::string& from, const std::string& to) = 0;
    /// Another folder became the current one. `row` is kNoRow and `folder` empty if there is none.
    virtual void folderShown(Row row, const std::string& folder) = 0;
    /// Tells that the window was closed while something waited for an answer: nothing may begin any more.
    virtual bool closed() = 0;
};

/// What the commands work with; everything outlives them.
struct FileOps {
    ScanContext& scan;
    FileOperations& operations;
    const Window& window;
    FileOpsHost& host;
    UndoSteps& undo;
    FreedSurveys* surveys = nullptr;  ///< Null if nobody tells what a delete gives back.
};

/// Lives as long as a command works. Meanwhile nothing else may begin, so rows stay where they are.
class FileRun final : public OperationWatch {
  public:
    /// `ops` must outlive it. `status` is the text for the status bar; "%1" in it stands for the path that is
    /// being worked on.
    FileRun(const FileOps& ops, std::string status);
    ~FileRun() override;
    FileRun(const FileRun&) = delete;
    FileRun& operator=(const FileRun&) = delete;

    /// Tells whether the user asked for an end, by Stop, Escape or closing the window.
    bool stopped();
    bool stillAt(const std::string& path, bool silent) override;

    bool unanswered = false;  ///< A disk did not answer: what became of the last path is unknown.

  private:
    void letMessagesRun();

    const FileOps& ops_;
    std::string status_;
    std::uint64_t lastPump_ = 0;
    std::uint64_t lastStatus_ = 0;
    bool stopped_ = false;
};

/// Returns the message for a path whose disk stopped answering while it was worked on.
std::string noAnswerText(const FileOps& ops, const std::string& path);

/// Returns the message for a path whose source is another folder than the one that was read.
std::string otherFolderText(const FileOps& ops, const std::string& path);

/// Tells where a path lies: below the source of the report that holds it. Nothing on the way may be a link
/// that the scan has not followed. A path in no source is trusted up to its last name.
FilePlace placeOf(const ScanContext& scan, const std::string& path);

}  // namespace hl
