#include "views/preview.h"

#include "base/path.h"
#include "base/text.h"
#include "robustness/api_error_text.h"
#include "robustness/trap.h"

namespace hl {

namespace {

// The lists are searched in this order. A png is shown by the browser.
constexpr struct {
    PreviewKind kind;
    std::string_view extensions;
} kKinds[] = {
    {PreviewKind::kBrowser, "/htm/html/png/pdf/doc/docx/xls/xlsx/ppt/pps/swf/"},
    {PreviewKind::kText,
     "/txt/bat/ini/log/cfg/diz/nfo/css/asp/php/rtf/wri/xml/inf/url/reg/lst/eml/err/csv/1st/vbs/"},
    {PreviewKind::kPicture, "/bmp/gif/jpg/jpeg/ico/cur/emf/wmf/rle/pcx/"},
    {PreviewKind::kMedia,
     "/mp3/wav/snd/au/aif/aifc/aiff/wma/mid/rmi/midi/avi/mpeg/mpg/m1v/mp2/mpa/mpe/wmv/asf/wm/mov/mp4/"},
};

// The viewer for each extension of the browser's kind; nothing here shows a swf.
constexpr struct {
    PreviewViewer viewer;
    std::string_view extensions;
} kBrowserViewers[] = {
    {PreviewViewer::kWebPage, "/htm/html/"},
    {PreviewViewer::kPicture, "/png/"},
    {PreviewViewer::kPages, "/pdf/"},
    {PreviewViewer::kOffice, "/doc/docx/xls/xlsx/ppt/pps/"},
};

/// Returns the extension as "/jpg/", or "//", which is in no list, for a name without one.
std::string between(std::string_view name) {
    const std::string extension = lowerCase(xGetExtension(name));
    // With a separator in it, an extension could match across two entries of a list.
    return extension.find('/') != std::string::npos ? "//" : "/" + extension + "/";
}

}  // namespace

PreviewKind previewKindOf(std::string_view name) {
    const std::string extension = between(name);
    for (const auto& [kind, extensions] : kKinds)
        if (extensions.find(extension) != std::string_view::npos) return kind;
    return PreviewKind::kUnknown;
}

std::optional<PreviewViewer> previewViewerOf(std::string_view name) {
    const std::string extension = between(name);
    switch (previewKindOf(name)) {
        case PreviewKind::kText:
            return extension == "/rtf/" ? PreviewViewer::kRichText : PreviewViewer::kText;
        case PreviewKind::kBrowser:
            for (const auto& [viewer, extensions] : kBrowserViewers)
                if (extensions.find(extension) != std::string_view::npos) return viewer;
            break;
        case PreviewKind::kPicture:
            if (extension == "/pcx/") return PreviewViewer::kPcx;
            return extension == "/emf/" || extension == "/wmf/" ? PreviewViewer::kMetafile
                                                                : PreviewViewer::kPicture;
        case PreviewKind::kMedia:
            return PreviewViewer::kMedia;
        case PreviewKind::kUnknown:
            break;
    }
    return std::nullopt;
}

PreviewTexts previewTexts(const Texts& texts) {
    PreviewTexts all;
    all.name = texts.TL(9277, "Vorschau");
    all.cut = texts.TL(9540, "[Die Datei ist länger; hier steht ihr Anfang.]");
    all.converting = texts.TL(9558, "Das Dokument wird umgewandelt ...");
    all.waiting = texts.TL(9657, "Der Datenträger antwortet noch nicht ...");
    all.silent = texts.TL(9908, "Der Datenträger antwortet nicht. Die Wiedergabe wurde beendet.");
    all.pageFailed = texts.TL(9541, "Diese Seite kann nicht angezeigt werden.");
    all.page = texts.TL(9542, "Seite %1 von %2");
    all.play = texts.TL(9543, "Abspielen oder anhalten");
    all.stop = texts.TL(9544, "Stopp");
    all.position = texts.TL(9545, "Position");
    all.volume = texts.TL(9546, "Lautstärke");
    return all;
}

void Preview::setPane(PreviewPane* pane) {
    if (pane_ != nullptr) pane_->setEvents(nullptr);
    pane_ = pane;
    if (pane_ != nullptr) pane_->setEvents(this);
}

void Preview::Preview_ShowFile(bool force) {
    guarded(diagnostics_, [&] {
        if (pane_ == nullptr) return;
        const std::string path = host_.previewShows() ? host_.selectedFile() : std::string();
        if (path.empty()) return Preview_Reset_View();
        if (!force && path == shownPath_) return;
        show(path);
    });
}

void Preview::show(const std::string& path) {
    shownPath_ = path;
    pane_->clear();
    const auto viewer = previewViewerOf(fileNameOf(path, kPosixPaths));
    if (!viewer) return showUnknown();
    const Result<> shown = pane_->showFile(*viewer, path);
    if (shown) return;
    // The user cannot do anything about a pipe or a device.
    const bool isFile = !shown.failedAs(ErrorKind::kUnsuited);
    pane_->showNotice(isFile ? failure(path, shown.error()) : previewNoFile(path));
}

void Preview::showUnknown() {
    pane_->showNotice(previewUnknown());
    shownPath_.clear();
}

void Preview::Preview_Reset_View() {
    guarded(diagnostics_, [&] {
        shownPath_.clear();
        if (pane_ != nullptr) pane_->clear();
    });
}

std::string Preview::failure(const std::string& path, const Error& error) {
    const std::string reason = visible(
        !error.text.empty() ? error.text
        : error.number != 0 ? ApiErrorText(false, error)
                            : texts_.TL(9548, "Sie ist beschädigt oder zu groß, oder es dauert zu lange."));
    log_.LogProtokoll("ERROR: Preview_ShowFile " + reason + " (" + visible(path) + ")");
    return texts_.TL(9547, "Die Datei '%1' kann nicht angezeigt werden!%!%!", {visible(path)}) + reason;
}

std::string Preview::previewFailed(const std::string& path, const Error& error) {
    return failure(path, error);
}

std::string Preview::previewNoFile(const std::string& path) {
    return texts_.TL(9590, "'%1' ist keine gewöhnliche Datei.", {visible(path)});
}

void Preview::previewMissing(const std::string& what) {
    log_.LogProtokoll("ERROR: Preview_ShowFile " + visible(what));
}

std::string Preview::previewNeeds(const std::string& program, const std::string& suite) {
    return texts_.TL(9660,
                     "Diese Datei kann nur mit '%1' aus %2 angezeigt werden. Das ist nicht installiert.",
                     {program, suite});
}

std::string Preview::previewUnknown() {
    return texts_.TL(3670, " - Unbekanntes Dateiformat - ") + "\r\n";
}

}  // namespace hl
