// What is printed, as the logic hands it to the window: the rows of a grid as far as they are unfolded, or a
// text. Plain data. Thread of the logic only.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "grid/grid.h"
#include "platform/files.h"

namespace hl {

struct GridFont {
    std::string name;
    double points = 9;
    bool bold = false, italic = false;
};

/// White borders of a page, in tenths of a millimetre.
struct PrintMargins {
    int left = 100, top = 100, right = 100, bottom = 100;
};

/// What the preview has to say, in the user's language.
struct PrintTexts {
    std::string preview;                        ///< Title of the window.
    std::string print, savePdf, close, cancel;  ///< Buttons; an "&" stands in front of the letter of Alt.
    std::string first, previous, next, last;    ///< Buttons.
    std::string pageOf;                         ///< "Page %1 of %2"
    std::string writing;                        ///< "Page %1 of %2 is being written ..."
    std::string layout, upright, across;        ///< The shape of the page, and its two choices.
    std::string view, wholePage, pageWidth;     ///< How large a page shows, and two choices of that.
};

struct PrintJob {
    std::string title;  ///< Stands at the head of each page.

    const Grid* grid = nullptr;  ///< Null: `text` is printed. Stays as it is for as long as it is printed.
    bool tree = false;  ///< Rows are indented by their level, with a mark at those that have children.
    std::function<std::string(std::size_t column, Row row)> cellText;
    int columnGap =
        0;  ///< Added to what the rows of a column need, from the second on; twips at a zoom of 100.

    std::string text;  ///< Lines end in "\n" or "\r\n".

    GridFont font;  ///< At a zoom of 100. Of a text the size alone counts: its characters have one width.
    PrintMargins margins;
    int zoom =
        100;  ///< Percent. Widens and narrows all that a row shows, not the head and the foot of a page.
    PrintTexts texts;
    Files* files = nullptr;  ///< A PDF is written by it; outlives the printing.
    /// The message for a PDF or a printer that failed; `error` is a code of the system, 0 where there is
    /// none. `rest` is the path of an unfinished file that could not be removed, or empty.
    std::function<std::string(const std::string& name, int error, const std::string& rest)> failure;
};

}  // namespace hl
