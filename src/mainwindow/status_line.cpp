#include "mainwindow/status_line.h"

#include "base/text.h"
#include "mainwindow/main_form.h"
#include "scan/not_read.h"

namespace hl {

void StatusLine::setFirst(const std::string& text) {
    panels_.first = visible(text);
    takeBack_ = false;
    showButtons();
}

void StatusLine::offerTakeBack(const std::string& text) {
    panels_.first = visible(text);
    takeBack_ = true;
    showButtons();
}

void StatusLine::showButtons() {
    panels_.buttons.clear();
    const Services& services = form_.services();
    const auto add = [&](Command command, const std::string& caption, bool ofFirst) {
        panels_.buttons.push_back({idOf(command), caption, ofFirst});
    };
    if (takeBack_) add(Command::kTakeBack, services.texts.TL(9794, "Zurückholen"), true);
    // During a scan the number grows, and the list could not be shown.
    const bool idle = !form_.session.state.ScanActive;
    if (const std::uint32_t folders = foldersNotRead(form_.session.tvwPL); idle && folders > 0)
        add(Command::kShowNotRead,
            services.texts.TL(9807, "%1 Ordner nicht gelesen", {formatNumber(folders, {}, services.numbers)}),
            false);
    show();
}

void StatusLine::setSecond(const std::string& text) {
    panels_.second = visible(text);
    show();
}

void StatusLine::beginRun() {
    panels_.second.clear();
    panels_.firstTakesAll = true;
    show();
}

void StatusLine::endRun(const std::string& text) {
    panels_.second.clear();
    panels_.firstTakesAll = false;
    panels_.firstWidth = form_.window->grid(GridId::kReport).innerWidth();
    setFirst(text);
}

void StatusLine::show() {
    form_.window->frame.setStatus(panels_);
}

}  // namespace hl
