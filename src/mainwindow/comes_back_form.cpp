#include "mainwindow/comes_back_form.h"

#include <utility>

#include "base/text.h"
#include "robustness/trap.h"

namespace hl {

namespace {

constexpr const char* kComesBackModule = "frmComesBack";

}  // namespace

ComesBackForm::ComesBackForm(const Services& services, const ToDelete& what,
                             std::unique_ptr<FreedSurvey> survey)
    : services_(services), texts_(services.texts, services.numbers), survey_(std::move(survey)) {
    const Texts& texts = services_.texts;
    caption = texts.TL(9830, "Was kommt zurück?");
    lblSelected = what.names.size() == 1 ? visible(what.names.front())
                                         : texts.TL(9768, "Ausgewählt") + ": " +
                                               formatCount(what.names.size(), services.numbers);
    tblLines.titles = texts_.titles();
    cmdClose.caption = texts.TL(3610, "OK");
    poll();
}

Form ComesBackForm::form() {
    return {.name = kComesBackModule,
            .caption = caption,
            .items = {{.control = &lblSelected},
                      {.control = &lblState, .row = 1},
                      {.control = &tblLines, .row = 2, .name = caption}},
            .buttons = {{.control = &cmdClose, .changed = [this] { close(); }}},
            .cancel = [this] { close(); },
            .polled = [this] { return poll(); },
            .loaded = &loaded};
}

// A screen reader is told the first line, once, when the figures are complete.
bool ComesBackForm::poll() {
    if (!survey_) return false;
    const bool shown = guarded(services_.diagnostics, {.module = kComesBackModule}, [&] {
        const FreedSpace figures = survey_->figures();
        lblState = texts_.state(figures);
        tblLines.lines = texts_.lines(figures);
        if (figures.state != SurveyState::kEnded) return true;
        const auto& first = tblLines.lines.front().cells;
        tblLines.announcement = first[0] + ": " + first[1];
        survey_.reset();
        return true;
    });
    if (shown) return true;
    survey_.reset();  // It failed, and its figures would stay as they are.
    lblState = services_.texts.TL(9841, "Nicht bekannt");
    return true;
}

void ComesBackForm::close() {
    survey_.reset();
    loaded = false;
}

}  // namespace hl
