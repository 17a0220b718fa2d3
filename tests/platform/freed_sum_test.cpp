// Tests the arithmetic of what a delete gives back.
#include "platform/freed_sum.h"

#include <gtest/gtest.h>

namespace {

using namespace hl;

constexpr std::uint64_t kKb = 1024;

struct Going {
    FreedName name;
    std::vector<SpecialExtent> special = {};
};

struct FreedCase {
    const char* what;
    std::vector<Going> names;
    bool wholeExtents = false;
    FreedAmount now = {}, perhaps = {}, otherNames = {}, shared = {}, all = {};
};

SpecialExtent extent(std::uint64_t startKb, std::uint64_t kb, bool shared = true, bool encoded = false) {
    return {startKb * kKb, kb * kKb, shared, encoded};
}

Going file(std::uint64_t inode, std::uint64_t kb, std::vector<SpecialExtent> special = {}) {
    return {{{1, inode}, 1, kb * kKb}, std::move(special)};
}

Going linked(std::uint64_t inode, std::uint64_t links, std::uint64_t kb) {
    return {{{1, inode}, links, kb * kKb}, {}};
}

FreedAmount amount(std::uint64_t kb, std::uint64_t files) {
    return {kb * kKb, files};
}

/// The list of open files comes when so many names were added.
FreedSpace figuresOf(const FreedCase& test, const OpenFilesAnswer& open = {}, std::size_t listAt = 0) {
    FreedSum sum;
    if (listAt == 0) sum.takeOpenFiles(open);
    if (test.wholeExtents) sum.keepsWholeExtents();
    for (std::size_t i = 0; i < test.names.size(); ++i) {
        const Going& going = test.names[i];
        if (sum.addName(going.name)) sum.addFile(going.name, going.special);
        if (i + 1 == listAt) sum.takeOpenFiles(open);
    }
    sum.sweep();
    return sum.figures();
}

TEST(FreedSum, AFileWithinTheTreeMayGiveNothingBack) {
    FreedSum sum;
    const Going inside = file(1, 4);
    ASSERT_TRUE(sum.addName(inside.name));
    sum.addInlineFile(inside.name);
    sum.sweep();
    EXPECT_EQ(sum.figures().now, FreedAmount());
    EXPECT_EQ(sum.figures().perhaps, amount(4, 1));
}

TEST(FreedSum, EachByteIsInTheLineThatTellsWhatBecomesOfIt) {
    const FreedCase cases[] = {
        {"nothing shared", {file(1, 8), file(2, 0)}, false, amount(8, 2), {}, {}, {}, amount(8, 2)},
        {"all names go", {linked(1, 2, 8), linked(1, 2, 8)}, false, amount(8, 1), {}, {}, {}, amount(8, 1)},
        {"a name stays", {linked(1, 3, 8), linked(1, 3, 8)}, false, {}, {}, amount(8, 1), {}, amount(8, 1)},
        {"shared with a file outside",
         {file(1, 12, {extent(100, 8)})},
         false,
         amount(4, 1),
         {},
         {},
         amount(8, 1),
         amount(12, 1)},
        {"shared among those that go",
         {file(1, 8, {extent(100, 8)}), file(2, 8, {extent(100, 8)})},
         false,
         {},
         amount(8, 2),
         {},
         {},
         amount(16, 2)},
        {"partly among them",
         {file(1, 8, {extent(100, 8)}), file(2, 4, {extent(104, 4)})},
         false,
         {},
         amount(4, 2),
         {},
         amount(4, 1),
         amount(12, 2)},
        {"extents go as a whole",
         {file(1, 8, {extent(100, 8)}), file(2, 4, {extent(104, 4)})},
         true,
         {},
         amount(8, 2),
         {},
         {},
         amount(12, 2)},
        {"side by side is not shared",
         {file(1, 8, {extent(100, 8)}), file(2, 8, {extent(108, 8)})},
         true,
         {},
         {},
         {},
         amount(16, 2),
         amount(16, 2)},
        {"three in a range, one beside",
         {file(1, 4, {extent(0, 4)}), file(2, 4, {extent(0, 4)}), file(3, 4, {extent(0, 4)}),
          file(4, 4, {extent(2, 4)})},
         false,
         {},
         amount(4, 4),
         {},
         amount(2, 1),
         amount(16, 4)},
        {"compressed ones by their start",
         {file(1, 128, {extent(0, 128, false, true)}), file(2, 128, {extent(4, 128, false, true)})},
         true,
         {},
         amount(256, 2),
         {},
         {},
         amount(256, 2)},
        {"parts of one compressed extent",
         {file(1, 96, {extent(0, 32, false, true), extent(0, 64, false, true)})},
         true,
         {},
         amount(64, 1),
         {},
         {},
         amount(96, 1)},
        {"a compressed one that is shared",
         {file(1, 128, {extent(0, 128, true, true)})},
         true,
         {},
         {},
         {},
         amount(128, 1),
         amount(128, 1)},
        {"longer than one record holds",
         {file(1, 3ULL << 30U, {extent(0, 3ULL << 30U)})},
         false,
         {},
         {},
         {},
         amount(3ULL << 30U, 1),
         amount(3ULL << 30U, 1)},
    };
    for (const FreedCase& test : cases) {
        SCOPED_TRACE(test.what);
        const FreedSpace sum = figuresOf(test);
        EXPECT_EQ(sum.now, test.now);
        EXPECT_EQ(sum.perhaps, test.perhaps);
        EXPECT_EQ(sum.otherNames, test.otherNames);
        EXPECT_EQ(sum.shared, test.shared);
        EXPECT_EQ(sum.all, test.all);
        EXPECT_EQ(sum.mayBeMore, test.wholeExtents);
    }
}

TEST(FreedSum, WhatProcessesHoldIsTheirsOnceAllNamesGo) {
    OpenFilesAnswer open{.sawAll = true};
    const auto holds = [&](std::uint64_t inode, long process) {
        open.files.push_back({.id = {1, inode}, .process = process, .program = "p"});
    };
    for (const std::uint64_t inode : {1, 2, 3}) holds(inode, 7);
    holds(2, 8);
    for (long process = 100; process < 130; ++process) holds(static_cast<std::uint64_t>(process), process);
    FreedCase test{"", {file(1, 4), file(2, 8), linked(3, 2, 16), file(4, 32)}};
    for (std::uint64_t inode = 100; inode < 130; ++inode) test.names.push_back(file(inode, 4));
    const FreedSpace sum = figuresOf(test, open);
    for (const std::size_t listAt : {std::size_t{20}, test.names.size()}) {
        const FreedSpace late = figuresOf(test, open, listAt);
        EXPECT_EQ(late.now, sum.now) << listAt;
        ASSERT_EQ(late.whenClosed.size(), sum.whenClosed.size()) << listAt;
        for (std::size_t i = 0; i < sum.whenClosed.size(); ++i)
            EXPECT_TRUE(late.whenClosed[i].holders == sum.whenClosed[i].holders &&
                        late.whenClosed[i].amount == sum.whenClosed[i].amount)
                << listAt << " " << i;
    }
    EXPECT_EQ(sum.now, amount(32, 1));
    EXPECT_EQ(sum.otherNames, amount(16, 1));
    ASSERT_EQ(sum.whenClosed.size(), FreedWhenClosed::kMost + 1);
    EXPECT_EQ(sum.whenClosed[0].holders, (std::vector<FileHolder>{{7, "p"}}));
    EXPECT_EQ(sum.whenClosed[1].holders, (std::vector<FileHolder>{{7, "p"}, {8, "p"}}));
    EXPECT_EQ(sum.whenClosed[1].amount, amount(8, 1));
    EXPECT_TRUE(sum.whenClosed.back().holders.empty());
    EXPECT_EQ(sum.whenClosed.back().amount, amount(4 * 12, 12));
}

// Every second name is another file's, so that the names of a file are far from each other.
TEST(SeveralNames, ManyFilesAreToldApartInLittleMemory) {
    constexpr std::uint64_t kFiles = 200'000;
    SeveralNames names;
    std::uint64_t complete = 0;
    for (int round = 0; round < 3; ++round)
        for (std::uint64_t file = 0; file < kFiles; ++file)
            complete += names.meet({1 + file % 2, 1 + file / 2}, 2 + file % 2, 8).last ? 1 : 0;
    EXPECT_EQ(names.size(), kFiles);
    EXPECT_EQ(complete, kFiles);
    EXPECT_LE(names.bytes(), kFiles * SeveralNames::kBytesOfFile);
}

}  // namespace
