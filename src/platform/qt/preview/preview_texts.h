// The preview's views of texts: plain ones, and pages of the web. Both show only the first part of a long
// text. For the window's thread.
#pragma once

#include <QPlainTextEdit>
#include <QTextBrowser>
#include <string>
#include <string_view>

namespace hl {

/// The bytes of a file that are shown: of a text, and of markup, which has to be laid out as a whole.
constexpr std::size_t kMostText = 1U << 20, kMostMarkup = 512U << 10;

/// Shows text that can be selected and copied, but not changed; also the program's own notices.
class TextView final : public QPlainTextEdit {
  public:
    explicit TextView(QWidget* parent);
    /// Shows as many lines of `bytes` as are quickly shown; the encoding is guessed. `note` follows a text
    /// that is `cut` or has more lines.
    void showBytes(std::string_view bytes, bool cut, const std::string& note);
    void showNotice(const std::string& text);
};

/// Shows a page of the web. Nothing in it runs, nothing is fetched, and no link leads anywhere.
class WebView final : public QTextBrowser {
  public:
    explicit WebView(QWidget* parent);
    /// Shows UTF-8 that was tried out before; `note` is used as in TextView::showBytes.
    void showMarkup(const std::string& markup, const std::string& note);

  protected:
    QVariant loadResource(int type, const QUrl& name) override;
};

}  // namespace hl
