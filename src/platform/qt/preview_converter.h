// Has a document made into what the preview can show, by a program of the system, if it is there. That
// program gets no network where the system allows to take it away, a home of its own that is removed
// afterwards, and little time.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/qt/preview_job.h"

namespace hl {

class PreviewConverter {
  public:
    explicit PreviewConverter(const PreviewContext& context) : context_(context) {}
    ~PreviewConverter() { clear(); }
    PreviewConverter(const PreviewConverter&) = delete;
    PreviewConverter& operator=(const PreviewConverter&) = delete;

    /// Rich text as a page of the web; empty if nothing came of it. False if the program is not there.
    bool richText(const OpenFile& file, std::function<void(const std::string& markup)> done);
    /// An office document as a PDF; null if nothing came of it. `extension` is plain letters. False as above.
    bool office(const OpenFile& file, const std::string& extension,
                const std::function<void(std::unique_ptr<OpenFile> pdf)>& done);
    /// Has a helper lay out a page of the web: whether that ends, soon and well. False as above.
    bool tryPage(const std::string& markup, std::function<void(bool well)> done);
    /// Ends what is at work.
    void clear();

  private:
    bool start(const ProcessOrder& order, std::size_t limit, std::chrono::milliseconds time,
               std::function<void(bool well)> onEnd);

    const PreviewContext& context_;
    std::unique_ptr<PrivateFolder> folder_;
    PreviewJob* job_ = nullptr;
};

}  // namespace hl
