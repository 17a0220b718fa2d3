// Saved scans: what is read comes back, byte for byte, and nothing else is taken for one.
#include "base/base64.h"
#include "base/crc32.h"
#include "base/json_text.h"
#include "base/leb128.h"
#include "base/text.h"
#include "scan/saved/scan_writer.h"
#include "support/program.h"
#include "support/saved_scans.h"

namespace hl::test {
namespace {

TEST(SavedScan, OpenedAndSavedAgainHasTheSameBytesAndRows) {
    for (unsigned seed = 0; seed < 120; ++seed) {
        SavingBench first, second;
        first.state.leaving.rules = {"a*/"};
        first.disk.sources = {RandomScan(seed).source("/top \xFF")};
        first.readSources({"/top \xFF"});
        const std::string bytes = first.saved();
        ASSERT_TRUE(second.open(bytes)) << seed;
        EXPECT_EQ(second.saved(), bytes) << seed;
        EXPECT_EQ(second.rows(), first.rows()) << seed;
        const Row before = first.report.firstRoot(), after = second.report.firstRoot();
        EXPECT_EQ(second.report.unshown(after).folders, first.report.unshown(before).folders);
        EXPECT_EQ(second.statistics.of(second.report, after)->all,
                  first.statistics.of(first.report, before)->all);
        EXPECT_NE(savedScanOf(second.scan, second.report.rowAt(second.report.rowCount() - 1)), nullptr);
        EXPECT_EQ(savedScanOf(first.scan, before), nullptr);
    }
}

/// Each file that a reading of the folder finds, as "folder/file size", by its size.
void addFiles(const Item& top, std::multimap<std::uint64_t, std::string, std::greater<>>& files) {
    for (const Item& item : top.items) {
        if (item.isFolder() && item.error == 0) addFiles(item, files);
        if (!item.isFolder() && item.facts.size > 0)
            files.emplace(item.facts.size, top.name + "/" + item.name);
    }
}

TEST(SavedScan, HasTheLargestFilesWithTheirFoldersOwnersAndTimes) {
    int scansWithMore = 0;
    for (unsigned seed = 0; seed < 60; ++seed) {
        SavingBench bench;
        const Item source = RandomScan(seed).source("/top");
        bench.disk.sources = {source};
        bench.readSources({"/top"});
        const ScanReading reading = readScan(bench.saved());
        ASSERT_EQ(reading.problem, ScanProblem::kNone);
        std::vector<std::string> folders;
        ScanRecords records(reading.file);
        for (ScanRecord record; records.next(record);) folders.emplace_back(record.name);
        folders[0] = "/top";
        std::vector<std::pair<std::uint64_t, std::string>> found, wanted;
        for (const LargestRecord& file : reading.file.scan->largest) {
            found.emplace_back(file.bytes, folders[file.record] + "/" + file.name);
            EXPECT_EQ(reading.file.scan->owners[file.owner].first % 1000, 0U);
        }
        std::multimap<std::uint64_t, std::string, std::greater<>> files;
        addFiles(source, files);
        for (const auto& file : files)
            if (wanted.size() < 20) wanted.emplace_back(file);
        EXPECT_EQ(found, wanted) << seed;
        scansWithMore += files.size() > 20 ? 1 : 0;
    }
    EXPECT_GT(scansWithMore, 10);
}

TEST(SavedScan, TellsTheSourceItsTimesAndWhetherItIsWhole) {
    SavingBench bench;
    bench.disk.sources = {folder("/a\xFF", {folder("b"), with(folder("shut"), &Item::error, 13)})};
    bench.readSources({"/a\xFF"});
    const std::string bytes = bench.saved();
    const ScanReading reading = readScan(bytes);
    ASSERT_EQ(reading.problem, ScanProblem::kNone);
    const ScanHeader& header = reading.file.scan->header;
    EXPECT_EQ(header.source, "/a\xFF");
    EXPECT_EQ(header.host, "host");
    EXPECT_EQ(header.started, bench.state.Started);
    EXPECT_FALSE(header.complete);
    EXPECT_EQ(reading.file.scan->sums, (ScanSums{.folders = 2, .errors = 1}));
    EXPECT_FALSE(has(bench.saved(ScanNames::kNone), "\"host\":\"host\""));
    EXPECT_TRUE(has(bytes, "\"source64\":\"" + base64("/a\xFF") + "\",\"started\":"));
}

TEST(SavedScan, EachByteAlteredOrCutIsRefusedOrTheSame) {
    SavingBench bench;
    bench.disk.sources = {
        folder("/s", {file("x.txt", 300), folder("long name", {file("y", 5)}), linkTo("l", "/")})};
    bench.readSources({"/s"});
    const std::string whole = bench.saved();
    ASSERT_EQ(readScan(whole).problem, ScanProblem::kNone);
    for (std::size_t at = 0; at < whole.size(); ++at) {
        EXPECT_NE(readScan(whole.substr(0, at)).problem, ScanProblem::kNone) << at;
        std::string altered = whole;
        for (int value = 0; value < 256; ++value) {
            altered[at] = static_cast<char>(value);
            EXPECT_EQ(readScan(altered).problem == ScanProblem::kNone, altered == whole)
                << at << " " << value;
        }
        EXPECT_NE(readScan(whole.substr(0, at) + whole.substr(at + 1)).problem, ScanProblem::kNone) << at;
    }
    EXPECT_EQ(readScan(whole + "x").problem, ScanProblem::kCut);
}

// --- files whose checksum is right

std::string leb(std::uint64_t number) {
    std::string text;
    appendLeb(text, number);
    return text;
}
std::string leb(std::initializer_list<std::uint64_t> numbers) {
    std::string text;
    for (const std::uint64_t number : numbers) appendLeb(text, number);
    return text;
}
std::string named(const std::string& name, const std::string& rest) {
    return leb(name.size()) + name + rest;
}
std::string framed(const std::string& content) {
    Crc32 crc;
    crc.add(content);
    std::string text = content;
    for (unsigned shift = 0; shift < 32; shift += 8) text += static_cast<char>(crc.value() >> shift & 255U);
    return text + "HLEND\n";
}
std::string scanOf(const std::string& records, const std::string& tables,
                   const std::string& header = "{\"source\":\"/s\",\"started\":100}") {
    return framed("HLSCAN1\n" + header + "\n" + records + tables);
}
const std::string kNoTables = leb({0, 0, 0});
const std::string kEmptySource = named("", leb({0, 0, 0, 0}));

TEST(SavedScan, IsCheckedBehindItsChecksum) {
    using P = ScanProblem;
    const std::string noSums = leb({0, 0, 0, 0, 0});
    const std::string one = named("", leb({0, 5, 1, 0}));  // A source with one folder.
    const std::string big = leb(std::uint64_t{1} << 63), most = leb((std::uint64_t{1} << 63) - 1);
    const std::string cell = leb({2, 0, 0}), files = leb({0, 0, 0, 3}) + leb({30, 6, 0});
    const std::string txt = leb(1) + named("txt", ""), root = leb({1, 0}) + named("root", "");
    const std::string sums = leb({0, 3, 30, 6, 0});
    const std::tuple<std::string, ScanProblem> cases[] = {
        {scanOf(kEmptySource, kNoTables + noSums), P::kNone},
        {scanOf(one + named("a", leb({0, 0, 0, 0})), kNoTables + leb({1, 0, 0, 0, 0})), P::kNone},
        {scanOf(named("", files + leb(1) + cell), txt + root + leb(0) + sums), P::kNone},
        {scanOf(named("", files + leb(1) + cell), leb({0}) + root + leb(0) + sums), P::kIndex},
        {scanOf(named("", files + leb(1) + cell), txt + leb({0, 0}) + sums), P::kIndex},
        {scanOf(named("", files + leb({1, 0, 9, 0})), txt + root + leb(0) + sums), P::kIndex},
        {scanOf(named("", files + leb(2) + cell + leb({4, 0, 0}) + cell), txt + root + leb(0) + sums),
         P::kSums},
        {scanOf(named("", files + leb(0)), kNoTables + leb({0, 3, 31, 6, 0})), P::kSums},
        {scanOf(kEmptySource, leb({0, 0, 1, 1}) + named("f", leb({1, 0, 0, 0})) + noSums), P::kIndex},
        {scanOf(kEmptySource, leb({0, 0, 65'537}) + noSums), P::kTooLarge},
        {scanOf(kEmptySource, leb(1) + named("TXT", leb({0, 0})) + noSums), P::kFolder},
        {scanOf(kEmptySource, kNoTables + leb({1, 0, 0, 0, 0})), P::kSums},
        {scanOf(kEmptySource, kNoTables + noSums + "x"), P::kFolder},
        {scanOf(kEmptySource, kNoTables), P::kFolder},
        {scanOf(named("x", leb({0, 0, 0, 0})), kNoTables + noSums), P::kFolder},
        {scanOf(one + named("a/b", leb({0, 0, 0, 0})), kNoTables + leb({1, 0, 0, 0, 0})), P::kFolder},
        {scanOf(one + named("", leb({0, 0, 0, 0})), kNoTables + leb({1, 0, 0, 0, 0})), P::kFolder},
        {scanOf(one + named(std::string(4097, 'a'), leb({0, 0, 0, 0})), kNoTables + leb({1, 0, 0, 0, 0})),
         P::kFolder},
        {scanOf(one, ""), P::kFolder},
        {scanOf(named("", leb({256, 0, 0, 0})), kNoTables + noSums), P::kFolder},
        {scanOf(named("", std::string("\0\x80\0\0\0", 5)), kNoTables + noSums), P::kFolder},
        {scanOf(named("", leb(0) + std::string(10, '\xFF') + leb({0, 0})), kNoTables + noSums), P::kFolder},
        {scanOf(named("", leb({0, 0, 0, 0x8000'0000})), kNoTables + noSums), P::kTooLarge},
        {scanOf(named("", leb({0, 0, 0, 1}) + big), kNoTables + noSums), P::kTooLarge},
        {scanOf(named("", leb({0, 0, 1, 1}) + most + leb({0, 0, 0})) +
                    named("a", leb({0, 0, 0, 1}) + leb({1, 0, 0, 0})),
                kNoTables + noSums),
         P::kTooLarge},
        {scanOf(kEmptySource, kNoTables + noSums, "{\"source\":\"s\"}"), P::kHeader},
        {scanOf(kEmptySource, kNoTables + noSums, "{\"source\":\"/s\",\"started\":1.5}"), P::kHeader},
        {scanOf(kEmptySource, kNoTables + noSums, "{\"source\":\"/s\""), P::kHeader},
        {scanOf(kEmptySource, kNoTables + noSums, "{\"source\":\"/" + std::string(65'536, 'a') + "\"}"),
         P::kHeader},
        {"HLSCAN2\n", P::kLaterVersion},
        {"HLSCAN12\nsomething", P::kLaterVersion},
        {"HLSCAN1\n", P::kCut},
        {"HLSCAN", P::kCut},
        {"Path,Size", P::kNoScan},
        {"", P::kNoScan}};
    int number = 0;
    for (const auto& [bytes, problem] : cases)
        EXPECT_EQ(readScan(bytes).problem, problem) << "case " << number++;
}

// A count costs nothing before what it counts is there.
TEST(SavedScan, ACountOfTooMuchCostsNoMemory) {
    const std::string huge = leb((std::uint64_t{1} << 31) - 1), far = leb(~std::uint64_t{0});
    EXPECT_NE(readScan(scanOf(named("", leb({0, 0}) + huge + leb(0)), "")).problem, ScanProblem::kNone);
    EXPECT_NE(readScan(scanOf(named("", leb({0, 0, 0, 1, 1, 1, 1}) + far), "")).problem, ScanProblem::kNone);
    EXPECT_NE(readScan(scanOf(kEmptySource, leb(0) + far)).problem, ScanProblem::kNone);
}

// --- the program

TEST(SavedScanOfTheProgram, IsForTheUserAloneAndByName) {
    const TempDir dir;
    makeTree(dir.path(), {"tree/", "tree/a/"});
    makeFile(dir.path() + "/tree/a/film.mkv", 3000);
    const Program program;
    const std::string scan = program.home("x.HLSCAN"), tree = dir.path() + "/tree";
    writeFile(scan, "old");
    ASSERT_EQ(program.run({"-s", scan, tree}).status, 0);
    struct stat facts {};
    must(::stat(scan.c_str(), &facts));
    EXPECT_EQ(facts.st_mode & 0777U, 0600U);
    const ScanReading reading = readScan(contentOf(scan));
    ASSERT_EQ(reading.problem, ScanProblem::kNone);
    EXPECT_EQ(reading.file.scan->endings, std::vector<std::string>{"mkv"});
    ScanRecords records(reading.file);
    ScanRecord record;
    ASSERT_TRUE(records.next(record) && records.next(record));
    must(::stat((tree + "/a").c_str(), &facts));
    EXPECT_EQ(record.inode, facts.st_ino);
    EXPECT_EQ(record.own.bytes, 3000U);
    ASSERT_EQ(reading.file.scan->largest.size(), 1U);
    EXPECT_EQ(reading.file.scan->largest[0].name, "film.mkv");
    const std::string again = program.home("again.hlscan");
    ASSERT_EQ(program.run({"-s", "--open", scan, again}).status, 0);
    EXPECT_EQ(contentOf(again), contentOf(scan));
    ASSERT_EQ(program.run({"-s", "--no-names", "--format=scan", scan, tree}).status, 0);
    const ScanReading bare = readScan(contentOf(scan));
    EXPECT_EQ(bare.file.scan->header.host, "");
    EXPECT_EQ(bare.file.scan->owners[0].second, "");
}

TEST(SavedScanOfTheProgram, TakesNoOptionThatIsOfNoUse) {
    const std::vector<std::vector<std::string>> lines = {
        {"-s2", "/x.hlscan", "/a"},
        {"-s", "-d1", "/x.hlscan", "/a"},
        {"-s", "/x.hlscan", "/a", "/b"},
        {"-s", "--no-names", "/x.csv", "/a"},
        {"--no-names", "/a"},
        {"-s", "--no-names", "--no-names", "/x.hlscan", "/a"},
        {"-s", "-d1", "/x.jsonl", "/a"},
        {"-s", "--progress=csv", "/x.jsonl", "/a"},
        {"-s", "--grown=1G", "/x.csv", "/a"}};
    const Program program;
    for (const auto& line : lines) {
        const Ended ended = program.run(line);
        EXPECT_EQ(ended.status, 2) << testing::PrintToString(line);
        EXPECT_EQ(std::ranges::count(ended.errors, '\n'), 1) << ended.errors;
    }
}

// --- lines for programs

TEST(JsonLinesOfTheProgram, TellSourcesFoldersErrorsAndEnds) {
    const TempDir dir;
    makeTree(dir.path(), {"t/", "t/a/", "t/a/deep/", "t/\xFF/", "t/shut/"});
    makeFile(dir.path() + "/t/a/x", 3000);
    makeFile(dir.path() + "/t/a/deep/y", 70);
    makeFile(dir.path() + "/t/z", 5);
    must(::chmod((dir.path() + "/t/shut").c_str(), 0));
    must(::chmod(dir.path().c_str(), 0755));
    const Program program;
    const Ended ended = program.run({"-s1", "--format=jsonl", "-", dir.path() + "/t"}, becomeNobody);
    must(::chmod((dir.path() + "/t/shut").c_str(), 0700));
    EXPECT_EQ(ended.status, 1);
    std::string text =
        std::regex_replace(ended.output, std::regex("\"(started|newest|ended|disk)\":[0-9]+"), "\"$1\":N");
    text = replaceAll(text, dir.path(), "D");
    text = std::regex_replace(text, std::regex("\"host\":\"[^\"]*\""), "\"host\":H");
    const std::string path64 = base64(dir.path() + "/t/\xFF");
    const std::string expected =
        "{\"k\":\"s\",\"v\":1,\"host\":H,\"path\":\"D/t\",\"started\":N,\"levels\":1,\"options\":{"
        "\"follow_links\":false,\"links_shown\":true,\"hardlinks_once\":false,\"snapshots\":false,"
        "\"caches_left_out\":false,\"rules\":[]}}\n"
        "{\"k\":\"f\",\"path\":\"D/t\",\"depth\":0,\"size\":3075,\"disk\":N,\"files\":3,\"folders\":4,"
        "\"own_files\":1,\"own_size\":5,\"newest\":N,\"errors\":1,\"flags\":[]}\n"
        "{\"k\":\"f\",\"path\":\"D/t/a\",\"depth\":1,\"size\":3070,\"disk\":N,\"files\":2,\"folders\":1,"
        "\"own_files\":1,\"own_size\":3000,\"newest\":N,\"errors\":0,\"flags\":[]}\n"
        "{\"k\":\"f\",\"path\":\"D/t/shut\",\"depth\":1,\"size\":0,\"disk\":N,\"files\":0,\"folders\":0,"
        "\"own_files\":0,\"own_size\":0,\"newest\":N,\"errors\":1,\"flags\":[\"error\"]}\n"
        "{\"k\":\"f\",\"path\":\"D/t/\uFFFD\",\"path64\":\"" +
        path64 +
        "\",\"depth\":1,\"size\":0,\"disk\":N,\"files\":0,\"folders\":0,"
        "\"own_files\":0,\"own_size\":0,\"newest\":N,\"errors\":0,\"flags\":[]}\n"
        "{\"k\":\"e\",\"path\":\"D/t/shut\",\"errno\":13,\"error\":\"Permission denied\"}\n"
        "{\"k\":\"t\",\"path\":\"D/t\",\"size\":3075,\"disk\":N,\"files\":3,\"folders\":4,\"errors\":1,"
        "\"left_out\":0,\"ended\":N,\"complete\":false}\n";
    EXPECT_EQ(text, expected);
}

}  // namespace
}  // namespace hl::test
