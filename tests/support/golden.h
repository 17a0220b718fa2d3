// Whole outputs of the program, kept as files in tests/golden/.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <string>

#include "support/whole_files.h"

namespace hl::test {

/// Compares `actual` with the file, byte by byte. With HARBORLANTERN_RENEW_GOLDEN=1 a file that differs or is
/// missing is written anew; the test fails all the same, so that nobody takes a renewed file for a test that
/// passed.
inline void expectGolden(const std::string& name, const std::string& actual) {
    const std::string path = HARBORLANTERN_SOURCE_DIR "/tests/golden/" + name;
    const bool exists = std::filesystem::exists(path);
    if (exists && contentOf(path) == actual) return;
    const char* renew = getenv("HARBORLANTERN_RENEW_GOLDEN");
    if (renew != nullptr && std::string(renew) == "1") {
        writeFile(path, actual);
        ADD_FAILURE() << "Renewed: " << name << ". Read what changed, then run the test again.";
    } else if (exists) {
        EXPECT_EQ(actual, contentOf(path)) << name;
    } else {
        ADD_FAILURE() << "There is no " << name << ".";
    }
}

}  // namespace hl::test
