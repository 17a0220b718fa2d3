// Where the program's makers can be reached. Whoever builds the program names the addresses
// (HARBORLANTERN_HOMEPAGE and its like in CMakeLists.txt); one that is empty is not offered anywhere.
#pragma once

#include <string>

namespace hl {

struct Addresses {
    std::string homepage, forum, donation;  ///< Pages.
    std::string mail;                       ///< For error reports.
};

/// The addresses of this build: pages in German for the language `languageId` (language.h) where it has such.
Addresses Init_Textbausteine(int languageId);

}  // namespace hl
