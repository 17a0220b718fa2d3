// The preview's pane in the window: one viewer at a time, each made for the first file that needs it. For the
// window's thread.
#pragma once

#include <QTimer>
#include <QWidget>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/preview_pane.h"
#include "platform/qt/preview/preview_converter.h"
#include "platform/qt/preview/preview_job.h"
#include "platform/qt/preview/preview_wait.h"

class QStackedLayout;

namespace hl {

class MediaView;
class PagesView;
class PictureView;
class TextView;
class WebView;

class PreviewArea final : public QWidget, public PreviewPane {
  public:
    /// `parts` and `events` must outlive it.
    PreviewArea(const PreviewParts& parts, WindowEvents& events, QWidget* parent);
    ~PreviewArea() override;

    // PreviewPane
    void setEvents(PreviewEvents* events) override { events_ = events; }
    Result<> showFile(PreviewViewer viewer, const std::string& path) override;
    void showNotice(const std::string& text) override;
    void clear() override;

    /// Returns the visible viewer; null for none.
    QWidget* viewer() const;
    /// Adds what the Tab key stops at, in its order.
    void addTabStops(std::vector<QWidget*>& stops) const;

  private:
    /// The first part of the file; `cut` tells that the file has more.
    struct Head {
        std::string bytes;
        bool cut = false;
    };

    void waitFor(std::unique_ptr<PreviewOpening> opening, PreviewViewer viewer);
    void opened(PreviewViewer viewer, Result<std::unique_ptr<OpenFile>> file);
    void showOpened(PreviewViewer viewer);
    void showText();
    void showMarkup(const Head& page);
    void showRichText();
    void showOffice(const std::string& format);
    void showPcx();
    void showPicture(std::unique_ptr<OpenFile> file, bool trimmed = false);
    void showPages(std::unique_ptr<OpenFile> file);
    void playMedia();
    void startMedia();
    /// Returns null if nothing can be played; then mediaMissing_ has the reason.
    MediaView* media();
    void stopMedia();
    void fail(const Error& error);
    void reportMissing(const std::string& what);
    void missing(const std::string& what);
    void needs(const ConverterProgram& converter);
    void showUnknown();
    std::string noteIf(bool cut) const;
    std::optional<Head> head(std::size_t limit);
    template <class Viewer>
    Viewer& bring(Viewer*& viewer, const char* name);

    const PreviewParts& parts_;
    WindowEvents& windowEvents_;
    PreviewEvents* events_ = nullptr;
    std::unique_ptr<PreviewContext> context_;  ///< Null without tools.
    std::unique_ptr<PreviewConverter> converter_;
    QStackedLayout* stack_;
    QWidget* nothing_;
    TextView* text_ = nullptr;
    WebView* web_ = nullptr;
    PictureView* picture_ = nullptr;
    PagesView* pages_ = nullptr;
    MediaView* media_ = nullptr;
    std::string mediaMissing_;
    QTimer mediaRest_;  ///< Runs while a film waits for its start.
    std::string path_;
    PreviewWait wait_;
    std::unique_ptr<OpenFile> file_;
    std::set<std::string> reported_;  ///< What is missing is reported once.
};

}  // namespace hl
