// The balance as the program writes it: read back, on standard output, and where there is none.

#include "support/mounted.h"
#include "support/program.h"

namespace hl {
namespace {

using namespace test;

/// Returns "STATE SUM USED REST" of each balance of a JSON file, where the sum is that of all lines.
std::string readBack(const std::string& path) {
    return outputOf(
        "python3 -c 'import json, sys\n"
        "for b in json.load(open(sys.argv[1]))[\"balances\"]:\n"
        "    of = lambda *roles: sum(l[\"bytes\"] or 0 for l in b[\"lines\"] if l[\"role\"] in roles)\n"
        "    line = lambda name: next((l[\"bytes\"] for l in b[\"lines\"] if l[\"line\"] == name), None)\n"
        "    print(b[\"state\"], of(\"added\") - of(\"subtracted\"), line(\"used\"), line(\"rest\"))' '" +
        path + "'");
}

TEST(BalanceOfTheProgram, AddsUpInBothFormats) {
    const TempDir folder;
    const Mounted disk("none", folder.path() + "/disk", "tmpfs");
    if (!disk.done()) GTEST_SKIP() << "the test may not mount";
    makeFile(folder.path() + "/disk/hole", 1'000'000);
    writeFile(folder.path() + "/disk/data", std::string(10'000, 'x'));
    fs::create_hard_link(folder.path() + "/disk/data", folder.path() + "/disk/again");
    makeFolder(folder.path() + "/disk/covered");
    makeFile(folder.path() + "/disk/covered/empty", 0);
    writeFile(folder.path() + "/disk/covered/file", "x");
    const Mounted cover("none", folder.path() + "/disk/covered", "tmpfs");
    const Program program;
    const std::string json = program.home("b.json"), text = program.home("b.txt");
    EXPECT_EQ(program.run({"-s", "--balance", json, folder.path() + "/disk"}).status, 0);
    EXPECT_EQ(readBack(json), "complete 16384 16384 0\n");
    EXPECT_EQ(program.run({"-s", text, folder.path() + "/disk", "--balance"}).status, 0);
    EXPECT_TRUE(has(contentOf(text), "\r\nWeitere Namen derselben Datei"));
    const Ended shown = program.run({"-s", "--balance", "-", folder.path() + "/disk"});
    EXPECT_EQ(shown.output, contentOf(text));
    // What is hidden only root can know.
    const std::string of = program.home("nobody.json");
    must(::chmod(folder.path().c_str(), 0755));
    EXPECT_EQ(program.run({"-s", "--balance", of, folder.path() + "/disk"}, becomeNobody).status, 0);
    EXPECT_EQ(readBack(of), "complete 16384 16384 4096\n");
    EXPECT_TRUE(
        has(contentOf(of), "\"hidden\",\"role\":\"added\",\"bytes\":null,\"unknown\":\"needs_root\""));
}

TEST(BalanceOfTheProgram, SaysThatAFolderHasNoneButWritesThoseOfTheOthers) {
    const TempDir folder;
    makeFolder(folder.path() + "/a");
    const Program program;
    const std::string json = program.home("b");
    const Ended ended = program.run(
        {"-s", "--balance", "--format", "json", json, folder.path() + "/a", folder.path() + "/gone"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(readBack(json), "no_whole_disk 0 None None\n");
    EXPECT_TRUE(has(ended.errors, folder.path() + "/a ist nicht die Wurzel eines Dateisystems"));
}

TEST(BalanceOfTheProgram, SaysThatLayersHaveNoSpaceOfTheirOwn) {
    const TempDir folder;
    // An overlay takes no folders of another one, as a container's disk is.
    const Mounted disk("none", folder.path() + "/disk", "tmpfs");
    const auto at = [&](const char* name) { return folder.path() + "/disk/" + name; };
    for (const char* name : {"low", "up", "work"}) makeFolder(at(name));
    const std::string options = "lowerdir=" + at("low") + ",upperdir=" + at("up") + ",workdir=" + at("work");
    const Mounted layers("overlay", folder.path() + "/layers", "overlay", 0, options.c_str());
    if (!disk.done() || !layers.done()) GTEST_SKIP() << "the test may not mount an overlay";
    const Program program;
    const Ended ended = program.run({"-s", "--balance", "-", folder.path() + "/layers"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_TRUE(has(ended.errors, "(overlay) und hat keinen eigenen Platz")) << ended.errors;
}

}  // namespace
}  // namespace hl
