// The program seen from outside: what it does to others, to a missing display and to its user's folders.
#include <QFileDialog>
#include <QFontDialog>

#include "gui/window_fixture.h"
#include "platform/linux/programs.h"
#include "support/patience.h"
#include "support/program.h"

namespace hl {
namespace test {

int wholeSession();

/// Scans, asks for a folder, for a font and for a file to save, and ends.
int wholeSession() {
    const std::string home = ::getenv("HARBORLANTERN_HOME"), source = ::getenv("SOURCE");
    Logic logic(home);
    int answered = 0;
    logic.onThere = [&] {
        const auto choose = [&](const std::string& path) {
            logic.answers.add([&answered, path](QDialog& dialog) {
                answered += dynamic_cast<QFileDialog*>(&dialog) != nullptr ? 1 : 0;
                choosePath(dialog, path);
            });
        };
        choose(source);
        logic.answers.add([&](QDialog& dialog) {
            answered += dynamic_cast<QFontDialog*>(&dialog) != nullptr ? 1 : 0;
            dialog.accept();
        });
        logic.answers.add([](QDialog& dialog) { pressIn(dialog, "OK"); });
        choose(home + "/report.txt");
        QTimer::singleShot(0, [] {
            QWidget* frame = nullptr;
            for (QWidget* each : QApplication::topLevelWidgets())
                if (each->objectName() == QLatin1String("frmMain")) frame = each;
            if (frame == nullptr || !QTest::qWaitForWindowActive(frame)) return QApplication::exit();
            for (const char* entry : {"cbrMain.1", "cbrMain.2", "cbrMain.328", "cbrReport.5", "cbrMain.20"})
                clickEntry(*frame, QLatin1String(entry));
        });
    };
    std::string reason;
    const std::string folder = std::filesystem::path(HARBORLANTERN_PROGRAM).parent_path().string();
    const auto show = loadWindowModule(folder + "/" + kWindowModuleName, reason);
    const WindowStart start{.parts = logic.form().parts(),
                            .events = logic.form(),
                            .handOverReady = {},
                            .answersReady = {},
                            .executable = HARBORLANTERN_PROGRAM};
    if (show == nullptr || show(start) != WindowResult::kClosed) return 2;
    return answered == 3 && logic.reports.empty() && !testing::Test::HasFailure() ? 0 : 1;
}

}  // namespace test

namespace {

namespace fs = std::filesystem;
using test::comes;
using test::Program;
using test::TempDir;

std::set<std::string> filesBelow(const std::string& folder) {
    std::set<std::string> files;
    for (const auto& each : fs::recursive_directory_iterator(folder)) files.insert(each.path().string());
    return files;
}

TEST(ProgramWindow, ASecondStartHandsItsSourcesToTheFirst) {
    const Program program;
    const TempDir tree;
    test::makeFile(tree.path() + "/x", 10);
    const auto offscreen = [&] {
        ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
        test::writeFile(program.home("pid"), std::to_string(::getpid()));
    };
    std::thread first([&] { EXPECT_EQ(program.run({}, offscreen).status, 128 + SIGTERM); });
    EXPECT_TRUE(comes([&] { return fs::is_socket(program.home("run/harborlantern_APPLICATION")); }));
    const std::string pid = test::readFile(program.home("pid"));
    EXPECT_EQ(program.run({tree.path()}, offscreen).status, 0);
    EXPECT_TRUE(comes([&] {
        const std::string log = test::readFile(program.home("Harborlantern.log"));
        return log.find("Einlesen: " + tree.path()) != log.npos && log.find("Dateianzahl: 1") != log.npos;
    }));
    ::kill(std::stoi(pid), SIGTERM);
    first.join();
}

TEST(ProgramWindow, WithNoDisplayOneLineNamesTheWayWithoutAWindow) {
    const Program program;
    for (const std::string platform : {"", "xcb", "wayland"})
        for (const std::string display : {"", ":4711"}) {
            const auto ended = program.run({"/usr"}, [&] {
                if (!platform.empty()) ::setenv("QT_QPA_PLATFORM", platform.c_str(), 1);
                if (!display.empty()) ::setenv("DISPLAY", display.c_str(), 1);
            });
            EXPECT_EQ(ended.status, 3) << platform << display;
            EXPECT_EQ(ended.errors.find('\n'), ended.errors.size() - 1) << ended.errors;
            EXPECT_NE(ended.errors.find(" -s "), std::string::npos) << ended.errors;
        }
}

TEST(ProgramWindow, ASessionLeavesNothingOutsideOfTheProgramsFolder) {
    for (const bool onlyHome : {false, true}) {
        const TempDir user, home, source;
        test::makeFile(source.path() + "/x", 10);
        for (const char* each : {"config", "cache", "data", "state", "run", "tmp"})
            test::makeFolder(user.path() + "/" + each);
        ::chmod((user.path() + "/run").c_str(), 0700);
        const auto before = filesBelow(user.path());
        const pid_t child = test::must(::fork());
        if (child == 0) {
            const auto set = [&](const char* name, const std::string& value) {
                ::setenv(name, value.c_str(), 1);
            };
            for (const auto& [name, folder] :
                 {std::pair("XDG_CONFIG_HOME", "config"), std::pair("XDG_CACHE_HOME", "cache"),
                  std::pair("XDG_DATA_HOME", "data"), std::pair("XDG_STATE_HOME", "state")}) {
                ::unsetenv(name);
                if (!onlyHome) set(name, user.path() + "/" + folder);
            }
            set("HOME", user.path());
            set("XDG_RUNTIME_DIR", user.path() + "/run");
            set("TMPDIR", user.path() + "/tmp");
            set("QT_QPA_PLATFORM", "offscreen");
            set("HARBORLANTERN_HOME", home.path());
            set("SOURCE", source.path());
            ::execl("/proc/self/exe", "gui_tests", "--whole-session", nullptr);
            ::_exit(127);
        }
        int status = 0;
        test::must(::waitpid(child, &status, 0));
        EXPECT_EQ(status, 0);
        EXPECT_EQ(filesBelow(user.path()), before);
        EXPECT_EQ(filesBelow(source.path()).size(), 1U);
        EXPECT_TRUE(fs::exists(home.path() + "/report.txt") && fs::exists(home.path() + "/Toolbar.dat"));
    }
}

}  // namespace
}  // namespace hl
