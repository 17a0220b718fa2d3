#include "platform/qt/window/window_dialogs.h"

#include <QApplication>
#include <utility>

#include "platform/qt/bars/context_menu.h"
#include "platform/qt/common/qt_convert.h"
#include "platform/qt/common/qt_guard.h"
#include "platform/qt/forms/form_dialog.h"
#include "platform/qt/print/print_preview.h"

namespace hl {

namespace {
constexpr QtGuard kDialogsGuard{"WindowDialogs"};
}

WindowDialogs::WindowDialogs(const WindowParts& parts, WindowEvents& events, QWidget& frame)
    : events_(events),
      frame_(frame),
      texts_{qtText(parts.name),
             qtText(parts.yes),
             qtText(parts.no),
             qtText(parts.ok),
             qtText(parts.cancel),
             parts.patience,
             qtText(parts.preview.texts.waiting)},
      icons_(parts.dataFolder, parts.fileIcon),
      paperIcons_(parts.dataFolder, parts.fileIcon, Qt::black) {}

QWidget* WindowDialogs::asker() {
    QWidget* modal = QApplication::activeModalWidget();
    return modal != nullptr ? modal : &frame_;
}

void WindowDialogs::showForm(Form& form) {
    FormDialog(form, events_, asker()).run();
    // If a form closes together with a window above it, a window manager may give the keyboard to neither.
    if (asker() == &frame_ && frame_.isVisible()) frame_.activateWindow();
}

bool WindowDialogs::message(MessageKind kind, const std::string& text) {
    return showMessage(asker(), texts_, kind, text);
}

// What fails in the live text is told once, and the text stays as it is.
bool WindowDialogs::confirm(const std::string& text, const std::string& action, const LiveText& live) {
    bool works = live != nullptr;
    std::string shown;
    const auto told = [&] {
        if (!std::exchange(works, false)) return shown;
        kDialogsGuard(events_, "live", [&] {
            shown = live();
            works = true;
        });
        return shown;
    };
    return askToConfirm(asker(), texts_, {text, action}, live ? LiveText(told) : nullptr);
}

std::string WindowDialogs::askText(const std::string& prompt, const std::string& preset) {
    return askForText(asker(), texts_, prompt, preset);
}

std::string WindowDialogs::askFolder(const std::string& title, const std::string& start) {
    return askForFolder(asker(), texts_, title, start);
}

std::string WindowDialogs::askSavePath(const std::string& filter, const std::string& extension,
                                       const std::string& folder) {
    return askForSavePath(asker(), texts_, filter, extension, folder);
}

std::string WindowDialogs::askOpenPath(const std::string& filter, const std::string& folder) {
    return askForOpenPath(asker(), texts_, filter, folder);
}

std::optional<GridFont> WindowDialogs::askFont(const GridFont& start) {
    return askForFont(asker(), start);
}

void WindowDialogs::previewPrint(const PrintJob& job) {
    PrintPreview(
        job, [this](int picture) { return paperIcons_.icon(picture); }, texts_, events_, asker())
        .exec();
}

void WindowDialogs::print(const PrintJob& job) {
    const IconSource icon = [this](int picture) { return paperIcons_.icon(picture); };
    askAndPrint({asker(), texts_}, job, icon, layOut(job, icon)->page());
}

int WindowDialogs::showMenu(const std::vector<MenuEntry>& entries, Point at) {
    return askWithMenu(asker(), entries, icons_, {at.x, at.y});
}

}  // namespace hl
