// The pages of what is printed: counts them and paints any one of them, in the same way for a screen, a PDF
// and a printer. For the thread of the logic.
//
// Nothing is drawn ahead, and no page is kept: a million rows cost only their list. Lengths are in units, of
// which an inch has kUnitsPerInch; the painter is scaled to them.
#pragma once

#include <QFont>
#include <QPageLayout>
#include <QPainter>
#include <memory>

#include "platform/print.h"
#include "platform/qt/grid/row_painter.h"

namespace hl {

constexpr int kUnitsPerInch = 1440;

/// Returns the palette of paper: black on white, whatever the desktop's is.
QPalette paperPalette();
/// Returns a zoom in percent, limited to what a page can show: 10 to 400.
int usableZoom(int zoom);
/// Returns a font of that many points at a zoom in percent, with its size in units.
QFont paperFont(const GridFont& font, int zoom);

class PrintPages {
  public:
    /// `job` must outlive the pages.
    explicit PrintPages(const PrintJob& job) : job_(job) {}
    virtual ~PrintPages() = default;
    PrintPages(const PrintPages&) = delete;
    PrintPages& operator=(const PrintPages&) = delete;

    /// Must be called before anything else, and whenever the page changes.
    void setPage(const QPageLayout& page);
    const QPageLayout& page() const { return page_; }
    /// At least 1.
    int count() const;
    /// REQUIRES: 0 <= number < count().
    void paint(QPainter& painter, int number) const;
    /// Returns how many pages are side by side, if one page has no room for all columns.
    virtual int across() const { return 1; }

    const PrintJob& job() const { return job_; }

  protected:
    /// The place of the content. Its size is never less than one unit.
    const QRect& room() const { return room_; }
    virtual void pageChanged() = 0;
    virtual std::size_t down() const = 0;  ///< The number of pages below one another; may be 0.
    virtual void paintContent(QPainter& painter, std::size_t down, std::size_t across) const = 0;

  private:
    void paintFrame(QPainter& painter, int number) const;

    const PrintJob& job_;
    QPageLayout page_;
    QRect full_, room_;
};

/// Makes the pages of a grid's rows. The title row is on each page; columns that do not fit are on further
/// pages to the right, which begin with the first column again. The rows are those at the time of the call.
std::unique_ptr<PrintPages> gridPages(const PrintJob& job, IconSource icon);
/// Makes the pages of a text's lines, which are broken if they are too long.
std::unique_ptr<PrintPages> textPages(const PrintJob& job);
/// Makes the page of a drawing, which is as large as its place allows.
std::unique_ptr<PrintPages> picturePages(const PrintJob& job);
/// Tells whether a drawing is wider than high.
bool isWide(const PrintJob& job);
/// Makes the pages of a job, of whichever kind, on this page.
std::unique_ptr<PrintPages> layOut(const PrintJob& job, const IconSource& icon, const QPageLayout& page);
/// Makes the pages on the paper of the user's country: upright, or across if the columns then need fewer
/// pages side by side, or a drawing is wide.
std::unique_ptr<PrintPages> layOut(const PrintJob& job, const IconSource& icon);

}  // namespace hl
