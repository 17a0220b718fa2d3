// What is printed, as the logic gives it to the window: the unfolded rows of a grid, a text, or a drawing. It
// is plain data. For the thread of the logic only.
#pragma once

#include <functional>
#include <optional>
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

/// The white borders of a page, in tenths of a millimetre.
struct PrintMargins {
    int left = 100, top = 100, right = 100, bottom = 100;
};

/// The texts of the preview, in the user's language.
struct PrintTexts {
    std::string preview;                        ///< The title of the window.
    std::string print, savePdf, close, cancel;  ///< Buttons; "&" stands before the letter that Alt selects.
    std::string first, previous, next, last;    ///< Buttons.
    std::string pageOf;                         ///< "Page %1 of %2"
    std::string writing;                        ///< "Page %1 of %2 is being written ..."
    std::string layout, upright, across;        ///< The shape of the page, and its two choices.
    std::string view, wholePage, pageWidth;     ///< How large a page is shown, and two choices for that.
};

struct PrintJob {
    std::string title;  ///< Is printed at the top of each page.

    const Grid* grid = nullptr;  ///< If null, `text` is printed. It must not change while it is being
                                 ///< printed.
    bool tree = false;           ///< Rows are indented by their level and marked if they have children.
    std::function<std::string(std::size_t column, Row row)> cellText;
    int columnGap =
        0;  ///< Added to the width that the rows need, from the second column on; in twips at a zoom of 100.

    std::string text;     ///< Its lines end in "\n" or "\r\n".
    std::string picture;  ///< If it is not empty, this drawing, an SVG file, is printed instead.

    GridFont font;  ///< At a zoom of 100. For a text only the size counts, because its characters all have
                    ///< one width.
    PrintMargins margins;
    int zoom = 100;  ///< In percent; scales everything that a row shows, but not the head and foot of a page.
    PrintTexts texts;
    Files* files = nullptr;  ///< Writes PDF files; must outlive the printing.
    /// Returns the message for a printer that failed, or for a PDF with the `error` that it had. `rest` is
    /// the path of an unfinished file that could not be removed, or empty.
    std::function<std::string(const std::string& name, const std::optional<Error>& error,
                              const std::string& rest)>
        failure;
};

}  // namespace hl
