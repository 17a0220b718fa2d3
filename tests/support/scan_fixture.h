// Everything that a scan works with, and what it leaves in the grids.
#pragma once

#include "scan/driver.h"
#include "scan/rollup.h"
#include "support/test_scan.h"

namespace hl::test {

/// The grids are sorted as the views set them up: by size, the largest first; junctions by their path.
struct ScanBench : TestScan {
    ScanBench() {
        for (std::uint32_t level = 0; level < Grid::kSortLevels; ++level)
            report.levelSort(level).key = "size";
        top.levelSort(0).key = hardlinks.levelSort(0).key = "size";
        options.TOPmaxcount = 100;
        numbers = {};
    }

    /// Reads these sources in one run.
    void readSources(std::initializer_list<const char*> sources) {
        state.SourceQueue.assign(sources.begin(), sources.end());
        Ordnerliste_Abarbeiten(scan);
    }

    /// Returns the first row with that text; kNoRow if there is none.
    Row rowOf(std::string_view text) const {
        Row row = report.rowAt(0);
        for (std::size_t i = 0; row != kNoRow && report.text(row) != text; row = report.rowAt(++i)) continue;
        return row;
    }

    /// Returns "b 30 2/1": text, size, files, folders.
    std::string numbersOf(Row row) const {
        std::string line(report.text(row));
        for (const auto& [cell, before] : {std::pair(kSize, " "), {kFiles, " "}, {kFolders, "/"}})
            line += before + SimpleValue(report.number(row, cell)).text();
        return line;
    }
    /// Returns all rows in their order, with two blanks in front for each level.
    std::vector<std::string> rows() const {
        std::vector<std::string> lines;
        for (std::size_t i = 0; i < report.rowCount(); ++i) {
            const Row row = report.rowAt(i);
            lines.push_back(std::string(2 * report.level(row), ' ') + numbersOf(row));
        }
        return lines;
    }
    static std::vector<std::string> textsOf(const Grid& grid) {
        std::vector<std::string> lines;
        for (std::size_t i = 0; i < grid.rowCount(); ++i) lines.emplace_back(grid.text(grid.rowAt(i)));
        return lines;
    }
    static std::vector<std::string> selectedIn(const Grid& grid) {
        std::vector<std::string> names;
        for (const Row row : grid.selectedRows()) names.emplace_back(grid.text(row));
        return names;
    }
};

struct ScanFixture : testing::Test, ScanBench {
    using Lines = std::vector<std::string>;
};

}  // namespace hl::test
