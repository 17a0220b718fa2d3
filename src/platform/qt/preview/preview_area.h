// The preview's pane in the window: one viewer at a time, each made for the first file that needs it.
#pragma once

#include <QSocketNotifier>
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

class QStackedLayout;

namespace hl {

class MediaView;
class PagesView;
class PictureView;
class TextView;
class WebView;

class PreviewArea final : public QWidget, public PreviewPane {
  public:
    /// `parts` and `events` outlive it.
    PreviewArea(const PreviewParts& parts, WindowEvents& events, QWidget* parent);
    ~PreviewArea() override;

    // PreviewPane
    void setEvents(PreviewEvents* events) override { events_ = events; }
    bool showFile(PreviewViewer viewer, const std::string& path, std::string& error) override;
    void showNotice(const std::string& text) override;
    void clear() override;

    /// The viewer that shows; null for none.
    QWidget* viewer() const;
    /// What the Tab key stops at, in its order.
    void addTabStops(std::vector<QWidget*>& stops) const;

  private:
    /// The first part of the file; `cut`: it goes on.
    struct Head {
        std::string bytes;
        bool cut = false;
    };

    void waitForOpening(PreviewViewer viewer);
    void opened(PreviewViewer viewer);
    void openingIsLate();
    void dropOpening();
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
    /// Null if nothing can be played, with the reason in mediaMissing_.
    MediaView* media();
    void stopMedia();
    void fail(const std::string& error);
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
    std::unique_ptr<PreviewContext> context_;  ///< None without tools.
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
    std::unique_ptr<PreviewOpening> opening_;  ///< Of a disk that may not answer.
    QSocketNotifier* openingOver_ = nullptr;
    QTimer openingLate_;
    bool openingNoted_ = false;  ///< The user sees that it is waited for.
    std::unique_ptr<OpenFile> file_;
    std::set<std::string> reported_;  ///< What is missing is told once.
};

}  // namespace hl
