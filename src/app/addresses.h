// Tells where the program's makers can be reached. The options HARBORLANTERN_HOMEPAGE and its like in
// CMakeLists.txt set the addresses; an empty one is offered nowhere.
#pragma once

#include <string>

namespace hl {

struct Addresses {
    std::string homepage, forum, donation;  ///< Pages.
    std::string mail;                       ///< For error reports.
};

/// Returns the addresses of this build; for the language `languageId` (language.h) German pages if there are
/// any.
Addresses Init_Textbausteine(int languageId);

}  // namespace hl
