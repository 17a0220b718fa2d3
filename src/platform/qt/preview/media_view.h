// The border between the window and its module that plays sound and film, which is loaded at the first such
// file.
#pragma once

#include <QWidget>
#include <functional>
#include <memory>
#include <string>

#include "platform/fault_signals.h"
#include "platform/preview_pane.h"
#include "platform/preview_tools.h"
#include "platform/window.h"

namespace hl {

constexpr const char* kMediaModuleName = "harborlantern-media.so";
constexpr const char* kMediaModuleFunction = "harborlanternMedia";

/// A player with its controls. Thread of the window.
class MediaView : public QWidget {
  public:
    using QWidget::QWidget;
    /// Why nothing can be played at all; empty if it can.
    virtual std::string unavailable() const = 0;
    /// The file stays open until the player has let go of it, which may be after close().
    virtual void play(std::unique_ptr<OpenFile> file) = 0;
    /// What it would still tell of the file is not told.
    virtual void close() = 0;

    /// What was to be played cannot be.
    std::function<void(const std::string& error)> failed;
};

struct MediaStart {
    const PreviewTexts& texts;
    WindowEvents& events;
    QWidget* parent;
    std::string cache;  ///< PreviewTools::cacheFolder().
    GuardedRoutine::Counter guardedDepth = GuardedRoutine::counter();
};
using MediaModuleFunction = MediaView* (*)(const MediaStart&);

}  // namespace hl
