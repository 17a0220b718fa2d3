// Feeds any bytes as ncdu's JSON and as a listing of find: whatever is taken has to be a tree.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "require.h"
#include "scan/saved/foreign_tree.h"

using hl::ForeignEntry;
using hl::ForeignTree;
using hl::fuzz::require;

namespace {

void check(const ForeignTree& tree) {
    require(tree.count() > 0 && tree.at(0).isFolder() && tree.source.starts_with('/'));
    std::uint32_t children = 0;
    for (std::uint32_t i = 0; i < tree.count(); ++i) {
        require(i == 0 || (!tree.name(i).empty() && tree.name(i).find('/') == std::string_view::npos));
        for (std::uint32_t c = tree.at(i).firstChild; c != ForeignEntry::kNone; c = tree.at(c).next) {
            require(c > i && tree.at(i).isFolder());
            ++children;
        }
    }
    require(children == tree.count() - 1);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    ForeignTree ncdu, listing;
    if (hl::readNcdu(text, ncdu) == hl::ForeignProblem::kNone) check(ncdu);
    if (hl::readListing(text, listing) == hl::ForeignProblem::kNone) check(listing);
    return 0;
}
