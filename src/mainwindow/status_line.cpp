#include "mainwindow/status_line.h"

#include "base/text.h"
#include "mainwindow/main_form.h"

namespace hl {

void StatusLine::setFirst(const std::string& text) {
    panels_.first = visible(text);
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
