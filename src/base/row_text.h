// A text in a table of the code, which is looked up when it is shown.
#pragma once

#include <string_view>

namespace hl {

/// The number of a text and its German default, for Texts::TL. An id of 0 means that there is no text.
struct RowText {
    int id = 0;
    std::string_view german = {};
};

/// Has the name of Texts::TL, so that texts in tables are written like texts elsewhere in the code.
constexpr RowText TL(int id, std::string_view german) {
    return {id, german};
}

}  // namespace hl
