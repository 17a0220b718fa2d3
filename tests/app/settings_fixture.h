// Provides a settings file in a folder of its own, watches the program's files, and keeps reported errors.
#pragma once

#include "app/settings.h"
#include "platform/linux/change/files.h"
#include "platform/linux/process/system_error.h"
#include "robustness/fakes.h"

namespace hl::test {

/// The system's files; it counts what is written, and fails where a test wants that.
struct WatchedFiles : LinuxFiles {
    int replacements = 0;
    /// If it is not 0, every reading fails with this error.
    int readError = 0;

    Result<std::string> readWhole(const std::string& path, std::size_t limit) override {
        if (readError != 0) return systemError(readError);
        return LinuxFiles::readWhole(path, limit);
    }
    Result<std::unique_ptr<ReplacingFile>> replace(const std::string& path) override {
        ++replacements;
        return LinuxFiles::replace(path);
    }
};

struct SettingsFixture : testing::Test, protected FakeDiagnostics {
    TempDir dir;
    std::string path = dir.path() + "/Harborlantern.ini";
    WatchedFiles files;
    SettingsStore store{files, path};
};

}  // namespace hl::test
