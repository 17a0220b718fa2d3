// Sends pages to a PDF or to a printer. For the thread of the logic; the window repaints meanwhile.
#pragma once

#include <QPrinter>
#include <QWidget>
#include <functional>
#include <string>

#include "platform/qt/forms/dialogs.h"
#include "platform/qt/print/print_pages.h"

namespace hl {

enum class PrintResult { kDone, kCancelled, kFailed };

/// Is called before each page with its number, from 0; returning false ends the printing.
using PageWatch = std::function<bool(int)>;

/// The first and the last page, counted from 0. These are all pages unless a printer was asked for some.
struct PageRange {
    int first, last;
};
PageRange allOf(const PrintPages& pages);
PageRange wantedOf(const PrintPages& pages, const QPrinter& printer);

/// Why there is no PDF.
struct PdfFailure {
    std::optional<Error> error;
    std::string rest;  ///< The path of an unfinished file that could not be removed; else empty.
};
/// Writes a PDF. An older file stays until the new one is complete.
PrintResult writePdf(const PrintPages& pages, PageRange range, const std::string& path,
                     const PageWatch& watch, PdfFailure& failure);
/// Prints the pages and copies that the printer was asked for. Fails if the printer cannot be used.
PrintResult printPages(const PrintPages& pages, QPrinter& printer, const PageWatch& watch);

/// Where the user is asked and told.
struct PrintDesk {
    QWidget* parent;
    const DialogTexts& texts;
};

/// Writes a PDF like writePdf, with a window that shows the progress and can cancel it, and with a message
/// after a failure. Returns true if it was written.
bool writePdfShown(const PrintDesk& desk, const PrintPages& pages, PageRange range, const std::string& path);
/// Asks for a path first; without one nothing is written.
bool askAndWritePdf(const PrintDesk& desk, const PrintPages& pages);
/// Asks for the printer, or for a PDF instead, and prints. The dialog begins with `page`. Returns true if
/// everything was printed.
bool askAndPrint(const PrintDesk& desk, const PrintJob& job, const IconSource& icon, const QPageLayout& page);

}  // namespace hl
