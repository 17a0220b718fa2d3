// The statistics of folders: against find and awk on the disk, and after changes, with the largest files of
// the source, against a fresh scan.
#include "scan/statistics.h"

#include "platform/linux/scan/file_system.h"
#include "support/program.h"
#include "support/rescan_fixture.h"
#include "support/trees.h"

namespace hl::test {
namespace {

using Figures = std::map<std::string, std::string>;

std::string textOf(const FileSums& sums) {
    return std::to_string(sums.files) + " " + std::to_string(sums.bytes) + " " + std::to_string(sums.blocks);
}

/// Returns each group with its files, bytes and blocks.
Figures groupsOf(const StatisticsSums& sums) {
    Figures all;
    for (const EndingSums& each : sums.endings) all["ending " + each.ending] = textOf(each.sums);
    for (const OwnerSums& each : sums.owners) all["owner " + std::to_string(each.owner)] = textOf(each.sums);
    for (std::size_t i = 0; i < kAgeClasses; ++i)
        if (sums.ages[i].files > 0) all["age " + std::to_string(i)] = textOf(sums.ages[i]);
    return all;
}

TEST(Statistics, AClassOfAgeBeginsAtItsBorder) {
    constexpr std::int64_t kDay = 86'400;
    const std::pair<std::int64_t, int> cases[] = {{0, 0},
                                                  {kDay - 1, 0},
                                                  {kDay, 1},
                                                  {7 * kDay - 1, 1},
                                                  {7 * kDay, 2},
                                                  {30 * kDay, 3},
                                                  {90 * kDay - 1, 3},
                                                  {90 * kDay, 4},
                                                  {180 * kDay, 5},
                                                  {365 * kDay, 6},
                                                  {730 * kDay - 1, 6},
                                                  {730 * kDay, 7},
                                                  {99'999 * kDay, 7},
                                                  {-1, kInTheFuture},
                                                  {-kDay, kInTheFuture}};
    for (const auto& [age, expected] : cases) EXPECT_EQ(ageClassOf(age), expected) << age;
}

TEST(Statistics, EndingsBeyondTheMostThatHaveANumberAreOne) {
    EndingNumbers endings;
    for (std::size_t i = 0; i < EndingNumbers::kMost; ++i) endings.of("a." + std::to_string(i));
    EXPECT_EQ(endings.of("b.one-more"), EndingNumbers::kRest);
    EXPECT_EQ(endings.text(endings.of("x.65534")), "65534");
    EXPECT_EQ(endings.of(".profile"), EndingNumbers::kNone);
}

// --- on the disk

/// A tree on the machine's disk, and what find and awk say of it. It is made, by the seed STATISTICS_SEED, or
/// it is the one that STATISTICS_TREE names, which is only read.
class StatisticsOnDisk : public ScanFixture {
  protected:
    StatisticsOnDisk() {
        const char* seed = std::getenv("STATISTICS_SEED");
        random_.seed(seed != nullptr ? static_cast<unsigned>(std::atoi(seed)) : 7);
        const char* tree = std::getenv("STATISTICS_TREE");
        folders_.push_back(tree != nullptr ? tree : dir.path() + "/tree");
        if (tree == nullptr) makeFiles();
        if (tree != nullptr)
            for (const auto& entry : fs::recursive_directory_iterator(tree))
                if (entry.is_directory() && !entry.is_symlink()) folders_.push_back(entry.path());
        options.CreateStatistics = 1;
        real.statistics = &statistics;
    }
    void makeFiles() {
        makeFolder(folders_.front());
        for (int i = 0; i < 120; ++i) addFolder();
        for (int i = 0; i < 1500; ++i) addFile();
    }
    std::size_t pick(std::size_t below) { return random_() % below; }
    void addFolder() {
        folders_.push_back(folders_[pick(folders_.size())] + "/d" + std::to_string(folders_.size()));
        makeFolder(folders_.back());
    }
    void addFile() {
        static constexpr const char* kNames[] = {"a.jpg",
                                                 "b.JPG",
                                                 ".hidden",
                                                 "plain",
                                                 "c.tar.gz",
                                                 "d.",
                                                 "e.h",
                                                 "f.ÄÖ",
                                                 "g. x",
                                                 "h.\xff",
                                                 "i.a-very-long-ending"};
        const std::string path = folders_[pick(folders_.size())] + "/" + std::to_string(++files_) +
                                 kNames[pick(std::size(kNames))];
        const bool dotFirst = pick(20) == 0;
        const std::string name =
            dotFirst ? path.substr(0, path.rfind('/') + 1) + ".f" + std::to_string(files_) : path;
        if (pick(15) == 0) return fs::create_symlink("nowhere", name);
        writeFile(name, std::string(pick(20'000), 'x'));
        // Near no border, so that the moment of the scan does not matter.
        static constexpr int kHours[] = {-50, 5, 100, 400, 1500, 3000, 6000, 12'000, 30'000};
        fs::last_write_time(name, fs::file_time_type::clock::now() - std::chrono::hours(kHours[pick(9)]));
        if (::geteuid() == 0 && pick(3) == 0) must(::chown(name.c_str(), pick(2) == 0 ? 1000 : 70'000, 0));
    }
    /// Counts what find prints: the ending as awk cuts it off, the owner, and the class of age.
    static Figures foundBy(const std::string& folder, std::int64_t started) {
        const std::string awk =
            R"(BEGIN { FS = "\t"; split("1 7 30 90 180 365 730", border, " ") }
            { n = $5; e = ""; if (match(n, /.\.[^.]*$/)) e = tolower(substr(n, RSTART + 2));
              if (length(e) > 16 || e ~ /[\200-\377]/ && e != "ÄÖ") e = "";
              split($3, t, "."); age = S - t[1]; c = 8; if (age >= 0) { c = 0; for (i = 1; i <= 7; ++i) if (int(age / 86400) >= border[i]) c = i }
              split("ending " e "\towner " $4 "\tage " c, keys, "\t");
              for (k in keys) { f[keys[k]]++; b[keys[k]] += $1; d[keys[k]] += $2 } }
            END { for (k in f) printf "%s\t%d %.0f %.0f\n", k, f[k], b[k], d[k] })";
        const std::string listed =
            outputOf("LC_ALL=C find '" + folder +
                     "' ! -type d ! -xtype d -printf '%s\\t%b\\t%T@\\t%U\\t%f\\n' | LC_ALL=C awk -v S=" +
                     std::to_string(started) + " '" + awk + "'");
        Figures all;
        for (std::string_view rest = listed; !rest.empty(); rest.remove_prefix(rest.find('\n') + 1)) {
            const std::string_view line = rest.substr(0, rest.find('\n'));
            all.emplace(line.substr(0, line.find('\t')), line.substr(line.find('\t') + 1));
        }
        return all;
    }

    LinuxFileSystem machine{limitsOfThisMachine(true)};
    Services onDisk{store, texts, log, files, machine, pump, console, diagnostics, paths, numbers};
    ScanContext real{onDisk, state, options, combo, report, top, hardlinks, junctions, host, host, &host};
    Statistics statistics;
    std::vector<std::string> folders_;
    std::mt19937 random_;
    int files_ = 0;
};

TEST_F(StatisticsOnDisk, AreWhatFindAndAwkCountBelowFiftyRandomFolders) {
    const Row root = QuelleEinlesen(real, folders_.front() + "/", 0, kNoRow);
    ASSERT_EQ(statistics.startOf(report, root), state.Started);
    for (int i = 0; i < 50; ++i) {
        const std::string& folder = i == 0 ? folders_.front() : folders_[pick(folders_.size())];
        const Row row = rowOfFolder(report, root, folder, paths);
        ASSERT_NE(row, kNoRow);
        const auto sums = statistics.of(report, row);
        ASSERT_TRUE(sums);
        EXPECT_EQ(groupsOf(*sums), foundBy(folder, state.Started)) << folder;
        EXPECT_EQ(sums->all.bytes, report.number(row, kSize));
        EXPECT_EQ(sums->all.files, report.number(row, kFiles));
        EXPECT_EQ(sums->all.blocks * kBlockBytes, report.number(row, kDisk));
    }
}

// --- after changes

struct StatisticsAfterChanges : RescanFixture {
    StatisticsAfterChanges() {
        options.CreateStatistics = 1;
        options.LargestKept = 5000;  // More than there are.
        scan.statistics = &statistics;
        scan.largest = &largest;
    }
    /// Returns the statistics of every row by its path; each must add up to its row.
    static void expectLargestGroups(const ScanBench& bench, Statistics& statistics, Row row,
                                    const StatisticsSums& sums) {
        std::map<std::uint32_t, std::uint64_t> kinds, ages, owners;
        for (const EndingSums& each : sums.endings)
            kinds[static_cast<std::uint32_t>(each.kind)] += each.sums.bytes;
        for (std::uint32_t i = 0; i < kAgeClasses; ++i) ages[i] = sums.ages[i].bytes;
        for (const OwnerSums& each : sums.owners) owners[each.owner] = each.sums.bytes;
        const bool own = bench.report.number(row, kIsFolder) == 0;
        const Row folder = own ? bench.report.parent(row) : row;
        for (const auto& [by, bytes] : {std::pair(FileGroups::kKind, &kinds),
                                        {FileGroups::kAge, &ages},
                                        {FileGroups::kOwner, &owners}}) {
            const auto largest =
                statistics.largestGroup(bench.report, folder, {.by = by, .onlyOwn = own}, false);
            ASSERT_EQ(largest.has_value(), sums.all.bytes > 0);
            for (const auto& [group, of] : *bytes)
                if (largest) {
                    EXPECT_LE(of, bytes->at(*largest));
                }
        }
    }
    static std::vector<Figures> allFigures(const ScanBench& bench, Statistics& statistics,
                                           LargestOfSources& largest) {
        std::map<std::string, Figures> byPath;
        const Grid& report = bench.report;
        for (Row row = report.firstRoot(); row != kNoRow; row = report.tree().following(row)) {
            const auto sums = statistics.of(report, row);
            if (!sums) return {};
            EXPECT_EQ(sums->all.files, report.number(row, kFiles));
            EXPECT_EQ(sums->all.bytes, report.number(row, kSize));
            Figures& figures = byPath[Report_GetFullpathOfNode(report, row, false, bench.paths)];
            figures = groupsOf(*sums);
            expectLargestGroups(bench, statistics, row, *sums);
            const LargestFiles& kept = *largest.of(report, row);
            for (auto [at, end] = largest.of(report, row)->of(row); at < end; ++at)
                figures["file " + std::string(kept.nameOf(kept.at(at)))] +=
                    std::to_string(kept.at(at).size) + " " + std::to_string(kept.at(at).written) + ",";
        }
        std::vector<Figures> figures;
        for (auto& [path, each] : byPath) figures.push_back({{path, ""}}), figures.push_back(std::move(each));
        return figures;
    }
    std::vector<Figures> now() { return allFigures(*this, statistics, largest); }
    std::vector<Figures> ofAFreshScan() const {
        ScanBench fresh;
        Statistics ofFresh;
        LargestOfSources largestOfFresh;
        fresh.disk.sources = disk.sources;
        fresh.options.CreateStatistics = 1;
        fresh.options.LargestKept = options.LargestKept;
        fresh.scan.statistics = &ofFresh;
        fresh.scan.largest = &largestOfFresh;
        fresh.readSources({"/s"});
        return allFigures(fresh, ofFresh, largestOfFresh);
    }
    Item randomFile() {
        static constexpr const char* kEndings[] = {"", ".c", ".o", ".iso"};
        Item item = file("f" + std::to_string(random_() % 1000) + kEndings[random_() % 4], random_() % 5000);
        item.details.written = 1'000'000 * static_cast<std::int64_t>(random_() % 1500);
        item.details.owner = static_cast<std::uint32_t>(random_() % 3);
        return item;
    }
    void grow(Item& into, int depth) {
        into.items.clear();
        for (unsigned i = random_() % 4; i > 0; --i) into.items.push_back(randomFile());
        for (unsigned i = depth > 0 ? random_() % 4 : 0; i > 0; --i) {
            into.items.push_back(folder("d" + std::to_string(random_() % 1'000'000)));
            grow(into.items.back(), depth - 1);
        }
    }

    Statistics statistics;
    LargestOfSources largest;
    std::mt19937 random_{5};
};

TEST_F(StatisticsAfterChanges, AreThoseOfAFreshScan) {
    Item source = folder("/s");
    grow(source, 4);
    begin(std::move(source));
    ASSERT_EQ(now(), ofAFreshScan());
    for (int step = 0; step < 120; ++step) {
        Row row = report.rowAt(random_() % report.rowCount());
        if (report.number(row, kIsFolder) == 0) row = report.parent(row);
        const std::string path = Report_GetFullpathOfNode(report, row, false, paths);
        Item& item = *disk.find(path);
        ReportChanges changes(scan);
        switch (random_() % 3) {
            case 0:  // Everything below is another.
                grow(item, 2);
                rescan(row);
                break;
            case 1:  // Files came and went.
                std::erase_if(item.items, [](const Item& each) { return !each.isFolder(); });
                item.items.push_back(randomFile());
                changes.filesChanged(path);
                changes.finish();
                break;
            default:  // The folder went.
                if (report.level(row) == 0) break;
                Item& above = *disk.find(Report_GetFullpathOfNode(report, report.parent(row), false, paths));
                std::erase_if(above.items, [&](const Item& each) { return &each == &item; });
                changes.folderWent(path);
                changes.finish();
        }
        ASSERT_EQ(now(), ofAFreshScan()) << step;
    }
}

TEST_F(StatisticsAfterChanges, AgesCountAgainstTheFirstReadingAndNothingIsKeptForASourceReadWithoutThem) {
    begin(folder("/s", {folder("b", {file("x.c", 40)}), file("y", 8)}));
    const auto started = statistics.startOf(report, report.firstRoot());
    ASSERT_TRUE(started);
    statistics.clear();
    statistics.keepSource(report.firstRoot(), 1'000);
    disk.find("/s/b/x.c")->details.written = 1'001;
    for (const char* path : {"/s", "/s/b"}) {
        rescanPath(path);
        EXPECT_EQ(statistics.startOf(report, report.firstRoot()), 1'000);
        EXPECT_EQ(statistics.of(report, rowOf("b"))->ages[kInTheFuture].bytes, 40U);
    }
    options.CreateStatistics = 0;
    scan.largest = nullptr;
    rescanPath("/s/b");
    EXPECT_TRUE(statistics.of(report, rowOf("b"))) << "a part is read as the rest was";
    rescanPath("/s");
    EXPECT_FALSE(disk.lastOptions.wantOwners);
    EXPECT_FALSE(statistics.of(report, report.firstRoot()));
    options.CreateStatistics = 1;
    rescanPath("/s");
    EXPECT_EQ(statistics.of(report, report.firstRoot())->all.files, 2U);
}

}  // namespace
}  // namespace hl::test
