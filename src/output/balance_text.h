// Puts a balance into words: tells what its lines are called and how figures are shown, and writes the whole
// as a text or as JSON. For the thread of the logic.
#pragma once

#include <string>
#include <string_view>

#include "app/texts.h"
#include "base/number_format.h"
#include "output/balance.h"

namespace hl {

/// What words and numbers are written with.
struct BalanceWords {
    const Texts& texts;
    const NumberFormat& numbers;
};

std::string captionOf(const BalanceWords& words, const BalanceEntry& entry);
/// Returns what the line means and where its figure comes from.
std::string tipOf(const BalanceWords& words, BalanceLine line);
/// Returns the figure in bytes, signed where it is added or subtracted; or why it is not known; or both, if
/// there may be more.
std::string bytesOf(const BalanceWords& words, const BalanceEntry& entry);
/// Returns the figure in the unit that fits it; empty if it is not known.
std::string sizeOf(const BalanceWords& words, const BalanceEntry& entry);

/// The balance of one source.
struct SourceBalance {
    std::string source;  ///< Its path, as bytes.
    BalanceState state = BalanceState::kThere;
    DiskPart part = DiskPart::kPlain;        ///< Tells why there is none, if it is no whole disk.
    std::int64_t ended = 0;                  ///< When the scan ended, in seconds since 1970.
    bool changed = false;                    ///< The source was changed since.
    std::vector<BalanceEntry> entries = {};  ///< Empty unless the state is kThere.
};

/// Returns the sentence that stands in the place of a balance that is not there; empty if it is there.
std::string whyNoBalance(const Texts& texts, const SourceBalance& balance);
/// Returns "as of 14:03" if the source was changed since the scan; else an empty text.
std::string asOf(const Texts& texts, const SourceBalance& balance);

/// Appends lines of text: a title, and the table or why there is none.
void appendBalanceText(std::string& out, const BalanceWords& words, const SourceBalance& balance);

/// Appends an object: {"path","path64"?,"state":"complete"|"no_whole_disk"|"stopped","ended","lines":[...]}.
/// A line is {"line","role","bytes"} with "unknown" ("needs_root" or "not_told"), "program", "process" and
/// "folders" where they are needed; bytes is null if nothing of the figure is known, and negative only where
/// the rest is. Names and words do not depend on the language.
void appendBalanceJson(std::string& out, const SourceBalance& balance);

}  // namespace hl
