// Trees that are read, saved and opened again.
#pragma once

#include "output/scan_output.h"
#include "scan/saved/open_scan.h"
#include "scan/saved/scan_reader.h"
#include "support/scan_fixture.h"

namespace hl::test {

/// A scan for which everything is kept that a saved one holds.
struct SavingBench : ScanBench {
    SavingBench() {
        options.CreateStatistics = 1;
        scan.statistics = &statistics;
        scan.facts = &facts;
        scan.largest = &largest;
        options.LargestKept = 20;
        scan.machine = "host";
        state.SilentRun = true;
    }

    /// Returns the bytes of the first source of the report as a saved scan.
    std::string saved(ScanNames names = ScanNames::kAll) {
        const std::string path = dir.path() + "/x.hlscan";
        const auto target = files.replace(path);
        if (!target || !writeScan(scan, report.firstRoot(), names, **target).written) return "NOT WRITTEN";
        return contentOf(path);
    }
    /// Opens a saved scan; returns false if it is refused.
    bool open(std::string bytes) {
        ScanReading reading = readScan(std::move(bytes));
        if (reading.problem != ScanProblem::kNone) return false;
        openSavedScan(scan, reading.file);
        report.sortLevels(state.DeepestLevel);
        return true;
    }

    Statistics statistics;
    RowFacts facts;
    LargestOfSources largest;
};

/// Makes folders with names in any bytes, and what else a scan meets.
class RandomScan {
  public:
    explicit RandomScan(unsigned seed) : random_(seed) {}

    Item source(const std::string& path) {
        Item top = folder(path);
        fill(top, 0);
        return top;
    }

  private:
    unsigned below(unsigned limit) { return static_cast<unsigned>(random_() % limit); }

    std::string name() {
        std::string text(1 + below(6), 'a');
        for (char& c : text) {
            c = static_cast<char>(below(3) > 0 ? 'a' + below(26) : 1 + below(255));
            if (c == '/') c = '.';
        }
        return text + std::to_string(next_++);
    }

    void fill(Item& into, unsigned depth) {
        into.facts.inode = below(5) > 0 ? random_() : 0;
        into.facts.device = below(9) > 0 ? 7 : 8;
        if (below(4) > 0) into.created = static_cast<std::int64_t>(below(2'000'000'000)) - 500'000'000;
        if (depth > 0 && below(15) == 0) into.error = 13;
        if (below(15) == 0) into.entryError = 5;
        if (below(20) == 0) into.endError = 5;
        for (unsigned left = below(6); left > 0; --left) into.items.push_back(someFile());
        for (unsigned left = depth < 5 ? below(5) : 0; left > 0; --left) {
            Item item = below(9) > 0   ? folder(name())
                        : below(2) > 0 ? linkTo(name(), "/elsewhere")
                                       : mountOf(name(), "/dev/disk");
            if (!item.isLink() && !item.isMount) fill(item, depth + 1);
            into.items.push_back(std::move(item));
        }
    }

    Item someFile() {
        constexpr const char* kEndings[] = {"", ".mp4", ".TXT", ".c", ".\xFF", ".tar.gz"};
        Item item = file(name() + kEndings[below(6)], random_() >> (20 + below(40)));
        item.details.blocks = below(1000);
        item.details.owner = below(4) * 1000;
        item.details.written = static_cast<std::int64_t>(below(2'000'000'000));
        return item;
    }

    std::mt19937_64 random_;
    int next_ = 0;
};

}  // namespace hl::test
