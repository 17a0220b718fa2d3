// The preview decides which file to show, and with what. The pane shows it. For the thread of the logic only.
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

/// Returns the kind by the extension alone, without regard to case. A name without an extension is of the
/// unknown kind.
PreviewKind previewKindOf(std::string_view name);
/// Returns what shows the file; nothing for the unknown kind, and for a kind that nothing here can show.
std::optional<PreviewViewer> previewViewerOf(std::string_view name);
/// Returns the texts of the pane.
PreviewTexts previewTexts(const Texts& texts);

/// What the preview asks of the main form.
class PreviewHost {
  public:
    virtual ~PreviewHost() = default;
    /// Tells whether the pane is visible in the window.
    virtual bool previewShows() = 0;
    /// Returns the path of the first selected row of the visible list. It is empty if none is selected, and
    /// for a list whose rows are no files.
    virtual std::string selectedFile() = 0;
};

class Preview final : private PreviewEvents {
  public:
    /// The arguments must outlive it.
    Preview(PreviewHost& host, const Texts& texts, Log& log, Diagnostics& diagnostics)
        : host_(host), texts_(texts), log_(log), diagnostics_(diagnostics) {}
    Preview(const Preview&) = delete;
    Preview& operator=(const Preview&) = delete;

    /// Sets the pane; null detaches it, which must be done before the window is destroyed. REQUIRES: the
    /// preview outlives a pane that is not detached.
    void setPane(PreviewPane* pane);

    /// Shows the selected file unless it is shown already; `force` reads it again. If it cannot be opened, or
    /// fails later, the pane and the log say so; if it is no regular file, only the pane does.
    void Preview_ShowFile(bool force);
    void Preview_Reset_View();

    /// Empty if nothing is shown, and for a file of the unknown kind, which is therefore tried again.
    const std::string& shownPath() const { return shownPath_; }

  private:
    void show(const std::string& path);
    void showUnknown();
    std::string failure(const std::string& path, const Error& error);

    std::string previewFailed(const std::string& path, const Error& error) override;
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
