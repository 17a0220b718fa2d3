#include "scan/list_fill.h"

#include "base/scope_exit.h"
#include "scan/list_handover.h"
#include "scan/records.h"
#include "scan/walker.h"

namespace hl {

namespace {

void beginTopList(ScanState& state, const Options& options, const std::string& source) {
    state.top.source = source;
    state.top.count = 0;
    state.top.largest = state.top.smallest = SizeValue();
    state.top.maxCount = options.TOPmaxcount;
}

void beginLinks(ScanState& state, const Options& options) {
    state.links.seen.Clear();
    state.links.seen.AllowDuplicateKeys = false;
    state.links.seen.CompareMode(0);
    state.links.needCount = options.CreateListHardlink == 1;
}

void sortList(ScanContext& walk, Grid& list) {
    if (&list == &walk.lvwTOP) trimTopList(walk);
    if (&list == &walk.lvwHardlinks) return sortHardlinks(list);
    list.sortLevels(0);
}

}  // namespace

void fillList(ScanContext& scan, Grid& list, const std::string& source, ScanHost& host) {
    ScanState& state = scan.state;
    Options options = scan.options;
    options.CreateListTOP = &list == &scan.lvwTOP ? 1 : 0;
    options.CreateListHardlink = &list == &scan.lvwHardlinks ? 1 : 0;
    options.CreateListJunction = &list == &scan.lvwJunctions ? 1 : 0;
    options.AddHardlinksOnlyOnce = 0;  // It changes sums alone, and those are dropped.
    Grid report(kFolderCells);         // The walk makes rows here, which nobody sees.
    ScanContext walk{scan,   state,         options,           scan.cboOrdner,
                     report, scan.lvwTOP,   scan.lvwHardlinks, scan.lvwJunctions,
                     host,   scan.controls, scan.types};
    // What the walk notes about its report is no news about the one that is shown.
    const ScopeExit restore([&state, ids = state.sourceIds, deepest = state.DeepestLevel] {
        state.sourceIds = ids;
        state.DeepestLevel = deepest;
        state.links.seen.Clear();
    });
    if (&list == &scan.lvwTOP) beginTopList(state, options, source);
    beginLinks(state, options);
    if (walk.types != nullptr) walk.types->restart();
    list.clear();
    ScanTotals totals;
    Report_ScanFolders(walk, source, report.addRow(kNoRow, source), totals);
    state.leaving.ofLists = totals.leftOut;
    sortList(walk, list);
}

}  // namespace hl
