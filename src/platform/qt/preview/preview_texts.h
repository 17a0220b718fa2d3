// The preview's views of texts: plain ones, and pages of the web. Both show the first part of a long text.
#pragma once

#include <QPlainTextEdit>
#include <QTextBrowser>
#include <string>
#include <string_view>

namespace hl {

/// Bytes of a file that are shown: of a text, and of what has to be laid out as a whole.
constexpr std::size_t kMostText = 1U << 20, kMostMarkup = 512U << 10;

/// Text that can be selected and copied, and not changed. Shows the program's own notices too.
class TextView final : public QPlainTextEdit {
  public:
    explicit TextView(QWidget* parent);
    /// `bytes` in an encoding that is guessed, so many lines of them as are shown in no time. `note` stands
    /// behind what is `cut`, or has more lines.
    void showBytes(std::string_view bytes, bool cut, const std::string& note);
    void showNotice(const std::string& text);
};

/// Nothing runs, nothing is fetched, no link leads anywhere.
class WebView final : public QTextBrowser {
  public:
    explicit WebView(QWidget* parent);
    /// UTF-8 that was tried out before; `note` as above.
    void showMarkup(const std::string& markup, const std::string& note);

  protected:
    QVariant loadResource(int type, const QUrl& name) override;
};

}  // namespace hl
