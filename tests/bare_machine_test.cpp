// What the scripts of the project's folder do on a machine that has next to nothing. They run in a copy of
// the folder, with a PATH that leads to a few tools of the shell and nothing else.
#include <gtest/gtest.h>

#include "support/temp_dir.h"
#include "support/trees.h"
#include "support/whole_files.h"

namespace hl::test {
namespace {

namespace fs = std::filesystem;

class BareMachine : public ::testing::Test {
  protected:
    BareMachine() {
        fs::create_directories(tools());
        for (const char* file : {"run", "check", "package", "tools/setup.sh"}) writeCopy(file);
        // As in the project's folder, where names of programs are names of folders too.
        makeTree(folder(), {"cmake/install.cmake", "src/main.cpp", "g++/"});
        for (const char* tool : {"bash", "env", "dirname", "readlink"})
            fs::create_symlink(std::string("/usr/bin/") + tool, tools() + "/" + tool);
    }

    std::string folder() const { return machine_.path() + "/project"; }
    std::string tools() const { return machine_.path() + "/bin"; }

    /// Its exit status, and behind a blank what it says. The line begins in the project's folder.
    std::string run(const std::string& line) const {
        const std::string said = machine_.path() + "/said";
        const int status = std::system(("cd '" + folder() + "' && /usr/bin/env -i 'PATH=" + tools() + "' " +
                                        line + " >'" + said + "' 2>&1")
                                           .c_str());
        return std::to_string(WEXITSTATUS(status)) + " " + contentOf(said);
    }

  private:
    void writeCopy(const fs::path& file) const {
        const fs::path copy = folder() / file;
        fs::create_directories(copy.parent_path());
        fs::copy_file(HARBORLANTERN_SOURCE_DIR / file, copy);
    }

    TempDir machine_;
};

TEST_F(BareMachine, AFolderOfTheProjectIsNoProgram) {
    EXPECT_EQ(
        run("./run -s report.csv ."),
        "4 Missing: g++ cmake ninja-build. This can install packages on Debian only; please install them "
        "yourself.\n");
}

}  // namespace
}  // namespace hl::test
