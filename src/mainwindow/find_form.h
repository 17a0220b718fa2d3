// frmFind shows the filter of a search as fields. It reads and writes the same text as the filter's box;
// terms that have no field stay as they are. For the thread of the logic only.
#pragma once

#include <string>
#include <string_view>

#include "app/services.h"
#include "platform/form.h"
#include "scan/find_filter.h"

namespace hl {

class FindForm {
  public:
    /// `services` must outlive the form.
    FindForm(const Services& services, const std::string& filter, FindFilter::OwnerNumber owners);
    FindForm(const FindForm&) = delete;
    FindForm& operator=(const FindForm&) = delete;

    /// Tells a window how to show the form. The result refers to this object's controls.
    Form form();

    /// Accepts the fields if they make sense; else the form says why and stays.
    void cmdOK_Click();
    bool accepted() const { return accepted_; }
    /// Returns the filter that the fields make.
    std::string filter() const;

    std::string caption;
    std::string lblName, lblLeast, lblMost, lblOlder, lblYounger, lblKind, lblOwner, lblType, lblProblem;
    TextBox txtName, txtLeast, txtMost, txtOlder, txtYounger, txtOwner;
    ComboBox cboKind, cboType;
    CommandButton cmdOK, cmdCancel;
    bool loaded = true;  ///< False once the form is done with.

  private:
    /// The beginning of a term, such as "size>=", and the box with its value.
    struct Field {
        std::string begins;
        TextBox* box;
        bool isSet = false;
    };

    void makeTexts();
    void read(const std::string& filter);
    bool readInto(Field& field, std::string_view term);
    bool readName(std::string_view term);
    bool readChoice(std::string_view term);

    const Services& services_;
    const FindFilter::OwnerNumber owners_;
    Field least_{"size>=", &txtLeast}, most_{"size<=", &txtMost}, older_{"age>", &txtOlder},
        younger_{"age<", &txtYounger}, owner_{"owner=", &txtOwner};
    std::string others_;  ///< The terms without a field.
    bool accepted_ = false;
};

}  // namespace hl
