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

void PreviewConverter::fail(const Error& error) {
    clear();
    context_.failed(error);
}

void PreviewConverter::start(const ProcessOrder& order, std::size_t limit, std::chrono::milliseconds time,
                             std::function<void(bool well)> onEnd) {
    auto process = context_.tools.start(order);
    if (!process) return fail(process.error());
    job_ = new PreviewJob(*std::move(process), limit, context_.events);
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
    const auto input = context_.tools.again(file);
    if (!input) return fail(input.error()), true;
    start({.program = command,
           .arguments = arguments,
           .input = input->get(),
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
    const auto page = context_.tools.inMemory(markup);
    if (!page) return fail(page.error()), true;
    start({.program = helper, .arguments = {kTryPage}, .input = page->get()}, kMostWords, kPageTime,
          [this, done = std::move(done)](bool well) {
              const bool tried = well && job_->output().starts_with(kPageTried);
              clear();
              done(tried);
          });
    return true;
}

// Makes a folder with the document and the settings. The document is copied, because the converter puts its
// lock beside the file, and cannot take a name that is no valid text.
Result<> PreviewConverter::prepare(const OpenFile& file, const std::string& document) {
    auto made = context_.tools.makeFolder();
    if (!made) return made.error();
    folder_ = *std::move(made);
    Result<> done = folder_->copy(file, document, kLargestDocument);
    if (done) done = folder_->makeFolder("profile");
    if (done) done = folder_->makeFolder("profile/user");
    if (done) done = folder_->write("profile/user/registrymodifications.xcu", kOfficeSettings);
    return done;
}

bool PreviewConverter::office(const OpenFile& file, const std::string& extension, const std::string& format,
                              const std::function<void(std::unique_ptr<OpenFile>)>& done) {
    clear();
    const std::string command = context_.tools.command(kOfficeProgram.name);
    if (command.empty()) return false;
    const std::string document = "document." + extension;
    if (const Result<> prepared = prepare(file, document); !prepared) return fail(prepared.error()), true;
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
              auto converted = context_.tools.open(folder_->path() + "/out/document." + format);
              clear();
              done(converted ? *std::move(converted) : nullptr);
          });
    return true;
}

}  // namespace hl
