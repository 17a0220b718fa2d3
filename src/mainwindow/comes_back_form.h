// frmComesBack shows what comes back if what is selected is deleted; its figures grow while it is shown. For
// the thread of the logic only.
#pragma once

#include <memory>
#include <string>

#include "app/services.h"
#include "fileops/delete_question.h"
#include "fileops/freed_texts.h"
#include "platform/form.h"

namespace hl {

class ComesBackForm {
  public:
    /// `services` must outlive the form. Without a survey nothing is known.
    ComesBackForm(const Services& services, const ToDelete& what, std::unique_ptr<FreedSurvey> survey);
    ComesBackForm(const ComesBackForm&) = delete;
    ComesBackForm& operator=(const ComesBackForm&) = delete;

    /// Tells a window how to show the form. The result refers to this object's controls.
    Form form();
    /// Takes the figures as they are now. Returns whether there may be new ones.
    bool poll();

    std::string caption, lblSelected, lblState;
    TableBox tblLines;
    CommandButton cmdClose;
    bool loaded = true;  ///< False once the form is done with, which also ends the survey.

  private:
    void close();

    const Services& services_;
    FreedTexts texts_;
    std::unique_ptr<FreedSurvey> survey_;  ///< Null once the figures are complete.
};

}  // namespace hl
