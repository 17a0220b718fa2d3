// The interface between the window and its module that plays sound and film, which is loaded at the first
// such file.
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

/// A player with its controls. For the window's thread.
class MediaView : public QWidget {
  public:
    using QWidget::QWidget;
    /// Tells why nothing can be played at all; empty if that is possible.
    virtual std::string unavailable() const = 0;
    /// Plays a file, which stays open until the player has released it, perhaps only after close().
    virtual void play(std::unique_ptr<OpenFile> file) = 0;
    /// Forgets the file; what the player still reports about it is dropped.
    virtual void close() = 0;

    /// Called when the file cannot be played.
    std::function<void(const std::string& error)> failed;
};

struct MediaStart {
    const PreviewTexts& texts;
    WindowEvents& events;
    QWidget* parent;
    std::string cache;  ///< The value of PreviewTools::cacheFolder().
    GuardedRoutine::Counter guardedDepth = GuardedRoutine::counter();
};
using MediaModuleFunction = MediaView* (*)(const MediaStart&);

}  // namespace hl
