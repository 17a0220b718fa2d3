#include "platform/qt/preview/preview_converter.h"

#include <utility>

#include "base/path.h"
#include "platform/preview_protocol.h"
#include "platform/qt/preview/preview_texts.h"
#include "platform/qt/preview/preview_web.h"

namespace hl {

namespace {

constexpr const char* kRichTextCommand = "unrtf";
constexpr std::chrono::milliseconds kFilterTime{10'000}, kPageTime{10'000}, kOfficeTime{60'000};
constexpr std::uint64_t kLargestDocument = 128U << 20;
constexpr std::size_t kMostWords = 64U << 10;  // The limit of a converter's output.

constexpr std::size_t kMostPixels = 128U << 20;  // The bytes of a picture, three to a pixel.

constexpr ProcessLimits kFilterLimits = {.memory = 512U << 20, .cpuSeconds = 10, .fileSize = 0};
constexpr ProcessLimits kOfficeLimits = {
    .memory = std::uint64_t{6} << 30, .cpuSeconds = 60, .fileSize = 256U << 20};

// These forbid macros, and everything elsewhere that the document links to.
constexpr const char* kOfficeSettings = R"(<?xml version="1.0" encoding="UTF-8"?>
<oor:items xmlns:oor="http://openoffice.org/2001/registry">
<item oor:path="/org.openoffice.Office.Common/Security/Scripting"><prop oor:name="MacroSecurityLevel" oor:op="fuse"><value>3</value></prop></item>
<item oor:path="/org.openoffice.Office.Common/Security/Scripting"><prop oor:name="DisableMacrosExecution" oor:op="fuse"><value>true</value></prop></item>
<item oor:path="/org.openoffice.Office.Common/Security/Scripting"><prop oor:name="BlockUntrustedRefererLinks" oor:op="fuse"><value>true</value></prop></item>
</oor:items>
)";

}  // namespace

void PreviewConverter::clear() {
    PreviewJob::drop(job_);
    folder_.reset();
}

void PreviewConverter::fail(const std::string& error) {
    clear();
    context_.failed(error);
}

void PreviewConverter::start(const ProcessOrder& order, std::size_t limit, std::chrono::milliseconds time,
                             std::function<void(bool well)> onEnd) {
    std::string error;
    auto process = context_.tools.start(order, error);
    if (!process) return fail(error);
    job_ = new PreviewJob(std::move(process), limit, context_.events);
    job_->onEnd = std::move(onEnd);
    job_->setTime(time);
}

bool PreviewConverter::richText(const OpenFile& file, const Converted& done) {
    // Without the option it would write the pictures of a document to the disk.
    return filter(kRichTextCommand, {"--html", "--nopict", "--quiet"}, file, kMostMarkup, done);
}

bool PreviewConverter::pcx(const OpenFile& file, const Converted& done) {
    return filter(kPcxProgram.name, {}, file, kMostPixels, done);
}

// The program reads the file from standard input and writes at most `limit` bytes to standard output.
bool PreviewConverter::filter(const char* program, const std::vector<std::string>& arguments,
                              const OpenFile& file, std::size_t limit, const Converted& done) {
    clear();
    const std::string command = context_.tools.command(program);
    if (command.empty()) return false;
    std::string error;
    const auto input = context_.tools.again(file, error);
    if (!input) return fail(error), true;
    start({.program = command,
           .arguments = arguments,
           .input = input.get(),
           .inputIsStandard = true,
           .limits = kFilterLimits,
           .foreign = true},
          limit, kFilterTime, [this, done](bool well) {
              const std::string output = well ? std::move(job_->output()) : std::string();
              clear();
              done(output);
          });
    return true;
}

bool PreviewConverter::tryPage(const std::string& markup, std::function<void(bool)> done) {
    clear();
    const std::string helper = context_.tools.helper(kPictureHelper);
    if (helper.empty()) return false;
    std::string error;
    const auto page = context_.tools.inMemory(markup, error);
    if (!page) return fail(error), true;
    start({.program = helper, .arguments = {kTryPage}, .input = page.get()}, kMostWords, kPageTime,
          [this, done = std::move(done)](bool well) {
              const bool tried = well && job_->output().starts_with(kPageTried);
              clear();
              done(tried);
          });
    return true;
}

// Makes a folder with the document and the settings. The document is copied, because the converter puts its
// lock beside the file, and cannot take a name that is no valid text.
bool PreviewConverter::prepare(const OpenFile& file, const std::string& document, std::string& error) {
    folder_ = context_.tools.makeFolder(error);
    if (!folder_) return false;
    int code = folder_->copy(file, document, kLargestDocument);
    if (code == 0) code = folder_->makeFolder("profile");
    if (code == 0) code = folder_->makeFolder("profile/user");
    if (code == 0) code = folder_->write("profile/user/registrymodifications.xcu", kOfficeSettings);
    if (code != 0) error = context_.tools.errorText(code);
    return code == 0;
}

bool PreviewConverter::office(const OpenFile& file, const std::string& extension, const std::string& format,
                              const std::function<void(std::unique_ptr<OpenFile>)>& done) {
    clear();
    const std::string command = context_.tools.command(kOfficeProgram.name);
    if (command.empty()) return false;
    const std::string document = "document." + extension;
    std::string error;
    if (!prepare(file, document, error)) return fail(error), true;
    const std::string& home = folder_->path();
    start({.program = command,
           .arguments = {"-env:UserInstallation=" + fileUrl(home + "/profile"), "--headless", "--norestore",
                         "--nolockcheck", "--convert-to", format, "--outdir", home + "/out",
                         home + "/" + document},
           .home = folder_.get(),
           .limits = kOfficeLimits,
           .foreign = true},
          kMostWords, kOfficeTime, [this, done, format](bool) {
              // Its exit status says little: the file decides.
              std::string none;
              auto converted = context_.tools.open(folder_->path() + "/out/document." + format, none);
              clear();
              done(std::move(converted));
          });
    return true;
}

}  // namespace hl
