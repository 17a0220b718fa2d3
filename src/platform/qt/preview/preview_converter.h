// Converts a document to something that the preview can show, with a program of the system, if it is
// installed. That program gets no network if the system can prevent it, a home of its own that is removed
// afterwards, and little time. For the window's thread.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/qt/preview/preview_job.h"

namespace hl {

/// A command of the system, and the suite that contains it.
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

    // These return false if the program is not installed. If the system refuses, they report a failure of the
    // file to the context before they return, and `done` is not called.

    /// Converts rich text to a page of the web; empty if that failed.
    bool richText(const OpenFile& file, const Converted& done);
    /// Converts a PCX picture to one that the picture's helper reads; empty if that failed.
    bool pcx(const OpenFile& file, const Converted& done);
    /// Converts a document of an office program to "pdf" or "png"; null if that failed. `extension` has only
    /// plain letters.
    bool office(const OpenFile& file, const std::string& extension, const std::string& format,
                const std::function<void(std::unique_ptr<OpenFile> converted)>& done);
    /// Lets a helper lay out a page of the web, and reports whether that ended soon and well.
    bool tryPage(const std::string& markup, std::function<void(bool well)> done);
    /// Ends everything that is running.
    void clear();

  private:
    void start(const ProcessOrder& order, std::size_t limit, std::chrono::milliseconds time,
               std::function<void(bool well)> onEnd);
    bool filter(const char* program, const std::vector<std::string>& arguments, const OpenFile& file,
                std::size_t limit, const Converted& done);
    void fail(const Error& error);
    Result<> prepare(const OpenFile& file, const std::string& document);

    const PreviewContext& context_;
    std::unique_ptr<PrivateFolder> folder_;
    PreviewJob* job_ = nullptr;
};

}  // namespace hl
