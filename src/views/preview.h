// The preview: which file it shows, and with what. The pane does the showing. Thread of the logic only.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "app/log.h"
#include "app/texts.h"
#include "platform/preview_pane.h"
#include "robustness/debug.h"

namespace hl {

enum class PreviewKind : std::uint8_t { kUnknown, kText, kBrowser, kPicture, kMedia };

/// By the extension alone, without regard to case. A name without one is of the unknown kind.
PreviewKind previewKindOf(std::string_view name);
/// What the file is shown with; nothing for the unknown kind, and for a kind that nothing here can show.
std::optional<PreviewViewer> previewViewerOf(std::string_view name);
/// Texts of the pane.
PreviewTexts previewTexts(const Texts& texts);

/// What the preview asks of the main form.
class PreviewHost {
  public:
    virtual ~PreviewHost() = default;
    /// Whether the pane has its place in the window.
    virtual bool previewShows() = 0;
    /// Path of the first selected row of the list that shows; empty if none is selected, and for a list
    /// whose rows are no files.
    virtual std::string selectedFile() = 0;
};

class Preview final : private PreviewEvents {
  public:
    /// What is passed in outlives it.
    Preview(PreviewHost& host, const Texts& texts, Log& log, Diagnostics& diagnostics)
        : host_(host), texts_(texts), log_(log), diagnostics_(diagnostics) {}
    Preview(const Preview&) = delete;
    Preview& operator=(const Preview&) = delete;

    /// Null takes it away: to be called before the window goes. REQUIRES: a pane that was not taken away does
    /// not outlive the preview.
    void setPane(PreviewPane* pane);

    /// Shows the selected file, unless it is the one that is shown; with `force` it is read again. A file
    /// that cannot be opened, and one that fails later, is told in the pane and in the log; what is no
    /// regular file in the pane alone.
    void Preview_ShowFile(bool force);
    void Preview_Reset_View();

    /// Empty when nothing is shown, and for a file of the unknown kind: it is tried again.
    const std::string& shownPath() const { return shownPath_; }

  private:
    void show(const std::string& path);
    void showUnknown();
    std::string failure(const std::string& path, const std::string& error);

    std::string previewFailed(const std::string& path, const std::string& error) override;
    std::string previewNoFile(const std::string& path) override;
    void previewMissing(const std::string& what) override;
    std::string previewUnknown() override;
    std::string previewNeeds(const std::string& program, const std::string& suite) override;

    PreviewHost& host_;
    const Texts& texts_;
    Log& log_;
    Diagnostics& diagnostics_;
    PreviewPane* pane_ = nullptr;
    std::string shownPath_;
};

}  // namespace hl
