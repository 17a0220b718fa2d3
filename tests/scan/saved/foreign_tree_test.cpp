// What ncdu and find have found, opened as a report.
#include "scan/saved/foreign_tree.h"

#include "base/text.h"
#include "support/program.h"

namespace hl::test {
namespace {

using namespace std::string_literals;

/// Returns "path size blocks" for each entry, in the order of the walk.
std::vector<std::string> entriesOf(const ForeignTree& tree, std::uint32_t folder = 0,
                                   const std::string& above = "") {
    std::vector<std::string> lines;
    const ForeignEntry& is = tree.at(folder);
    const std::string path = folder == 0 ? tree.source : above + "/" + std::string(tree.name(folder));
    lines.push_back(path + " " + std::to_string(is.size) + " " + std::to_string(is.blocks));
    for (std::uint32_t i = is.firstChild; i != ForeignEntry::kNone; i = tree.at(i).next)
        for (std::string& line : entriesOf(tree, i, path)) lines.push_back(std::move(line));
    return lines;
}

TEST(NcduJson, IsReadWithNamesInAnyBytesAndUnknownKeys) {
    ForeignTree tree;
    const std::string text =
        "[1,2,{\"progname\":\"x\",\"timestamp\":77,\"more\":[{}]},\n[{\"name\":\"/"
        "t\",\"dev\":5,\"asize\":4096},"
        "{\"name\":\"\xFF\\u00e4\\n\",\"asize\":10,\"dsize\":1024,\"new\":{\"a\":[1]}},"
        "[{\"name\":\"d\",\"read_error\":true}],{\"name\":\"o\",\"excluded\":\"othfs\",\"dev\":6},"
        "{\"name\":\"p\",\"excluded\":\"pattern\"},{\"name\":\"l\",\"notreg\":true,\"hlnkc\":true,\"ino\":9}]"
        "]\n";
    ASSERT_EQ(readNcdu(text, tree), ForeignProblem::kNone);
    EXPECT_EQ(entriesOf(tree), (std::vector<std::string>{"/t 4096 0", "/t/\xFF\u00e4\n 10 2", "/t/d 0 0",
                                                         "/t/o 0 0", "/t/l 0 0"}));
    EXPECT_EQ(tree.written, 77);
    EXPECT_EQ(tree.at(2).kind, ForeignEntry::Kind::kUnread);
    EXPECT_EQ(tree.at(3).kind, ForeignEntry::Kind::kOtherMount);
    EXPECT_EQ(tree.at(4).device, 5U);
    EXPECT_EQ(tree.at(4).links, 2U);
}

TEST(NcduJson, IsRefusedIfItIsAnythingElse) {
    const std::string head = "[1,2,{},", good = head + "[{\"name\":\"/t\"}]]";
    ForeignTree whole;
    ASSERT_EQ(readNcdu(good, whole), ForeignProblem::kNone);
    for (std::size_t length = 0; length < good.size(); ++length) {
        ForeignTree tree;
        EXPECT_NE(readNcdu(good.substr(0, length), tree), ForeignProblem::kNone) << length;
    }
    for (const std::string& bad :
         {"[2,0,{},[{\"name\":\"/t\"}]]"s, head + "[{\"name\":\"/t\"}],[{\"name\":\"/u\"}]]",
          head + "[{\"name\":\"/t\"},[]]]", head + "[{\"name\":\"/t\"},{\"name\":\"a/b\"}]]",
          head + "[{\"name\":\"/t\"},{\"asize\":1}]]", head + "[{\"name\":\"/t\"},5]]",
          head + "[{\"name\":\"/t\\u0000\"}]]", head + "[{\"name\":\"\\ud800\"}]]",
          head + "[{\"name\":\"/t\",}]]", good + "x", head + "{\"name\":\"/t\"}]"}) {
        ForeignTree tree;
        EXPECT_NE(readNcdu(bad, tree), ForeignProblem::kNone) << bad;
    }
}

TEST(NcduJson, HasNoLimitOfDepth) {
    std::string text = "[1,2,{},[{\"name\":\"/t\"}", end;
    for (int i = 0; i < 100'000; ++i) {
        text += ",[{\"name\":\"d\"}";
        end += ']';
    }
    ForeignTree tree;
    EXPECT_EQ(readNcdu(text + end + "]]", tree), ForeignProblem::kNone);
    EXPECT_EQ(tree.count(), 100'001U);
}

std::string record(const std::string& path, char type = 'f', const std::string& facts = "10 8 5.5 0") {
    return facts + " " + type + " " + path + "\0"s;
}

TEST(Listing, MakesFoldersThatHaveNoRecordAndTakesNoPathTwice) {
    ForeignTree tree;
    ASSERT_EQ(readListing(record("/s/", 'd') + record("/s/a/b/\xFF\n", 'f') +
                              record("/s/a", 'd', "7 16 -3 9") + record("/s/l", 'l', "1 0 1 0"),
                          tree),
              ForeignProblem::kNone);
    EXPECT_EQ(entriesOf(tree), (std::vector<std::string>{"/s 10 8", "/s/a 7 16", "/s/a/b 0 0",
                                                         "/s/a/b/\xFF\n 10 8", "/s/l 1 0"}));
    const std::string top = record("/s", 'd');
    const std::pair<std::string, ForeignProblem> cases[] = {
        {top + record("/s/a") + record("/s/a"), ForeignProblem::kTwice},
        {top + record("/s/a", 'd') + record("/s/a", 'd'), ForeignProblem::kTwice},
        {top + record("/s/a") + record("/s/a", 'd'), ForeignProblem::kTwice},
        {top + record("/s/a/b") + record("/s/a"), ForeignProblem::kTwice},
        {top + top, ForeignProblem::kTwice},
        {top + record("/s/a") + record("/s/a/b"), ForeignProblem::kRecord},
        {top + record("/t/a"), ForeignProblem::kRecord},
        {top + record("/sa"), ForeignProblem::kRecord},
        {top + record("/s//a"), ForeignProblem::kRecord},
        {top + record("/s/a", 'x'), ForeignProblem::kRecord},
        {top + record("/s/a", 'f', "-1 8 5 0"), ForeignProblem::kRecord},
        {top + record("/s/a", 'f', "10 8 5"), ForeignProblem::kRecord},
        {top + "10 8 5 0 f /s/a", ForeignProblem::kRecord},
        {record("/s", 'f'), ForeignProblem::kRecord},
        {"", ForeignProblem::kRecord}};
    for (const auto& [text, problem] : cases) {
        ForeignTree other;
        EXPECT_EQ(readListing(text, other), problem) << text;
    }
}

// --- the program

struct OpeningOfTheProgram : testing::Test {
    OpeningOfTheProgram() {
        makeTree(top, {"a/", "a/\"b\n\xFF/", "empty/"});
        makeFile(top + "/a/film", 300'000);
        makeFile(top + "/a/\"b\n\xFF/x", 5);
        must(::symlink("nowhere", (top + "/dangling").c_str()));
        report = program.run({"-s", "-", top}).output;
    }
    Ended open(const std::string& file) const { return program.run({"-s", "--open", file, "-"}); }

    const TempDir dir;
    const std::string top = dir.path();
    const Program program;
    std::string report;
};

TEST_F(OpeningOfTheProgram, WhatNcduOrFindFoundGivesTheSameReport) {
    const std::string ours = program.home("x.ncdu.json"), listing = program.home("list"),
                      scan = program.home("x.hlscan");
    ASSERT_EQ(program.run({"-s", ours, top}).status, 0);
    EXPECT_EQ(open(ours).output, report);
    outputOf("find '" + top + "' -printf '%s %b %T@ %U %y %p\\0' > '" + listing + "'");
    EXPECT_EQ(open(listing).output, report);
    EXPECT_EQ(open(listing).status, 0);
    ASSERT_EQ(program.run({"-s", "--open", ours, scan}).status, 0);
    EXPECT_EQ(open(scan).output, report);
}

TEST_F(OpeningOfTheProgram, NamesTheFileAndTheReasonIfItCannotBeOpened) {
    const std::pair<std::string, std::string> cases[] = {{"Path,Size", "weder ein gespeicherter Scan"},
                                                         {"[1,2", "das JSON ist nicht lesbar"},
                                                         {"1 2 3", "ein Datensatz der Liste"},
                                                         {"HLSCAN1\n{}", "die Datei ist abgeschnitten"},
                                                         {"\x28\xB5\x2F\xFD", "zstd -dc "},
                                                         {"", "weder ein gespeicherter Scan"}};
    for (const auto& [content, reason] : cases) {
        writeFile(program.home("bad"), content);
        const Ended ended = open(program.home("bad"));
        EXPECT_EQ(ended.status, 1) << content;
        EXPECT_EQ(ended.output, "");
        EXPECT_TRUE(has(ended.errors, program.home("bad") + " kann nicht geöffnet werden: ")) << ended.errors;
        EXPECT_TRUE(has(ended.errors, reason)) << ended.errors;
        EXPECT_EQ(std::ranges::count(ended.errors, '\n'), 1);
    }
    EXPECT_EQ(open(program.home("gone")).status, 1);
    EXPECT_EQ(program.run({"-s", "--open", "x", "-", top}).status, 2);
    EXPECT_EQ(program.run({"--open", "x"}).status, 2);
}

}  // namespace
}  // namespace hl::test
