// What the window and its helper have in common for a page of the web. It needs no widgets.
#pragma once

#include <QVariant>
#include <functional>
#include <string>

namespace hl {

/// The argument that asks the helper to try a page out, and the helper's answer when it is done.
constexpr const char* kTryPage = "--try-page";
constexpr const char* kPageTried = "done";

/// Removes "<link ...>": what it names is not fetched, and the toolkit hides everything that follows one
/// outside of a head.
std::string withoutLinks(const std::string& markup);
/// Returns what a page gets for anything that it names. A picture that is not given here would be looked for
/// on the disk, so every picture is an empty one.
QVariant nothingInstead(int type);

/// Does everything that main() of the helper does to try a page out: lays out the text of `descriptor`.
/// `ready` runs once everything that all pages need is there, so that the time from then on belongs to the
/// page.
int tryPage(int argc, char** argv, int descriptor, const std::function<void()>& ready);

}  // namespace hl
