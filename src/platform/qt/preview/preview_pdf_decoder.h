// Pages of a PDF as pictures, for the helper. Needs Qt's PDF library.
#pragma once

#include <QFile>
#include <QPdfDocument>

#include "platform/qt/preview/preview_decoder.h"

namespace hl {

class PdfDecoder final : public PreviewDecoder {
  public:
    /// `descriptor` is open for reading and stays the caller's.
    explicit PdfDecoder(int descriptor);
    std::vector<PageSize> pages(std::string& error) override;
    DecodedPicture decode(const PreviewRequest& request) override;

  private:
    QFile file_;
    QPdfDocument document_;
};

/// As answerForPictures. `beforeEach` runs also before the document is opened, which reads much of it.
int answerForPdf(int argc, char** argv, int descriptor, const std::function<void()>& beforeEach);

}  // namespace hl
