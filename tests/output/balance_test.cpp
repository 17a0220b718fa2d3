// The arithmetic of the balance, and its words.
#include "output/balance_text.h"

#include "support/test_texts.h"

namespace hl {
namespace {

/// Returns "found 10, kept 5?, ..."; "?" stands behind a figure of which something is unknown.
std::string linesOf(const SourceSpace& space, const std::optional<SpaceFacts>& facts,
                    const BalanceBesides& besides = {}) {
    std::string json, lines;
    appendBalanceJson(json, {.source = "/", .entries = balanceOf(space, facts, besides)});
    for (std::size_t at = json.find("\"line\":\""); at != std::string::npos;
         at = json.find("\"line\":\"", at)) {
        at += 8;
        const std::string entry = json.substr(at, json.find('}', at) - at);
        const std::size_t bytes = entry.find("\"bytes\":") + 8;
        lines += (lines.empty() ? "" : ", ") + entry.substr(0, entry.find('"')) + " " +
                 entry.substr(bytes, entry.find(',', bytes) - bytes) +
                 (entry.find("unknown") != std::string::npos ? "?" : "");
    }
    return lines;
}

Entry fileOf(std::uint64_t size, std::uint64_t inode = 1, std::uint32_t links = 1) {
    Entry entry;
    entry.size = size;
    entry.inode = inode;
    entry.links = links;
    return entry;
}

HeldFile heldFile(std::uint64_t bytes, long process, const char* program) {
    return {.id = {}, .bytes = bytes, .process = process, .program = program};
}

SourceSpace someSpace() {
    SourceSpace space;
    space.isWholeDisk = true;
    space.before = UsedSpace{90'000, 0};
    space.after = UsedSpace{100'000, 7000};
    space.count.addFile(fileOf(5000), 16);   // 8192 are taken.
    space.count.addFile(fileOf(50'000), 8);  // 4096 are taken.
    space.count.addFile(fileOf(4096, 9, 2), 8);
    space.count.addFile(fileOf(4096, 9, 2), 8);  // The same file again.
    space.count.addFile(fileOf(100, 10), 8);
    space.count.addFolder(8);
    return space;
}

TEST(Balance, AddsUpToWhatIsUsedWhateverIsKnown) {
    SpaceFacts all;
    all.kept = 1000;
    all.hidden.addFile(fileOf(3000), 8);
    all.held = {heldFile(500, 7, "small"), heldFile(4096, 8, "large"), heldFile(1000, 7, "small")};
    SpaceFacts little;
    little.keptUnknown = little.hiddenUnknown = little.heldUnknown = Unknown::kNeedsRoot;
    SpaceFacts inTree;
    inTree.keepsTinyFiles = true;
    const std::string found = "found 63292, rounded_up 7188, folders 4096, ";
    const std::string less = "holes 45904, further_names 4096, ";
    const std::string end = ", used 100000, used_before 90000, reserved 7000";
    const std::tuple<const char*, std::optional<SpaceFacts>, std::string> cases[] = {
        {"all is known", all,
         found + "hidden 4096, held 5596, held_by 4096, held_by 1500, kept 1000, " + less + "rest 64732" +
             end},
        {"root is needed", little,
         found + "hidden null?, held null?, kept null?, " + less + "rest 75424" + end},
        {"the disk is silent", std::nullopt,
         found + "hidden null?, held null?, kept null?, " + less + "rest 75424" + end},
        {"small files lie in the tree", inTree, found + "kept 0, " + less + "tiny 4096, rest 79520" + end}};
    for (const auto& [name, facts, lines] : cases) EXPECT_EQ(linesOf(someSpace(), facts), lines) << name;

    SourceSpace shrunk = someSpace();
    shrunk.after->used = 20'000;
    EXPECT_TRUE(
        linesOf(shrunk, SpaceFacts()).ends_with("rest -4576, used 20000, used_before 90000, reserved 7000"));
    shrunk.after.reset();
    EXPECT_TRUE(
        linesOf(shrunk, SpaceFacts(), {.trash = 5, .notRead = 2, .snapshots = 3})
            .ends_with(
                "rest null?, used null?, trash 5, not_read null?, snapshots null?, used_before 90000"));
}

TEST(Balance, LeavesOutWhatOnlyCoversAFile) {
    SpaceCount count;
    Entry covered = fileOf(5000);
    covered.attributes = kMountedFile;
    count.addFile(covered, 16);
    EXPECT_EQ(count.taken(), 0U);
}

TEST(Balance, IsOnlyThereForAWholeDiskReadToItsEnd) {
    SourceSpace space;
    EXPECT_EQ(balanceState(space), BalanceState::kNoWholeDisk);
    space.isWholeDisk = true;
    EXPECT_EQ(balanceState(space), BalanceState::kThere);
    space.complete = false;
    EXPECT_EQ(balanceState(space), BalanceState::kStopped);
}

TEST(Balance, ReadsWellAndSaysWhyAFigureIsMissing) {
    const test::TestTexts german("de_DE.UTF-8");
    const NumberFormat numbers = numberFormatOf("de_DE.UTF-8");
    SpaceFacts facts;
    facts.keptUnknown = facts.heldUnknown = Unknown::kNeedsRoot;
    facts.held = {heldFile(1234, 7, "a\nb")};
    std::string text;
    appendBalanceText(text, {german.texts, numbers},
                      {.source = "/a\n", .entries = balanceOf(someSpace(), facts, {.notRead = 1200})});
    text = std::regex_replace(text, std::regex(" +"), " ");
    for (const char* line :
         {"Bilanz: /a\u240A\r\n", "Gefundene Dateien +63.292\r\n", " a\u240Ab (7) 1.234\r\n",
          "Gelöscht, aber noch geöffnet +1.234; nicht bekannt: erfordert Root-Rechte\r\n",
          "Löcher und Komprimierung -45.904\r\n", "davon nicht lesbar: 1.200 Ordner nicht bekannt\r\n"})
        EXPECT_TRUE(test::has(text, line));
}

TEST(Balance, InJsonKeepsPathsAndProgramsInAnyBytes) {
    std::string json;
    appendBalanceJson(json, {.source = "/\xff\"\n\\a", .state = BalanceState::kNoWholeDisk, .ended = 12});
    EXPECT_EQ(json,
              "{\"path\":\"/\uFFFD\\\"\\u000a\\\\a\",\"path64\":\"L/8iClxh\",\"state\":\"no_whole_disk\","
              "\"ended\":12,\"lines\":[]}");
}

}  // namespace
}  // namespace hl
