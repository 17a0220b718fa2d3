// Tests which snapshots a report leaves out, after a scan and after changes.
#include "scan/snapshots.h"

#include "scan/report_changes.h"
#include "support/rescan_fixture.h"

namespace hl::test {
namespace {

/// Returns the source "/s" with 30 bytes in two files at each place. "a/b=2<1" is the root of the subvolume
/// 2, a snapshot of 1; it can be written if a "w" follows. The place "." is the source itself.
Item sourceOf(const std::string& places) {
    Item source = folder("/s");
    std::istringstream words(places);
    for (std::string word; words >> word;) {
        Item* at = &source;
        std::istringstream names(word.substr(0, word.find('=')));
        for (std::string name; std::getline(names, name, '/') && name != ".";) {
            auto there = std::ranges::find(at->items, name, &Item::name);
            if (there == at->items.end()) there = at->items.insert(there, folder(name));
            at = &*there;
        }
        at->items.insert(at->items.end(), {file("x", 10), folder("d", {file("y", 20, 7, 2)})});
        Subvolume is;
        is.readOnly = word.back() != 'w';
        if (std::sscanf(word.c_str(), "%*[^=]=%lu<%lu", &is.id.low, &is.origin.low) > 0) at->subvolume = is;
    }
    return source;
}

struct Snapshots : RescanFixture {
    /// Returns such as "/s 30 2/3; c 0 0/0: Snapshot von /s/b": the source, and what is left out.
    std::string outcome() const {
        std::string text = numbersOf(report.firstRoot());
        for (std::size_t i = 0; i < report.rowCount(); ++i)
            if (const Row row = report.rowAt(i); isLeftOut(report, row))
                text += "; " + numbersOf(row) + ": " + std::string(report.rowNote(row));
        return text;
    }
};

TEST_F(Snapshots, OnlyAReadOnlyOneWhoseOriginIsInTheSourceIsLeftOut) {
    options.CreateListTOP = options.CreateListHardlink = 1;
    const std::pair<const char*, const char*> cases[] = {
        {"a=1 b=2<1", "/s 30 2/3; b 0 0/0: Snapshot von /s/a"},
        {"b=2<1 a=1", "/s 30 2/3; b 0 0/0: Snapshot von /s/a"},
        {"c/c/b=2<1 a=1", "/s 30 2/5; b 0 0/0: Snapshot von /s/a"},
        {".=1 b=2<1", "/s 30 2/2; b 0 0/0: Snapshot von /s"},
        {"a=1 b=2<1w", "/s 60 4/4"},  // It can be written.
        {"a=1 b=2", "/s 60 4/4"},     // It was received.
        {"a=1 b=2<3", "/s 60 4/4"},   // Its origin is elsewhere.
        {".=2<1", "/s 30 2/1"},       // A source is read.
        {"c=3<2 b=2<1 a=1", "/s 30 2/4; b 0 0/0: Snapshot von /s/a; c 0 0/0: Snapshot von /s/b"},
        {"c=3<2 b=2<1", "/s 30 2/3; c 0 0/0: Snapshot von /s/b"},
        // Nested in one that is read late.
        {"b=2<9 b/c=3<4 a=4", "/s 60 4/5; c 0 0/0: Snapshot von /s/a"},
    };
    for (const auto& [places, wanted] : cases) {
        begin(sourceOf(places));
        EXPECT_EQ(outcome(), wanted) << places;
        const auto counted = static_cast<std::size_t>(report.number(report.firstRoot(), kFiles));
        EXPECT_TRUE(top.rowCount() == counted && hardlinks.rowCount() == counted / 2)
            << places << ": the lists";
    }
    options.CountSnapshots = 1;
    begin(sourceOf("a=1 b=2<1"));
    EXPECT_EQ(outcome(), "/s 60 4/4");
    EXPECT_FALSE(disk.lastOptions.wantSubvolumes);
}

TEST_F(Snapshots, OneThatIsReadLateCountsInAllRowsAboveAsAnyFolder) {
    Item source = sourceOf("a/b/late a/c");
    Item& late = source.items[0].items[0].items[0];
    late.items[0].details = {.written = 500, .blocks = 8};
    late.items.push_back(with(folder("shut"), &Item::error, 13));
    begin(source);
    const Lines plain = figuresOf(*this);
    late.subvolume = Subvolume{{0, 2}, {0, 1}, true};
    begin(source);
    EXPECT_EQ(figuresOf(*this), plain);
    EXPECT_EQ(disk.reads.back(), "/s/a/b/late/");
    state.deepestRows = 1;
    begin(source);
    EXPECT_EQ(figuresOf(*this)[0], plain[0]) << "and in the sums of rows that are folded";
}

TEST_F(Snapshots, StopLeavesWhatIsUndecidedIncomplete) {
    const auto stoppedAt = [&](int block) {
        disk.at = {{disk.blocks + block, [&] { state.CancelState = kCancelStop; }}};
        begin(sourceOf("a/b=2<9 c=3<8 e=4<2"));
        std::string pictures;
        for (const char* name : {"/s", "b", "c", "e"})
            pictures += std::to_string(report.picture(rowOf(name))) + " ";
        return pictures + std::to_string(report.mark(report.firstRoot()));
    };
    // The source, a, the three roots, then those that count. Of the last it is known that it is b again.
    EXPECT_EQ(stoppedAt(6), "70 70 70 71 2");
    EXPECT_EQ(stoppedAt(8), "70 23 70 71 1");
}

TEST_F(Snapshots, AfterChangesTheFiguresAreThoseOfAFreshScan) {
    struct Case {
        const char* places;
        std::vector<const char*> readAgain;
    };
    const Case cases[] = {
        {"a/o=1 b/s=2<1", {"/s/b/s", "/s/b", "/s/a", "/s/a/o"}},
        {"a/x b/s=2<1", {"/s/a"}},
        {"a/o=1 b/s=2<1 b/new=3<1", {"/s/b"}},
        {"a/o=1 b/s=2<1w", {"/s/b/s"}},
        {"a/o=1<2 b/s=2<1", {"/s/a"}},
        {"a/s=2<1 b/o=1", {"/s/a", "/s/b"}},
    };
    for (const Case& each : cases) {
        begin(sourceOf("a/o=1 b/s=2<1"));
        disk.sources = {sourceOf(each.places)};
        for (const char* path : each.readAgain) rescanPath(path);
        EXPECT_EQ(figuresOf(*this), figuresOfAFreshScan()) << each.places;
    }
    const auto change = [&](const char* places, void (*tell)(ReportChanges&)) {
        begin(sourceOf("a/o=1 b/s=2<1"));
        disk.sources = {sourceOf(places)};
        ReportChanges changes(scan);
        tell(changes);
        changes.finish();
        EXPECT_EQ(figuresOf(*this), figuresOfAFreshScan()) << places;
    };
    change("b/s=2<1", [](ReportChanges& changes) { changes.folderWent("/s/a"); });
    change("n/o=1 b/s=2<1", [](ReportChanges& changes) { changes.folderRenamed("/s/a", "n"); });
    change("a/o=1 b/s=2<1", [](ReportChanges& changes) {
        changes.filesChanged("/s/b/s");
        changes.folderChanged("/s/b");
    });
}

TEST_F(Snapshots, AfterManyRandomChangesToo) {
    std::mt19937 random(5);
    std::uint64_t lastId = 0;
    // A snapshot holds no subvolumes.
    const std::function<void(Item&, int)> grow = [&](Item& into, int depth) {
        into.items = {file("f", random() % 1000)};
        for (auto i = depth > 0 ? random() % 5 : 0; i > 0; --i) {
            Item below = folder("d" + std::to_string(random() % 1'000'000));
            const bool snapshot = lastId > 0 && random() % 3 == 0;
            const std::uint64_t origin =
                snapshot ? lastId - random() % std::min<std::uint64_t>(lastId, 6) : 0;
            if (snapshot || random() % 4 == 0)
                below.subvolume = Subvolume{{0, ++lastId}, {0, origin}, random() % 4 != 0};
            grow(below, snapshot ? 0 : depth - 1);
            into.items.push_back(std::move(below));
        }
    };
    begin(folder("/s"));
    std::size_t longest = 0;
    for (int step = 0; step < 120; ++step) {
        Row row = report.rowAt(random() % report.rowCount());
        if (report.number(row, kIsFolder) == 0) row = report.parent(row);
        const std::string path = Report_GetFullpathOfNode(report, row, false, paths);
        Item& item = *disk.find(path);
        grow(item, item.subvolume && item.subvolume->isSnapshot() ? 0 : 3);
        rescanPath(path);
        ASSERT_EQ(figuresOf(*this), figuresOfAFreshScan()) << step;
        longest = std::max(longest, outcome().size());
    }
    EXPECT_GT(longest, 100U) << "hardly any was left out";
}

}  // namespace
}  // namespace hl::test
