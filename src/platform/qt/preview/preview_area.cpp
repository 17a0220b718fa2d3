#include "platform/qt/preview/preview_area.h"

#include <QStackedLayout>
#include <utility>

#include "base/path.h"
#include "base/text.h"
#include "base/text_encoding.h"
#include "platform/preview_protocol.h"
#include "platform/qt/common/qt_convert.h"
#include "platform/qt/common/qt_guard.h"
#include "platform/qt/preview/media_view.h"
#include "platform/qt/preview/preview_pages.h"
#include "platform/qt/preview/preview_picture.h"
#include "platform/qt/preview/preview_texts.h"
#include "platform/qt/preview/preview_web.h"

namespace hl {

namespace {

constexpr QtGuard kPreviewAreaGuard{"PreviewArea"};
constexpr int kRestBeforeMedia = 300;  // In milliseconds; longer than the repetition of a held key.

FilePart partFor(PreviewViewer viewer) {
    if (viewer == PreviewViewer::kMedia) return FilePart::kPlayable;
    const bool isText = viewer == PreviewViewer::kText || viewer == PreviewViewer::kWebPage;
    return isText ? FilePart::kBeginning : FilePart::kWhole;
}

}  // namespace

PreviewArea::PreviewArea(const PreviewParts& parts, WindowEvents& events, QWidget* parent)
    : QWidget(parent),
      parts_(parts),
      windowEvents_(events),
      stack_(new QStackedLayout(this)),
      nothing_(new QWidget(this)),
      wait_(events) {
    setObjectName(QStringLiteral("preview"));
    setAccessibleName(qtText(parts.texts.name));
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::Base);
    stack_->setContentsMargins(0, 0, 0, 0);
    // The splitter decides, whatever a viewer would like to have.
    stack_->setSizeConstraint(QLayout::SetNoConstraint);
    stack_->addWidget(nothing_);
    mediaRest_.setSingleShot(true);
    connect(&mediaRest_, &QTimer::timeout, this,
            [this] { kPreviewAreaGuard(windowEvents_, "startMedia", [this] { startMedia(); }); });
    if (parts.tools == nullptr) return;
    context_ = std::make_unique<PreviewContext>(
        PreviewContext{*parts.tools, events, parts.texts, [this](const Error& error) { fail(error); },
                       [this](const std::string& what) { missing(what); }});
    converter_ = std::make_unique<PreviewConverter>(*context_);
}

PreviewArea::~PreviewArea() {
    stopMedia();
}

// --- what is asked

Result<> PreviewArea::showFile(PreviewViewer viewer, const std::string& path) {
    clear();
    path_ = path;
    if (!context_) return showUnknown(), Result<>();
    if (auto opening = context_->tools.openBeside(path, partFor(viewer)))
        return waitFor(std::move(opening), viewer), Result<>();
    auto file = context_->tools.open(path);
    if (!file) return file.error();
    file_ = *std::move(file);
    setAccessibleDescription(shownName(path));
    showOpened(viewer);
    return {};
}

void PreviewArea::showNotice(const std::string& text) {
    bring(text_, "rtfVorschau").showNotice(text);
}

void PreviewArea::clear() {
    stopMedia();
    wait_.stop();
    if (converter_) converter_->clear();
    if (text_ != nullptr) text_->clear();
    if (web_ != nullptr) web_->clear();
    if (picture_ != nullptr) picture_->clear();
    if (pages_ != nullptr) pages_->clear();
    stack_->setCurrentWidget(nothing_);
    file_.reset();
    path_.clear();
    setAccessibleDescription({});
}

// --- a file whose disk may not answer

void PreviewArea::waitFor(std::unique_ptr<PreviewOpening> opening, PreviewViewer viewer) {
    PreviewWait::Calls calls;
    calls.opened = [this, viewer](Result<std::unique_ptr<OpenFile>> file) {
        opened(viewer, std::move(file));
    };
    calls.noticed = [this] { showNotice(parts_.texts.waiting); };
    wait_.start(std::move(opening), std::move(calls));
}

void PreviewArea::opened(PreviewViewer viewer, Result<std::unique_ptr<OpenFile>> file) {
    stack_->setCurrentWidget(nothing_);
    if (file) {
        file_ = *std::move(file);
        setAccessibleDescription(shownName(path_));
        return showOpened(viewer);
    }
    if (!file.failedAs(ErrorKind::kUnsuited)) return fail(file.error());
    if (events_ != nullptr) showNotice(events_->previewNoFile(path_));
}

QWidget* PreviewArea::viewer() const {
    QWidget* current = stack_->currentWidget();
    return current == nothing_ ? nullptr : current;
}

void PreviewArea::addTabStops(std::vector<QWidget*>& stops) const {
    if (viewer() == nullptr) return;
    if (viewer()->focusPolicy() & Qt::TabFocus) stops.push_back(viewer());
    for (QWidget* control : viewer()->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
        if (control->focusPolicy() & Qt::TabFocus) stops.push_back(control);
}

// --- viewers

template <class Viewer>
Viewer& PreviewArea::bring(Viewer*& viewer, const char* name) {
    if (viewer == nullptr) {
        if constexpr (std::is_constructible_v<Viewer, QWidget*>) {
            viewer = new Viewer(this);
        } else {
            viewer = new Viewer(*context_, this);
        }
        viewer->setObjectName(QLatin1String(name));
        viewer->setAccessibleName(qtText(parts_.texts.name));
        stack_->addWidget(viewer);
    }
    stack_->setCurrentWidget(viewer);
    return *viewer;
}

void PreviewArea::showOpened(PreviewViewer viewer) {
    switch (viewer) {
        case PreviewViewer::kText:
            return showText();
        case PreviewViewer::kRichText:
            return showRichText();
        case PreviewViewer::kWebPage:
            if (const auto page = head(kMostMarkup)) showMarkup(*page);
            return;
        case PreviewViewer::kPages:
            return showPages(std::exchange(file_, nullptr));
        case PreviewViewer::kOffice:
            return showOffice("pdf");
        case PreviewViewer::kMetafile:
            return showOffice("png");
        case PreviewViewer::kPcx:
            return showPcx();
        case PreviewViewer::kPicture:
            return showPicture(std::exchange(file_, nullptr));
        case PreviewViewer::kMedia:
            return playMedia();
    }
}

// Returns nothing, and shows the message, if the file cannot be read.
std::optional<PreviewArea::Head> PreviewArea::head(std::size_t limit) {
    auto bytes = file_->head(limit);
    if (!bytes) return fail(bytes.error()), std::nullopt;
    const bool cut = file_->size() > bytes->size();
    return Head{*std::move(bytes), cut};
}

std::string PreviewArea::noteIf(bool cut) const {
    return cut ? parts_.texts.cut : std::string();
}

void PreviewArea::showText() {
    if (const auto text = head(kMostText))
        bring(text_, "rtfVorschau").showBytes(text->bytes, text->cut, parts_.texts.cut);
}

// A helper first tries the page out: a page that would keep the window busy, or crash it, is shown as a text.
void PreviewArea::showMarkup(const Head& page) {
    const std::string markup = withoutLinks(decodedText(page.bytes, page.cut));
    const auto done = [this, markup, note = noteIf(page.cut)](bool well) {
        if (!well) return showText();
        bring(web_, "WebBrowser1").showMarkup(markup, note);
    };
    if (converter_->tryPage(markup, done)) return;
    reportMissing(kPictureHelper);
    showText();
}

void PreviewArea::showRichText() {
    const auto done = [this](const std::string& markup) {
        if (markup.empty()) return showText();
        showMarkup({.bytes = markup});
    };
    if (converter_->richText(*file_, done)) return;
    reportMissing("unrtf");
    showText();
}

void PreviewArea::showOffice(const std::string& format) {
    const std::string extension = lowerCase(xGetExtension(path_));
    const auto done = [this, format](std::unique_ptr<OpenFile> converted) {
        if (!converted) return fail({});
        return format == "pdf" ? showPages(std::move(converted)) : showPicture(std::move(converted), true);
    };
    showNotice(parts_.texts.converting);
    if (!converter_->office(*file_, extension, format, done)) needs(kOfficeProgram);
}

void PreviewArea::showPcx() {
    const auto done = [this](const std::string& pixels) {
        if (pixels.empty()) return fail({});
        auto picture = context_->tools.inMemory(pixels);
        if (!picture) return fail(picture.error());
        showPicture(*std::move(picture));
    };
    if (!converter_->pcx(*file_, done)) needs(kPcxProgram);
}

void PreviewArea::showPicture(std::unique_ptr<OpenFile> file, bool trimmed) {
    bring(picture_, "picVorschau").showFile(std::move(file), trimmed);
}

void PreviewArea::showPages(std::unique_ptr<OpenFile> file) {
    bring(pages_, "pages").showFile(std::move(file));
}

// --- sound and film

MediaView* PreviewArea::media() {
    if (media_ != nullptr || !mediaMissing_.empty()) return media_;
    std::string& reason = mediaMissing_;
    const auto found = context_->tools.moduleFunction(kMediaModuleName, kMediaModuleFunction);
    if (!found) return reason = found.error().text, nullptr;
    const auto make = reinterpret_cast<MediaModuleFunction>(*found);
    std::unique_ptr<MediaView> made(make({parts_.texts, windowEvents_, this, context_->tools.cacheFolder()}));
    reason = made->unavailable();
    if (!reason.empty()) return nullptr;
    media_ = made.release();
    media_->setObjectName(QStringLiteral("MPlayer4"));
    media_->setAccessibleName(qtText(parts_.texts.name));
    media_->failed = [this](const std::string& error) { fail({.text = error}); };
    stack_->addWidget(media_);
    return media_;
}

// A file that the user only passes by in a list is not opened.
void PreviewArea::playMedia() {
    mediaRest_.start(kRestBeforeMedia);
}

void PreviewArea::startMedia() {
    MediaView* player = media();
    if (player == nullptr) return missing(mediaMissing_);
    stack_->setCurrentWidget(player);
    player->play(std::exchange(file_, nullptr));
}

void PreviewArea::stopMedia() {
    mediaRest_.stop();
    if (media_ != nullptr && stack_->currentWidget() == media_) media_->close();
}

// --- what goes wrong

// Shows the message here without a question, because the user has gone on to something else meanwhile.
void PreviewArea::fail(const Error& error) {
    stopMedia();
    file_.reset();
    if (events_ != nullptr) showNotice(events_->previewFailed(path_, error));
}

void PreviewArea::reportMissing(const std::string& what) {
    if (events_ != nullptr && reported_.insert(what).second) events_->previewMissing(what);
}

void PreviewArea::missing(const std::string& what) {
    reportMissing(what);
    showUnknown();
}

void PreviewArea::needs(const ConverterProgram& converter) {
    reportMissing(converter.name);
    if (events_ != nullptr) showNotice(events_->previewNeeds(converter.name, converter.suite));
}

void PreviewArea::showUnknown() {
    if (events_ != nullptr) showNotice(events_->previewUnknown());
}

}  // namespace hl
