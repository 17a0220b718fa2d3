// Pages on their way out: into a PDF and to a printer. Thread of the logic; the window goes on painting
// meanwhile.
#pragma once

#include <QPrinter>
#include <QWidget>
#include <functional>
#include <string>

#include "platform/qt/forms/dialogs.h"
#include "platform/qt/print/print_pages.h"

namespace hl {

enum class PrintResult { kDone, kCancelled, kFailed };

/// Called before each page with its number, from 0; false ends the printing.
using PageWatch = std::function<bool(int)>;

/// Pages from 0, both included. All of them unless a printer was asked for some.
struct PageRange {
    int first, last;
};
PageRange allOf(const PrintPages& pages);
PageRange wantedOf(const PrintPages& pages, const QPrinter& printer);

/// Why there is no PDF.
struct PdfFailure {
    int error = 0;     ///< System error code.
    std::string rest;  ///< Path of an unfinished file that could not be removed; else empty.
};
/// An older file stays as it was until the new one is complete, and if that never comes.
PrintResult writePdf(const PrintPages& pages, PageRange range, const std::string& path,
                     const PageWatch& watch, PdfFailure& failure);
/// The pages and copies that the printer was asked for. Fails if the printer cannot be had.
PrintResult printPages(const PrintPages& pages, QPrinter& printer, const PageWatch& watch);

/// Where the user is asked, and told.
struct PrintDesk {
    QWidget* parent;
    const DialogTexts& texts;
};

/// The same with a window that shows how far it is, from which it can be cancelled, and a message for what
/// failed. True if it was written.
bool writePdfShown(const PrintDesk& desk, const PrintPages& pages, PageRange range, const std::string& path);
/// Asks for a path first; without one nothing is written.
bool askAndWritePdf(const PrintDesk& desk, const PrintPages& pages);
/// Asks for the printer, or for a PDF in its place, and prints. `page` is what the dialog begins with. True
/// if all was printed.
bool askAndPrint(const PrintDesk& desk, const PrintJob& job, const IconSource& icon, const QPageLayout& page);

}  // namespace hl
