// Texts and error reports for tests, with what these need.
#pragma once

#include "app/texts.h"
#include "platform/linux/change/files.h"
#include "robustness/fakes.h"

namespace hl::test {

/// Texts in German, or for another locale from its delivered library.
struct TestTexts : FakeDiagnostics {
    explicit TestTexts(const std::string& locale = "de_DE.UTF-8")
        : texts(files, store, diagnostics, {dir.path(), HARBORLANTERN_SOURCE_DIR "/lang", "", locale}) {
        texts.Init_Sprache("", "");
    }

    /// Returns how many error reports contain `part`.
    std::size_t reports(const std::string& part) const {
        std::size_t count = 0;
        for (const std::string& report : sink.shown)
            count += report.find(part) != std::string::npos ? 1U : 0U;
        return count;
    }

    TempDir dir;
    LinuxFiles files;
    SettingsStore store{files, dir.path() + "/Harborlantern.ini"};
    Texts texts;
};

}  // namespace hl::test
