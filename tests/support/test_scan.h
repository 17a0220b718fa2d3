// What a run works with, for tests of what is done with its rows: texts, settings and files are real, the
// disk is empty.
#pragma once

#include "app/log.h"
#include "scan/file_columns.h"
#include "scan/records.h"
#include "scan/scan_context.h"
#include "support/fake_file_system.h"
#include "support/recording_console.h"
#include "support/scripted_pump.h"
#include "support/test_texts.h"

namespace hl::test {

class TestControls final : public Controls {
  public:
    bool busy = false;
    void setBusyPointer(bool on) override { busy = on; }
    void lockControls(bool) override {}
    void unlockControls() override {}
};

/// `given` must outlive it.
struct TestScan {
    explicit TestScan(TestTexts& given) : texts(given) {}

    TestTexts& texts;
    NumberFormat numbers = numberFormatOf("de_DE.UTF-8");
    Log log{texts.files, texts.dir.path(), DateFormat()};
    FakeFileSystem disk;
    ScriptedPump pump;
    RecordingConsole console;
    PathRules paths = kPosixPaths;
    Services services{texts.store, texts.texts,       log,   texts.files, disk, pump,
                      console,     texts.diagnostics, paths, numbers};
    ScanState state;
    Options options;
    SourceCombo combo;
    Grid report{kFolderCells}, top{kFileCells}, hardlinks{kFileCells}, junctions{kJunctionCells};
    ScanHost host;
    TestControls controls;
    ScanContext scan{services, state, options, combo, report, top, hardlinks, junctions, host, controls};
};

}  // namespace hl::test
