// A document as a column of pages. A helper draws the visible ones; few others are kept. For the window's
// thread.
#pragma once

#include <QAbstractScrollArea>
#include <QImage>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <vector>

#include "platform/preview_protocol.h"
#include "platform/qt/preview/preview_job.h"

namespace hl {

class PagesView final : public QAbstractScrollArea {
  public:
    PagesView(const PreviewContext& context, QWidget* parent);
    ~PagesView() override;

    void showFile(std::unique_ptr<OpenFile> file);
    void clear();

    std::size_t pageCount() const { return pages_.size(); }
    /// Tells whether the page is drawn as it should be.
    bool isDrawn(std::size_t page) const;
    /// The bytes of all pages that are kept.
    std::size_t keptBytes() const;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;

  private:
    struct Drawn {
        QImage image;
        int width = 0;  ///< In units of the request that it answers.
        int scale = 0;
    };

    void place();
    int pageWidth() const;
    int pageHeight(std::size_t page) const;
    std::pair<std::size_t, std::size_t> visiblePages() const;
    void paint();
    void requestNext();
    void startHelper();
    void answers();
    bool answer();
    void takePicture(const AnswerHeader& header, const char* bytes);
    void ended();
    void fail(const std::string& error);
    void evict();
    void tellPage();

    const PreviewContext& context_;
    std::unique_ptr<OpenFile> file_;
    PreviewJob* job_ = nullptr;
    std::vector<PageSize> pages_;
    std::vector<int> tops_;  ///< The place of each page, and of the end of the last one.
    std::map<std::size_t, Drawn> drawn_;
    std::set<std::size_t> failed_;
    std::optional<PreviewRequest> asked_;
    bool ready_ = false;  ///< The helper has told its pages.
    int restarts_ = 0;
};

}  // namespace hl
