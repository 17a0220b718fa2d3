// The pages of the manual tell of every setting, with its default.
#include <gtest/gtest.h>

#include <map>
#include <sstream>

#include "app/option_table.h"
#include "support/whole_files.h"

namespace hl {
namespace {

/// Of each key that has an entry: `.BR Key ", " Other " (default)"`, or `.B Key` where there is none. A row
/// of columns has the index in front of its key.
std::map<std::string, std::string, std::less<>> toldDefaults(const std::string& page) {
    std::map<std::string, std::string, std::less<>> told;
    std::istringstream lines(page);
    for (std::string line; std::getline(lines, line);) {
        if (!line.starts_with(".B")) continue;
        const std::size_t open = line.find('('), close = line.rfind(')');
        const bool has = open != std::string::npos && close != std::string::npos && close > open;
        std::istringstream words(line.substr(line.find(' ') + 1));
        for (std::string word; words >> word;) {
            const std::size_t key = word.find_first_not_of("0123456789");
            if (key != std::string::npos)
                told[word.substr(key)] = has ? line.substr(open + 1, close - open - 1) : "";
        }
    }
    return told;
}

TEST(Manual, TellsOfEverySettingWithItsDefault) {
    for (const char* file : {"/man/harborlantern.1", "/man/de/harborlantern.1"}) {
        const auto told = toldDefaults(test::contentOf(std::string(HARBORLANTERN_SOURCE_DIR) + file));
        for (const OptionKey& option : kOptionTable) {
            const auto found = told.find(option.key);
            EXPECT_EQ(found == told.end() ? "not told" : found->second, option.defaultValue)
                << file << ": " << option.key;
        }
    }
}

}  // namespace
}  // namespace hl
