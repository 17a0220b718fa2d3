// The pages of what is printed: how many there are, and the painting of any one of them, for a screen, a PDF
// and a printer alike.
//
// Nothing is drawn ahead, and no page is kept: a million rows cost their list alone. Lengths are units, of
// which an inch has kUnitsPerInch; the painter is scaled to them. Thread of the logic.
#pragma once

#include <QFont>
#include <QPageLayout>
#include <QPainter>
#include <memory>

#include "platform/print.h"
#include "platform/qt/grid/row_painter.h"

namespace hl {

constexpr int kUnitsPerInch = 1440;

/// The palette of paper: black on white, whatever the desktop's is.
QPalette paperPalette();
/// A zoom in percent, held within what a page can show: 10 to 400.
int usableZoom(int zoom);
/// A font of so many points at a zoom in percent, its size in units.
QFont paperFont(const GridFont& font, int zoom);

class PrintPages {
  public:
    /// `job` outlives the pages.
    explicit PrintPages(const PrintJob& job) : job_(job) {}
    virtual ~PrintPages() = default;
    PrintPages(const PrintPages&) = delete;
    PrintPages& operator=(const PrintPages&) = delete;

    /// To be called before all else, and whenever the page becomes another one.
    void setPage(const QPageLayout& page);
    const QPageLayout& page() const { return page_; }
    /// At least 1.
    int count() const;
    /// REQUIRES: 0 <= number < count().
    void paint(QPainter& painter, int number) const;
    /// How many pages stand side by side where not all columns have room on one.
    virtual int across() const { return 1; }

    const PrintJob& job() const { return job_; }

  protected:
    /// Where the content stands. Its size is never less than one unit.
    const QRect& room() const { return room_; }
    virtual void pageChanged() = 0;
    virtual std::size_t down() const = 0;  ///< Pages below one another; may be 0.
    virtual void paintContent(QPainter& painter, std::size_t down, std::size_t across) const = 0;

  private:
    void paintFrame(QPainter& painter, int number) const;

    const PrintJob& job_;
    QPageLayout page_;
    QRect full_, room_;
};

/// The rows of a grid: title row on each page, columns that have no room on further pages to the right, which
/// begin with the first column again. Rows are as they were when this was made.
std::unique_ptr<PrintPages> gridPages(const PrintJob& job, IconSource icon);
/// The lines of a text, broken where they are too long.
std::unique_ptr<PrintPages> textPages(const PrintJob& job);
/// Whichever the job is, on this page.
std::unique_ptr<PrintPages> layOut(const PrintJob& job, const IconSource& icon, const QPageLayout& page);
/// On the paper of the user's country: upright, or across if the columns then need fewer pages side by side.
std::unique_ptr<PrintPages> layOut(const PrintJob& job, const IconSource& icon);

}  // namespace hl
