// What a run works with: texts, settings and logs in a folder of the test, a disk in memory, and a host and a
// pump that record what they are told.
#pragma once

#include "app/log.h"
#include "app/product.h"
#include "scan/file_columns.h"
#include "scan/records.h"
#include "scan/scan_context.h"
#include "support/fake_file_system.h"
#include "support/recording_console.h"
#include "support/scripted_pump.h"
#include "support/test_texts.h"

namespace hl::test {

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

struct TestScan : TestTexts {
    explicit TestScan(const std::string& locale = "de_DE.UTF-8")
        : TestTexts(locale), numbers(numberFormatOf(locale)) {}

    NumberFormat numbers;
    PathRules paths = kPosixPaths;
    Log log{files, dir.path(), {"yyyy-MM-dd", "hh:nn"}, [] { return LocalTime(); }};
    FakeFileSystem disk;
    ScriptedPump pump;
    RecordingConsole console;
    ScanState state;
    RecordingHost host{state};
    Options options;
    SourceCombo combo;
    Grid report{kFolderCells}, top{kFileCells}, hardlinks{kFileCells}, junctions{kJunctionCells};
    Services services{store, texts, log, files, disk, pump, console, diagnostics, paths, numbers};
    ScanContext scan{services, state, options, combo, report, top, hardlinks, junctions, host, host, &host};

    /// Returns the lines of a log without their time stamps.
    std::vector<std::string> logLines(std::string_view name) const {
        constexpr std::string_view kStamp = "1970-01-01 00:00 - ";
        const std::string content = contentOf(dir.path() + "/" + std::string(name));
        std::vector<std::string> lines;
        for (std::string_view rest = content; !rest.empty(); rest.remove_prefix(rest.find('\n') + 1))
            lines.emplace_back(rest.substr(kStamp.size(), rest.find('\r') - kStamp.size()));
        return lines;
    }
    std::vector<std::string> protocol() const { return logLines(kProtocolName); }
    void clearProtocol() { fs::remove(dir.path() + "/" + std::string(kProtocolName)); }
};

}  // namespace hl::test
