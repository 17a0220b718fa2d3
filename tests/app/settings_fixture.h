// Provides a settings file in a folder of its own, watches the program's files, and keeps reported errors.
#pragma once

#include <gtest/gtest.h>

#include "app/settings.h"
#include "app/watched_files.h"
#include "robustness/fakes.h"
#include "support/temp_dir.h"
#include "support/whole_files.h"

namespace hl::test {

class SettingsFixture : public testing::Test, protected FakeDiagnostics {
  protected:
    TempDir dir;
    std::string path = dir.path() + "/Harborlantern.ini";
    WatchedFiles files;
    SettingsStore store{files, path};
};

}  // namespace hl::test
