// The program runs on a server that has the C++ library and nothing else.
#include <gtest/gtest.h>

#include "support/program.h"

namespace hl {
namespace {

/// The libraries that a file asks the loader for, up to the first point or dash: "libc", "libstdc++", "ld".
std::set<std::string> librariesOf(const std::string& file) {
    std::istringstream lines(test::outputOf("LC_ALL=C readelf -d '" + file + "'"));
    std::set<std::string> names;
    for (std::string line; std::getline(lines, line);) {
        if (line.find("(NEEDED)") == std::string::npos) continue;
        const std::string name = line.substr(line.find('[') + 1);
        names.insert(name.substr(0, name.find_first_of(".-]")));
    }
    return names;
}

TEST(Program, LinksTheCxxLibraryAndLibcAlone) {
    std::set<std::string> names = librariesOf(HARBORLANTERN_PROGRAM);
    EXPECT_EQ(names.count("libc"), 1U) << "readelf has told nothing";
    for (const char* fine : {"libstdc++", "libgcc_s", "libm", "libc", "ld"}) names.erase(fine);
#ifdef HARBORLANTERN_SANITIZED
    for (const char* fine : {"libasan", "libubsan", "libtsan"}) names.erase(fine);
#endif
    for (const std::string& other : names) ADD_FAILURE() << "The program needs " << other;
}

}  // namespace
}  // namespace hl
