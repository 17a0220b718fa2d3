// Tests the program from outside: what it does to others, without a display, and with its user's folders.

#include "gui/window_fixture.h"
#include "platform/linux/process/programs.h"
#include "support/patience.h"
#include "support/program.h"

namespace hl::test {

int wholeSession();
int quitFromReport();

/// Loads the window's module and runs it with this logic, as the program does.
bool showWindow(Logic& logic) {
    std::string reason;
    const std::string folder = std::filesystem::path(HARBORLANTERN_PROGRAM).parent_path().string();
    const auto show = loadWindowModule(folder + "/" + kWindowModuleName, reason);
    int ends[2];
    must(::pipe(ends));
    if (::write(ends[1], "", 1) != 1) return false;
    int depth = 0;
    const WindowStart start{.parts = logic.form().parts(),
                            .events = logic.form(),
                            .handOverReady = {},
                            .answersDescriptor = ends[0],
                            .answersReady =
                                [&] {
                                    char mark = 0;
                                    if (::read(ends[0], &mark, 1) == 1) depth = GuardedRoutine::depth();
                                },
                            .executable = HARBORLANTERN_PROGRAM};
    const bool closed = show != nullptr && show(start) == WindowResult::kClosed;
    EXPECT_GT(depth, 0) << "the guards of the module count where the handler of faults reads";
    return closed;
}

/// Ends in the report of an error that its settings cause.
int quitFromReport() {
    Logic logic(::getenv("HARBORLANTERN_HOME"));
    logic.endProcess = [] { ::_exit(0); };
    logic.onThere = [&] { logic.answers.add([](QDialog& dialog) { pressIn(dialog, "Beenden"); }); };
    return showWindow(logic) ? 2 : 3;
}

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
            for (const Command entry : {Command::kNewSource, Command::kStart, Command::kFontOfAll,
                                        Command::kReportSave, Command::kQuit})
                clickEntry(*frame, entryName(entry));
        });
    };
    if (!showWindow(logic)) return 2;
    return answered == 3 && logic.reports.empty() && !testing::Test::HasFailure() ? 0 : 1;
}

namespace {

std::set<std::string> filesBelow(const std::string& folder) {
    std::set<std::string> files;
    for (const auto& each : fs::recursive_directory_iterator(folder)) files.insert(each.path().string());
    return files;
}

struct ProgramWindow : testing::Test {
    const Program program;
    std::string pid;  ///< The number of the first process.
    std::thread first;

    /// Runs the program, which shows no window.
    Ended run(const std::vector<std::string>& arguments) const {
        return program.run(arguments, [this] {
            ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
            writeFile(program.home("pid"), std::to_string(::getpid()));
        });
    }
    /// Starts the first process, which must end with this status.
    void start(int status) {
        first = std::thread([this, status] { EXPECT_EQ(run({}).status, status); });
        EXPECT_TRUE(comes([&] { return fs::is_socket(program.home("run/harborlantern_APPLICATION")); }));
        pid = contentOf(program.home("pid"));
    }
};

/// Starts the tests' executable again, as a process that does what `order` says. An empty value removes a
/// variable.
pid_t startAgain(const char* order, const std::vector<std::pair<const char*, std::string>>& variables) {
    const pid_t child = must(::fork());
    if (child != 0) return child;
    for (const auto& [name, value] : variables)
        value.empty() ? ::unsetenv(name) : ::setenv(name, value.c_str(), 1);
    ::execl("/proc/self/exe", "gui_tests", order, nullptr);
    ::_exit(127);
}

TEST_F(ProgramWindow, ASecondStartHandsItsSourcesToTheFirstOrSaysThatItDoesNotAnswer) {
    const TempDir tree;
    makeTree(tree.path(), {"x"});
    start(128 + SIGTERM);
    EXPECT_EQ(run({tree.path()}).status, 0);
    EXPECT_TRUE(comes([&] {
        const std::string log = contentOf(program.home("Harborlantern.log"));
        return log.find("Einlesen: " + tree.path()) != log.npos && log.find("Dateianzahl: 1") != log.npos;
    }));
    ::kill(std::stoi(pid), SIGSTOP);
    const auto silent = run({tree.path()});
    EXPECT_EQ(silent.status, 1);
    EXPECT_EQ(silent.errors, "Harborlantern läuft schon (Prozess " + pid + "), antwortet aber nicht.\n");
    for (const int signal : {SIGTERM, SIGCONT}) ::kill(std::stoi(pid), signal);
    first.join();
}

// Returns where `function` of the module begins in a running process.
off_t addressOf(const std::string& pid, const std::string& module, const std::string& function) {
    std::ifstream maps("/proc/" + pid + "/maps");
    std::string line, path;
    while (path.empty() && std::getline(maps, line))
        if (line.ends_with("/" + module)) path = line.substr(line.find('/'));
    // The function need not be exported.
    const std::string name = outputOf("nm '" + path + "' | grep -i ' t " + function + "$'");
    if (name.empty()) return 0;
    return static_cast<off_t>(std::stoull(line, nullptr, 16) + std::stoull(name, nullptr, 16));
}

TEST_F(ProgramWindow, AFaultInItsModuleIsReportedLikeAnyErrorAndOneThatEndsItLeavesAWholeEntry) {
#ifndef __x86_64__
    GTEST_SKIP() << "the instruction that fails is one of x86-64";
#endif
    const auto log = [&] { return contentOf(program.home("error.log")); };
    start(1);
    // The function must have nothing to destroy: in others, the compiler covers only known loads and calls
    // for unwinding.
    const off_t function = addressOf(
        pid, "harborlantern-gui.so",
        "_ZN2hl10MainWindow10setSourcesERKSt6vectorINS_9ComboItemESaIS2_EERKNSt7__cxx1112basic_stringIcSt11"
        "char_traitsIcESaIcEEEi");
    const int memory = must(::open(("/proc/" + pid + "/mem").c_str(), O_RDWR));
    EXPECT_EQ(::pwrite(memory, "\x8b\x04\x25\0\0\0\0", 7, function), 7);  // It reads from address 0.
    ::close(memory);
    EXPECT_EQ(run({program.home("run")}).status, 0);
    EXPECT_TRUE(comes([&] { return log().find("\r\n\r\n") != std::string::npos; }));
    for (const char* line : {"Err: 2147746305 - An unhandled error (EXCEPTION_ACCESS_VIOLATION)",
                             "Screen: 800x800x4294967296 (32)\r\n", "Path: " HARBORLANTERN_PROGRAM "\r\n"})
        EXPECT_TRUE(has(log(), line));
    EXPECT_FALSE(has(log(), "NOT ok"));
    const std::string before = log();
    ::kill(std::stoi(pid), SIGSEGV);
    first.join();
    std::string last = log().substr(before.size());
    last = std::regex_replace(last, std::regex("[0-9]+/[0-9]+/[0-9]+ [0-9:]+ [AP]M"), "STAMP");
    EXPECT_TRUE(std::regex_match(
        last, std::regex("STAMP - Time: STAMP\r\nApp: Harborlantern [0-9.]+\r\nModul: [^\r]+\r\n"
                         "Func: Exception Handler\r\nLine: 0\r\nErr: 2147746305 - An unhandled error "
                         "\\(EXCEPTION_ACCESS_VIOLATION\\) \r\noccurred at: [0-9]+. NOT ok to continue.\r\n"
                         "Path: [^\r]+/harborlantern\r\nOS: [^\r]+\r\n64bit: False\r\nIE: 0.0.0\r\n"
                         "Portable: 1\r\nComp: [^\r]+\r\n\r\n")))
        << last;
}

// Returns the user's processes that run this helper for that home.
std::vector<std::string> helpersFor(const std::string& home) {
    std::vector<std::string> found;
    for (const auto& each : fs::directory_iterator("/proc")) {
        std::error_code error;
        const fs::path program = fs::read_symlink(each.path() / "exe", error);
        if (error || program.filename() != "harborlantern-clipboard") continue;
        const std::string environment = contentOf(each.path().string() + "/environ");
        if (environment.find("HARBORLANTERN_HOME=" + home) != environment.npos)
            found.push_back(each.path().string());
    }
    return found;
}

TEST(OnScreenClipboard, HasTheReportWithWhichTheProgramWasQuitUntilSomethingElseIsCopied) {
    if (QGuiApplication::platformName() != QLatin1String("xcb")) GTEST_SKIP() << "needs an X server";
    const TempDir home;
    writeFile(home.path() + "/Harborlantern.ini",
              "[Allgemein]\r\nLang=7\r\n[Optionen]\r\nFileSizeFormat=many\r\n");
    QClipboard& clipboard = *QGuiApplication::clipboard();
    clipboard.setText(QStringLiteral("older"));
    const pid_t child = startAgain("--quit-from-report", {{"HARBORLANTERN_HOME", home.path()}});
    int status = -1;
    bool ended = false;
    EXPECT_TRUE(comes([&] {
        QApplication::processEvents();  // Somebody may ask for the older text.
        ended = ended || ::waitpid(child, &status, WNOHANG) == child;
        return ended;
    }));
    EXPECT_EQ(status, 0);
    const std::string text = clipboard.text().toStdString();
    EXPECT_TRUE(has(text, "Err: 13 - Type mismatch"));
    EXPECT_TRUE(text.ends_with("Debug0: FileSizeFormat=many")) << text;
    const auto helpers = helpersFor(home.path());
    ASSERT_EQ(helpers.size(), 1U);
    EXPECT_EQ(fs::read_symlink(helpers[0] + "/cwd"), "/");
    for (const auto& each : fs::directory_iterator(helpers[0] + "/fd")) {
        const std::string open = fs::read_symlink(each.path()).string();
        EXPECT_TRUE(open[0] != '/' || open == "/dev/null") << open;
    }
    // A copy has the time of the last event that its program has seen, and counts as old if that is the
    // millisecond in which the helper took the clipboard over: this window brings a newer event, as the
    // user's keys would.
    QWidget window;
    window.show();
    EXPECT_TRUE(comes([&] {
        window.setWindowTitle(window.windowTitle() + QLatin1Char('.'));
        QApplication::processEvents();
        clipboard.setText(QStringLiteral("newer"));
        return helpersFor(home.path()).empty();
    }));
}

TEST_F(ProgramWindow, AnErrorThatComesBeforeItIsToldInItAndNotBehindIt) {
    writeFile(program.home("Harborlantern.ini"), "[Allgemein]\r\nLang=abc\r\n");
    start(128 + SIGTERM);
    EXPECT_TRUE(has(contentOf(program.home("error.log")), "Lang=abc"));
    ::kill(std::stoi(pid), SIGTERM);
    first.join();
    const std::string errors = contentOf(program.home("stderr.txt"));
    EXPECT_FALSE(has(errors, "Lang=abc"));
}

TEST_F(ProgramWindow, WithNoDisplayOneLineNamesTheWayWithoutAWindow) {
    for (const std::string platform : {"", "xcb", "wayland"})
        for (const std::string display : {"", ":4711"}) {
            const auto ended = program.run({"/usr"}, [&] {
                if (!platform.empty()) ::setenv("QT_QPA_PLATFORM", platform.c_str(), 1);
                if (!display.empty()) ::setenv("DISPLAY", display.c_str(), 1);
            });
            EXPECT_EQ(ended.status, 3) << platform << display;
            EXPECT_EQ(ended.errors.find('\n'), ended.errors.size() - 1) << ended.errors;
            EXPECT_TRUE(has(ended.errors, " -s "));
        }
}

TEST_F(ProgramWindow, ASessionLeavesNothingOutsideOfTheProgramsFolder) {
    for (const bool onlyHome : {false, true}) {
        const TempDir user, home, source;
        makeTree(source.path(), {"x"});
        makeTree(user.path(), {"config/", "cache/", "data/", "state/", "run/", "tmp/"});
        ::chmod((user.path() + "/run").c_str(), 0700);
        const auto before = filesBelow(user.path());
        const auto at = [&](const char* folder) { return onlyHome ? "" : user.path() + "/" + folder; };
        const pid_t child = startAgain("--whole-session", {{"XDG_CONFIG_HOME", at("config")},
                                                           {"XDG_CACHE_HOME", at("cache")},
                                                           {"XDG_DATA_HOME", at("data")},
                                                           {"XDG_STATE_HOME", at("state")},
                                                           {"HOME", user.path()},
                                                           {"XDG_RUNTIME_DIR", user.path() + "/run"},
                                                           {"TMPDIR", user.path() + "/tmp"},
                                                           {"QT_QPA_PLATFORM", "offscreen"},
                                                           {"HARBORLANTERN_HOME", home.path()},
                                                           {"SOURCE", source.path()}});
        int status = 0;
        must(::waitpid(child, &status, 0));
        EXPECT_EQ(status, 0);
        EXPECT_EQ(filesBelow(user.path()), before);
        EXPECT_EQ(filesBelow(source.path()).size(), 1U);
        EXPECT_TRUE(fs::exists(home.path() + "/report.txt") && fs::exists(home.path() + "/Toolbar.dat"));
    }
}

}  // namespace
}  // namespace hl::test
