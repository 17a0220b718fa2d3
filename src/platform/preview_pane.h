// The pane that shows one file, as the logic sees it. On the thread of the logic.
#pragma once

#include <cstdint>
#include <string>

namespace hl {

/// What a file is shown with.
enum class PreviewViewer : std::uint8_t {
    kText,
    kRichText,
    kWebPage,
    kPages,   ///< A document that has pages of its own.
    kOffice,  ///< One that a converter makes pages of, if there is one.
    kPicture,
    kPcx,       ///< Pictures that need a converter each: one of pixels,
    kMetafile,  ///< and one of lines and texts.
    kMedia,
};

/// Texts of the pane, in the user's language.
struct PreviewTexts {
    std::string name;                          ///< Of the pane, for assistive tools.
    std::string cut;                           ///< Stands behind a text that goes on in the file.
    std::string converting;                    ///< Stands in the pane until a document is converted.
    std::string pageFailed;                    ///< Stands on a page that cannot be drawn.
    std::string waiting;                       ///< Stands in the pane while the disk does not answer.
    std::string page;                          ///< "Page %1 of %2", for assistive tools.
    std::string play, stop, position, volume;  ///< Names of the player's controls.
};

class PreviewTools;

/// What a window needs for the pane. Without tools no file can be shown.
struct PreviewParts {
    PreviewTools* tools = nullptr;  ///< Outlives the window.
    PreviewTexts texts;
};

/// What the pane tells, also long after it was asked to show the file.
class PreviewEvents {
  public:
    virtual ~PreviewEvents() = default;
    /// The text that says that the file `path` cannot be shown. Called when the file that failed is the one
    /// that is still wanted; the pane shows the text.
    virtual std::string previewFailed(const std::string& path, const std::string& error) = 0;
    /// The same for what is no regular file, and was not touched.
    virtual std::string previewNoFile(const std::string& path) = 0;
    /// A viewer is not there: a line for the log. The pane shows `previewUnknown` instead, where it has
    /// nothing else to show the file with.
    virtual void previewMissing(const std::string& what) = 0;
    virtual std::string previewUnknown() = 0;
    /// The text that says which program of the system would show the file, and what it is a part of.
    virtual std::string previewNeeds(const std::string& program, const std::string& suite) = 0;
};

/// Shows at most one file; what was shown before goes, and what is still at work for it is ended. Nothing
/// heavy exists before the first file that needs it.
class PreviewPane {
  public:
    virtual ~PreviewPane() = default;
    /// `events` outlives the pane, or is taken away with null.
    virtual void setEvents(PreviewEvents* events) = 0;
    /// `path` is bytes and is not decoded. False if the file cannot be opened, with the reason in `error`,
    /// or is no regular file, with an empty one; what goes wrong later is told to the events.
    virtual bool showFile(PreviewViewer viewer, const std::string& path, std::string& error) = 0;
    /// A text of the program's own.
    virtual void showNotice(const std::string& text) = 0;
    virtual void clear() = 0;
};

}  // namespace hl
