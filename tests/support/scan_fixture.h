// Everything that a scan works with, in memory: a disk, four grids, a log, and a host and a pump that record
// what they are told.
#pragma once

#include <gtest/gtest.h>

#include "robustness/fakes.h"
#include "scan/driver.h"
#include "scan/file_columns.h"
#include "scan/records.h"
#include "scan/rollup.h"
#include "scan/scan_context.h"
#include "support/fake_file_system.h"
#include "support/recording_console.h"
#include "support/scripted_pump.h"

namespace hl::test {

/// These files can only grow.
class MemoryFiles : public Files {
  public:
    std::map<std::string, std::string> content;

    Result<std::string> readWhole(const std::string&, std::size_t) override { return systemError(ENOENT); }
    std::optional<std::string> beginning(const std::string&, std::size_t) override { return std::nullopt; }
    Result<std::unique_ptr<ReplacingFile>> replace(const std::string&) override {
        return systemError(EACCES);
    }
    Result<> append(const std::string& path, std::string_view bytes) override {
        content[path] += bytes;
        return {};
    }
    std::vector<std::string> namesIn(const std::string&) override { return {}; }
    bool exists(const std::string& path) override { return content.contains(path); }
    std::shared_ptr<void> lockFolderOf(const std::string&) override { return nullptr; }

    /// Returns the lines of a log without their time stamps.
    std::vector<std::string> logLines(const std::string& name) const {
        constexpr std::string_view kStamp = "1970-01-01 00:00 - ";
        std::vector<std::string> lines;
        const auto found = content.find("/home/" + name);
        std::string_view rest = found == content.end() ? std::string_view() : found->second;
        for (; !rest.empty(); rest.remove_prefix(rest.find('\n') + 1))
            lines.emplace_back(rest.substr(kStamp.size(), rest.find('\r') - kStamp.size()));
        return lines;
    }
};

class RecordingHost : public ScanHost, public Controls, public FileTypeNames {
  public:
    explicit RecordingHost(const ScanState& state) : state_(state) {}

    std::vector<std::string> calls;    ///< All calls except folderEntered and those for types, with "+" in
                                       ///< front while ScanActive is set.
    std::vector<std::string> folders;  ///< The calls of folderEntered.
    std::string type;                  ///< The type of every file.

    void runBegan() override { note("began"); }
    void runEnded(RunEnd end) override {
        note(end == RunEnd::kDone ? "ended" : end == RunEnd::kStopped ? "stopped" : "broken off");
    }
    void selectionGone() override { note("selection gone"); }
    void folderShown(const std::string& folder) override { note("folder '" + folder + "'"); }
    void sourceMissing(const std::string& source, const std::string& reason) override {
        note("missing " + source + reason);
    }
    void sourceBegan() override { note("source began"); }
    void listsFilled() override { note("lists"); }
    void sourceDone(Row row) override { note("source done " + std::to_string(row)); }
    void sourceChanged(Row row) override { note("source changed " + std::to_string(row)); }
    void folderEntered(std::string_view path) override { folders.emplace_back(path); }
    void firstLevelFolderDone() override { note("first level"); }
    void notRead(std::string_view path, const std::string& reason) override {
        note("not read " + std::string(path) + ": " + reason);
    }
    void diskSilent(const std::string& text) override { note("silent " + text); }

    void setBusyPointer(bool busy) override { note(busy ? "busy" : "not busy"); }
    void lockControls(bool noStop) override { note(noStop ? "lock all" : "lock"); }
    void unlockControls() override { note("unlock"); }

    void restart() override {}
    std::string of(const std::string& /*path*/) override { return type; }

  private:
    void note(const std::string& call) { calls.push_back((state_.ScanActive ? "+" : "") + call); }
    const ScanState& state_;
};

/// The grids are sorted as the views set them up: by size, the largest first; junctions by their path.
class ScanBench : public FakeDiagnostics {
  public:
    ScanBench() {
        for (std::uint32_t level = 0; level < Grid::kSortLevels; ++level)
            report.levelSort(level).key = "size";
        top.levelSort(0).key = hardlinks.levelSort(0).key = "size";
        options.TOPmaxcount = 100;
    }

    FakeFileSystem disk;
    MemoryFiles files;
    ScriptedPump pump;
    ScanState state;
    RecordingHost host{state};
    Options options;
    SourceCombo combo;
    Grid report{kFolderCells}, top{kFileCells}, hardlinks{kFileCells}, junctions{kJunctionCells};
    SettingsStore settings{files, "/home/x.ini"};
    Texts texts{files, settings, diagnostics, {}};
    Log log{files, "/home", {"yyyy-MM-dd", "hh:nn"}, [] { return LocalTime(); }};
    PathRules paths = kPosixPaths;
    NumberFormat numbers;
    RecordingConsole console;
    Services services{settings, texts, log, files, disk, pump, console, diagnostics, paths, numbers};
    ScanContext scan{services, state, options, combo, report, top, hardlinks, junctions, host, host, &host};

    std::vector<std::string> protocol() const { return files.logLines("Harborlantern.log"); }

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
