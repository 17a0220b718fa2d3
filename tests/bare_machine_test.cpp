// Tests what the scripts of the project do on a machine with hardly any programs. They run in a copy of the
// project's folder, with a PATH that leads only to tools of the shell; fakes play apt-get and all that it
// installs.
#include <pty.h>

#include "base/text.h"

namespace hl::test {
namespace {

struct BareMachine : ::testing::Test {
    BareMachine() {
        for (const char* folder : {"bin", "deb", "project/tools"})
            fs::create_directories(machine_.path() + "/" + folder);
        for (const std::string file : {"run", "check", "tools/setup.sh"})
            fs::copy_file(HARBORLANTERN_SOURCE_DIR "/" + file, folder() + "/" + file);
        // Libraries, fonts and icons of this machine are none of the bare one's.
        const std::string setup = folder() + "/tools/setup.sh";
        writeFile(setup, replaceAll(contentOf(setup), "/usr/", machine_.path() + "/usr/"));
        // In the project's folder, too, some folders are named like programs.
        makeTree(folder(), {"cmake/install.cmake", "src/main.cpp", "g++/"});
        for (const std::string tool :
             {"awk", "bash", "cat", "chmod", "cp", "dirname", "env", "find", "flock", "grep", "mkdir",
              "readlink", "sed", "sh", "tail", "timeout", "touch", "true", "wc"})
            fs::create_symlink("/usr/bin/" + tool, machine_.path() + "/bin/" + tool);
    }

    std::string folder() const { return machine_.path() + "/project"; }

    void put(const std::string& tool, const std::string& body) const {
        writeScript(machine_.path() + "/" + tool, "echo \"${0##*/} $*\" >>'" + calls() + "'\n" + body);
    }
    /// Lets apt-get, called through sudo, install the compiler and its companions.
    void putApt() const {
        put("bin/sudo", "exec \"$@\"");
        put("bin/apt-get",
            "case \"$*\" in\n"
            "  *--print-uris*) echo '1 upgraded, 50 newly installed, 0 to remove.'\n"
            "    echo 'Need to get 2 MB/86.6 MB of archives.'\n"
            "    echo 'After this operation, 344 MB of additional disk space will be used.' ;;\n"
            "  *' -y install '*) cp '" +
                machine_.path() + "'/deb/* '" + machine_.path() + "/bin' ;;\nesac");
        put("deb/g++", "");
        put("deb/cmake", "mkdir -p build/release/src build/release/tests; touch build/release/build.ninja");
        put("deb/ninja",
            "echo 'echo started' >build/release/src/harborlantern\n"
            "chmod +x build/release/src/harborlantern");
    }

    /// Runs a line in the project's folder. Returns its exit status, a blank, and its output.
    std::string run(const std::string& line) const {
        const std::string said = machine_.path() + "/said";
        const int status = std::system((command(line) + " >'" + said + "' 2>&1").c_str());
        return std::to_string(WEXITSTATUS(status)) + " " + contentOf(said);
    }
    /// Runs a line likewise, on a terminal. Returns what the terminal gets.
    std::string runOnTerminal(const std::string& line) const {
        const std::string whole = command("TERM=xterm " + line);
        int terminal = -1;
        const pid_t child = must(::forkpty(&terminal, nullptr, nullptr, nullptr));
        if (child == 0) {
            ::execl("/bin/sh", "sh", "-c", whole.c_str(), nullptr);
            ::_exit(127);
        }
        std::string got;
        char block[512];
        for (ssize_t length = 0; (length = ::read(terminal, block, sizeof block)) > 0;)
            got.append(block, static_cast<std::size_t>(length));
        ::close(terminal);
        must(::waitpid(child, nullptr, 0));
        return got;
    }
    /// Returns how many calls of faked programs begin with `start` and contain `part`.
    long count(const std::string& start, const std::string& part) const {
        std::istringstream lines(contentOf(calls()));
        long found = 0;
        for (std::string line; std::getline(lines, line);)
            if (line.starts_with(start) && line.find(part) != std::string::npos) ++found;
        return found;
    }

  private:
    std::string command(const std::string& line) const {
        return "cd '" + folder() + "' && /usr/bin/env -i 'PATH=" + machine_.path() + "/bin' " + line;
    }
    std::string calls() const { return machine_.path() + "/calls"; }

    TempDir machine_;
};

TEST_F(BareMachine, AFolderOfTheProjectIsNoProgram) {
    EXPECT_EQ(
        run("./run -s report.csv ."),
        "4 Missing: g++ cmake ninja-build. This can install packages on Debian only; please install them "
        "yourself.\n");
}

TEST_F(BareMachine, NothingIsInstalledOrBuiltForAWindowThatNoScreenShows) {
    putApt();
    EXPECT_EQ(run("./run /usr"),
              "3 There is no screen to show a window on. A report with no window: ./run -s FILE FOLDER...\n");
    EXPECT_EQ(count("", ""), 0);
}

TEST_F(BareMachine, AReportNeedsNothingOfTheWindow) {
    putApt();
    EXPECT_EQ(run("./run -s report.csv ."),
              "0 Asking for g++ cmake ninja-build ...\n"
              "Installing 51 packages, 2 MB to download, 344 MB on the disk ...\n"
              "Configuring build/release ...\n"
              "Building harborlantern in build/release ...\n"
              "started\n");
}

TEST_F(BareMachine, AWindowTakesOneInstallingAndOneBuild) {
    putApt();
    const std::string said = run("QT_QPA_PLATFORM=offscreen ./run /usr");
    EXPECT_TRUE(said.starts_with("0 ") && said.ends_with("\nstarted\n")) << said;
    EXPECT_EQ(count("apt-get", " -y install "), 1);
    EXPECT_EQ(count("apt-get", "gstreamer"), 0);
    EXPECT_EQ(count("cmake", ""), 1);
    EXPECT_EQ(count("ninja", "harborlantern harborlantern-gui"), 1);
    EXPECT_EQ(count("ninja", ""), 1);
}

TEST_F(BareMachine, ATerminalShowsHowFarTheBuildIs) {
    putApt();
    put("deb/ninja",
        "case \" $* \" in *' --quiet '*) ;; *) echo '[1/2] Compiling' ;; esac\n"
        "echo 'echo started' >build/release/src/harborlantern\n"
        "chmod +x build/release/src/harborlantern");
    const std::string said = runOnTerminal("./run -s report.csv .");
    EXPECT_TRUE(has(said, "Building harborlantern in build/release ...\r\n\r\x1b[K[1/2] Compiling\r\x1b[K"));
    EXPECT_TRUE(said.ends_with("started\r\n")) << said;
}

TEST_F(BareMachine, ACheckNamesWhatFailedLastAndCountsWhatWasSkipped) {
    putApt();
    for (const char* tool : {"clang-format", "clang-tidy", "shellcheck", "python3"})
        put("deb/" + std::string(tool), "");
    const std::string good = "echo '[ RUN      ] A.Good'; echo '[       OK ] A.Good (1 ms)'\n";
    const std::string ends = "echo '[==========] 3 tests from 1 test suite ran. (3 ms total)'\n";
    put("deb/unit_tests", good +
                              "echo '[ RUN      ] A.Off'; echo 'a.cpp:1: Skipped'; echo 'no screen'\n"
                              "echo '[  SKIPPED ] A.Off (0 ms)'\n"
                              "echo '[ RUN      ] A.Bad'; echo why; echo '[  FAILED  ] A.Bad (1 ms)'\n" +
                              ends + "exit 1");
    put("deb/gui_tests", good + ends);
    put("deb/ninja", "cp '" + folder() + "'/../deb/*_tests build/release/tests");
    for (const char* tool : {"/tools/tidy.py", "/tools/on_screen.sh"})
        writeScript(folder() + tool, "[ $# -lt 3 ] || \"$@\"");
    for (const char* room : {"tests", "bench", "fuzz"}) makeFolder(folder() + "/" + room);

    const std::string said = run("./check");
    EXPECT_TRUE(said.starts_with("1 ")) << said;
    EXPECT_TRUE(has(said, "\nSkipped: A.Off: no screen\n[ RUN      ] A.Bad\nwhy\n"));
    EXPECT_TRUE(said.ends_with("\nFAILED: A.Bad (release)\n6 passed, 1 failed, 1 skipped\n")) << said;
}

}  // namespace
}  // namespace hl::test
