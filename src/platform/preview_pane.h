// The pane that shows one file, as the logic sees it. For the thread of the logic.
#pragma once

#include <cstdint>
#include <string>

#include "base/result.h"

namespace hl {

/// What shows a file.
enum class PreviewViewer : std::uint8_t {
    kText,
    kRichText,
    kWebPage,
    kPages,   ///< A document with pages of its own.
    kOffice,  ///< A document that a converter, if there is one, turns into pages.
    kPicture,
    kPcx,       ///< A picture of pixels that needs a converter.
    kMetafile,  ///< A picture of lines and texts that needs a converter.
    kMedia,
};

/// The texts of the pane, in the user's language.
struct PreviewTexts {
    std::string name;                          ///< The pane's name for assistive tools.
    std::string cut;                           ///< Follows a text of which the file has more.
    std::string converting;                    ///< Is shown until a document is converted.
    std::string pageFailed;                    ///< Is shown on a page that cannot be drawn.
    std::string waiting;                       ///< Is shown while the disk does not answer.
    std::string silent;                        ///< Says that playing ended because the disk does not answer.
    std::string page;                          ///< "Page %1 of %2", for assistive tools.
    std::string play, stop, position, volume;  ///< The names of the player's controls.
};

class PreviewTools;

/// What a window needs for the pane. Without `tools` no file can be shown.
struct PreviewParts {
    PreviewTools* tools = nullptr;  ///< Must outlive the window.
    PreviewTexts texts;
};

/// What the pane reports, even long after it was asked to show the file.
class PreviewEvents {
  public:
    virtual ~PreviewEvents() = default;
    /// Returns the text that says that the file `path` cannot be shown; the pane shows it. Called only if the
    /// failed file is still the wanted one.
    virtual std::string previewFailed(const std::string& path, const Error& error) = 0;
    /// Returns the text for something that is no regular file and was not touched; the pane shows it.
    virtual std::string previewNoFile(const std::string& path) = 0;
    /// A viewer is missing; the log gets a line. If nothing else shows the file, the pane shows
    /// `previewUnknown`.
    virtual void previewMissing(const std::string& what) = 0;
    virtual std::string previewUnknown() = 0;
    /// Returns the text that tells which program of the system would show the file, and which suite has it.
    virtual std::string previewNeeds(const std::string& program, const std::string& suite) = 0;
};

/// Shows at most one file; a new one replaces it and ends what is still being done for it. Nothing expensive
/// is created before the first file that needs it.
class PreviewPane {
  public:
    virtual ~PreviewPane() = default;
    /// `events` must outlive the pane, or be detached with null.
    virtual void setEvents(PreviewEvents* events) = 0;
    /// Shows a file; `path` is bytes and is not decoded. It is an error if it cannot be opened, kUnsuited if
    /// it is no regular file. Later failures are told to the events.
    virtual Result<> showFile(PreviewViewer viewer, const std::string& path) = 0;
    /// Shows a text of the program's own.
    virtual void showNotice(const std::string& text) = 0;
    virtual void clear() = 0;
};

}  // namespace hl
