// What every test has at hand: it is precompiled, and stands in front of each file (tests/CMakeLists.txt).
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <deque>
#include <filesystem>
#include <fstream>
#include <functional>
#include <future>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <random>
#include <regex>
#include <set>
#include <span>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <vector>

namespace hl::test {

namespace fs = std::filesystem;

/// Tells whether the text has the part, and shows both where that is not as expected.
inline testing::AssertionResult has(std::string_view text, std::string_view part) {
    const bool found = text.find(part) != std::string_view::npos;
    return (found ? testing::AssertionSuccess() : testing::AssertionFailure())
           << "'" << part << (found ? "' is in '" : "' is not in '") << text << "'";
}

}  // namespace hl::test

// Folders, trees and files of the test; they use the alias above.
#include "support/temp_dir.h"
#include "support/trees.h"
#include "support/whole_files.h"
