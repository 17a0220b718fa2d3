// The preview of what is printed: one page at a time, laid out and painted when it is looked at. For the
// window's thread.
#pragma once

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QSpinBox>
#include <memory>

#include "platform/qt/print/print_output.h"
#include "platform/window.h"

namespace hl {

/// Paints one page on a white sheet of the given size.
class PageView final : public QWidget {
  public:
    explicit PageView(WindowEvents& events) : events_(events) {}
    /// `pages` must outlive the view, or be replaced. `factor` is 1 for the real size of the paper.
    void show(const PrintPages& pages, int number, double factor);
    QSize sizeHint() const override { return size_; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    WindowEvents& events_;
    const PrintPages* pages_ = nullptr;
    int number_ = 0;
    double scale_ = 1;  ///< The pixels of a unit.
    QSize size_;
};

class PrintPreview final : public QDialog {
  public:
    /// The arguments must outlive it.
    PrintPreview(const PrintJob& job, IconSource icon, const DialogTexts& texts, WindowEvents& events,
                 QWidget* parent);
    ~PrintPreview() override;

    const PrintPages& pages() const { return *pages_; }
    int page() const { return page_; }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    /// The buttons pass keys on to it.
    void keyPressEvent(QKeyEvent* event) override;

  private:
    QLayout* makeUpper();
    QLayout* makeLower();
    QPushButton* button(const std::string& caption, const char* name, std::function<void()> press);
    QLabel* label(const std::string& caption, QWidget* buddy);
    /// `scrolled` is the value of the vertical scroll bar; 0 shows the head of the page.
    void goTo(int page, int scrolled = 0);
    void turn(QPageLayout::Orientation orientation);
    void showPage();
    double factor() const;
    bool pageKey(int key);
    PrintDesk desk() { return {this, texts_}; }

    const PrintJob& job_;
    IconSource icon_;
    const DialogTexts& texts_;
    WindowEvents& events_;
    std::unique_ptr<PrintPages> pages_;
    int page_ = 0;
    QComboBox *layout_ = nullptr, *view_ = nullptr;
    QPushButton *first_ = nullptr, *previous_ = nullptr, *next_ = nullptr, *last_ = nullptr;
    QSpinBox* number_ = nullptr;
    QScrollArea* area_ = nullptr;
    PageView* sheet_ = nullptr;
};

}  // namespace hl
