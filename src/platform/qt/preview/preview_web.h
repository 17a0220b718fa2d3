// What the window and its helper do alike with a page of the web. Needs no widgets.
#pragma once

#include <QVariant>
#include <functional>
#include <string>

namespace hl {

/// The argument with which the helper is asked to try a page out, and what it answers when it is done.
constexpr const char* kTryPage = "--try-page";
constexpr const char* kPageTried = "done";

/// Without "<link ...>": what it names is not fetched, and the toolkit hides all that follows one outside of
/// a head.
std::string withoutLinks(const std::string& markup);
/// What a page gets for whatever it names. A picture that is not given here would be looked for on the disk:
/// every one is an empty one.
QVariant nothingInstead(int type);

/// All that main() of the helper does to try a page out: lays out the text that `descriptor` has, so wide.
/// `ready` runs once all is there that every page needs, so that the time from then on is the page's.
int tryPage(int argc, char** argv, int descriptor, const std::function<void()>& ready);

}  // namespace hl
