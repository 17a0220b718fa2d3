#include "scan/largest_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "scan/records.h"

namespace hl::test {
namespace {

struct KnownFile {
    std::uint64_t size = 0;
    Row folder = kNoRow;
    std::string name;
    auto operator<=>(const KnownFile&) const = default;
};

std::vector<KnownFile> allOf(LargestFiles& kept, const Grid& report) {
    std::vector<KnownFile> all;
    for (Row row = report.firstRoot(); row != kNoRow; row = report.tree().following(row))
        for (auto [at, end] = kept.of(row); at < end; ++at)
            all.push_back({kept.at(at).size, row, std::string(kept.nameOf(kept.at(at)))});
    std::ranges::sort(all, std::greater());
    return all;
}

TEST(LargestFiles, AreTheLargestOfThoseThatAreThereWhateverComesAndGoes) {
    const std::uint64_t seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937_64 random(seed);
    constexpr std::size_t kMost = 50;
    LargestFiles kept(kMost);
    Grid report(kFolderCells);
    std::vector<Row> rows = {report.addRow(kNoRow, "/")};
    for (int i = 0; i < 20; ++i) rows.push_back(report.addRow(rows[random() % rows.size()], "d"));
    std::vector<KnownFile> there;
    bool wasFull = false;
    for (std::uint64_t i = 1; i <= 4000; ++i) {
        const Row folder = rows[random() % rows.size()];
        LargestFile file;
        file.size = random() % 1'000'000 * 4000 + i;  // No two have one size.
        file.folder = folder;
        there.push_back({file.size, folder, "name of " + std::to_string(file.size)});
        if (kept.takes(file.size)) kept.add(file, there.back().name);
        const auto went = [&](const KnownFile& each) {
            Row above = each.folder;
            while (i % 40 == 0 && above != folder && above != kNoRow) above = report.parent(above);
            return above == folder;
        };
        if (i % 20 != 0) continue;
        std::erase_if(there, went);
        i % 40 == 0 ? kept.forgetBelow(report, folder) : kept.forgetOwn(folder);
        std::ranges::sort(there, std::greater());
        const std::vector<KnownFile> all = allOf(kept, report);
        ASSERT_LE(kept.count(), kMost);
        if (!wasFull) {
            ASSERT_EQ(kept.count(), std::min(there.size(), kMost));
        }
        wasFull |= kept.count() < there.size();
        const auto most = static_cast<std::ptrdiff_t>(kept.count());
        ASSERT_EQ(all, std::vector<KnownFile>(there.begin(), there.begin() + most)) << i;
        ASSERT_EQ(kept.isThin(), wasFull && kept.count() < kMost / 2);
    }
}

}  // namespace
}  // namespace hl::test
