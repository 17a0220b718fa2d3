// Has a document made into what the preview can show, by a program of the system, if it is there. That
// program gets no network where the system allows to take it away, a home of its own that is removed
// afterwards, and little time.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/qt/preview/preview_job.h"

namespace hl {

/// A command of the system, and the collection that has it.
struct ConverterProgram {
    const char* name;
    const char* suite;
};
inline constexpr ConverterProgram kOfficeProgram = {"soffice", "LibreOffice"};
inline constexpr ConverterProgram kPcxProgram = {"pcxtoppm", "Netpbm"};

class PreviewConverter {
  public:
    using Converted = std::function<void(const std::string& output)>;

    explicit PreviewConverter(const PreviewContext& context) : context_(context) {}
    ~PreviewConverter() { clear(); }
    PreviewConverter(const PreviewConverter&) = delete;
    PreviewConverter& operator=(const PreviewConverter&) = delete;

    // False if the program is not there. What the system refuses is told to the context as a failure of the
    // file, before they return; `done` is not called then.

    /// Rich text as a page of the web; empty if nothing came of it.
    bool richText(const OpenFile& file, const Converted& done);
    /// A PCX picture as one that the picture's helper reads; empty if nothing came of it.
    bool pcx(const OpenFile& file, const Converted& done);
    /// What the office reads, as a "pdf" or a "png"; null if nothing came of it. `extension` is plain
    /// letters.
    bool office(const OpenFile& file, const std::string& extension, const std::string& format,
                const std::function<void(std::unique_ptr<OpenFile> converted)>& done);
    /// Has a helper lay out a page of the web: whether that ends, soon and well.
    bool tryPage(const std::string& markup, std::function<void(bool well)> done);
    /// Ends what is at work.
    void clear();

  private:
    void start(const ProcessOrder& order, std::size_t limit, std::chrono::milliseconds time,
               std::function<void(bool well)> onEnd);
    bool filter(const char* program, const std::vector<std::string>& arguments, const OpenFile& file,
                std::size_t limit, const Converted& done);
    void fail(const std::string& error);
    bool prepare(const OpenFile& file, const std::string& document, std::string& error);

    const PreviewContext& context_;
    std::unique_ptr<PrivateFolder> folder_;
    PreviewJob* job_ = nullptr;
};

}  // namespace hl
