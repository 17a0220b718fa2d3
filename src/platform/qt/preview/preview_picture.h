// Shows one picture, reduced to fit; a helper decodes it. For the window's thread.
#pragma once

#include <QImage>
#include <QTimer>
#include <QWidget>
#include <memory>

#include "platform/picture_size.h"
#include "platform/qt/preview/preview_job.h"

namespace hl {

class PictureView final : public QWidget {
  public:
    PictureView(const PreviewContext& context, QWidget* parent);
    ~PictureView() override;

    /// `trimmed` leaves out a border of a single colour.
    void showFile(std::unique_ptr<OpenFile> file, bool trimmed);
    void clear();
    /// Null until it is decoded.
    const QImage& image() const { return image_; }

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    void request();
    void answer();
    void fail(const std::string& error);

    const PreviewContext& context_;
    std::unique_ptr<OpenFile> file_;
    bool trimmed_ = false;
    PreviewJob* job_ = nullptr;
    QTimer settle_;  ///< Runs while the size still changes.
    QImage image_;
    QSize drawn_;  ///< In units of the widget.
    QSize asked_;  ///< The room that the picture was decoded for.
};

}  // namespace hl
