// Tests the program on a screen: its start when nobody activates its window, and how another process reads it
// over the accessibility bus, as a screen reader does.

#include "gui/window_fixture.h"
#include "support/fuse_mount.h"
#include "support/patience.h"
#include "support/program.h"

namespace hl::test {
namespace {

struct OnScreenStart : WindowTest {
    void SetUp() override {
        if (QGuiApplication::platformName() != QLatin1String("xcb")) GTEST_SKIP() << "needs an X server";
    }
    /// Starts a program that has a folder of its own, and no other instance that would take the line over.
    void start(QProcess& program, const QStringList& line, const std::string& run,
               std::initializer_list<std::pair<const char*, QString>> more = {}) const {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("HARBORLANTERN_HOME"), QString::fromStdString(home.path()));
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), QString::fromStdString(run));
        for (const auto& [name, value] : more) environment.insert(QLatin1String(name), value);
        program.setProcessEnvironment(environment);
        program.start(QStringLiteral(HARBORLANTERN_PROGRAM), line);
        ASSERT_TRUE(program.waitForStarted());
    }
};

TEST_F(OnScreenStart, WithoutAWindowManagerTheSourceOfTheCommandLineIsRead) {
    smallTree();
    QProcess server, program;
    server.start(QStringLiteral("Xvfb"), {QStringLiteral("-displayfd"), QStringLiteral("1")});
    ASSERT_TRUE(server.waitForReadyRead());
    start(program, {QString::fromStdString(at("src"))}, home.path(),
          {{"DISPLAY", QLatin1Char(':') + QString::fromUtf8(server.readLine().trimmed())}});
    EXPECT_TRUE(comes([&] {
        return contentOf(home.path() + "/Harborlantern.log").find("Dateianzahl: 4") != std::string::npos;
    }));
    for (QProcess* each : {&program, &server}) {
        each->terminate();
        each->waitForFinished();
    }
}

TEST_F(OnScreenStart, AWindowThatDoesNotBecomeTheActiveOneReadsItsSourcesOnce) {
    smallTree();
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    Session s(home.path());
    s.onThere = [&] { s.frame().setAttribute(Qt::WA_ShowWithoutActivating); };
    s.form().form().session.state.SourceQueue.push_back(at("src"));
    s.show();
    EXPECT_TRUE(QTest::qWaitFor([&] { return s.grid().rowCount() > 0 && s.enabled(Command::kStart); }));
    EXPECT_FALSE(s.frame().isActiveWindow());
    s.frame().activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&s.frame()));
    s.settle();
    EXPECT_EQ(s.grid().rowCount(), 6U);
}

// The process itself exists as long as the kernel holds one of its threads.
TEST_F(OnScreenStart, AWindowThatIsClosedWhileADiskHangsIsInNoNewOnesWay) {
    folder("src/hangs/deep");
    FuseMount mount(at("src"), at("mount"));
    if (!mount.missing().empty()) GTEST_SKIP() << mount.missing();
    setSettings("[ComboOrdner]\r\n0O=" + at("mount/hangs/deep") + "\r\n");
    const std::string own = home.path() + "/run", socket = own + "/harborlantern_APPLICATION";
    fs::create_directory(own);
    ::chmod(own.c_str(), 0700);
    QProcess first, second;
    start(first, {}, own);
    ASSERT_TRUE(comes([&] { return fs::exists(socket); }));
    const std::string process = "/proc/" + std::to_string(first.processId());
    // The source is asked for on another thread.
    ASSERT_TRUE(comes([&] {
        return outputOf("cat " + process + "/task/*/wchan").find("request_wait_answer") != std::string::npos;
    }));
    mount.stopAnswering();
    fs::remove(ini());
    EXPECT_EQ(QProcess::execute(QStringLiteral("/usr/bin/python3"),
                                {QStringLiteral(HARBORLANTERN_SOURCE_DIR "/tests/gui/close_window.py"),
                                 QString::number(first.processId())}),
              0);
    EXPECT_TRUE(comes([&] { return !fs::exists(socket); }));
    EXPECT_TRUE(fs::exists(ini())) << "its settings are saved";
    start(second, {}, own);
    EXPECT_TRUE(comes([&] { return fs::exists(socket); }));
    EXPECT_TRUE(fs::exists(process)) << "the kernel holds it";
    mount.die();
    EXPECT_TRUE(first.waitForFinished());
    second.kill();
    second.waitForFinished();
}

struct OnScreenReader : OnScreenStart {
    /// Returns what a screen reader finds of the program that is started with `line`, and the reader's exit
    /// code.
    std::pair<std::string, int> read(const QStringList& line, const QStringList& sought) const {
        QProcess program, reader;
        start(program, line, home.path(),
              {{"QT_LINUX_ACCESSIBILITY_ALWAYS_ON", QStringLiteral("1")}, {"LC_ALL", QStringLiteral("C")}});
        reader.start(QStringLiteral("/usr/bin/python3"),
                     QStringList{QStringLiteral(HARBORLANTERN_SOURCE_DIR "/tests/gui/read_window.py"),
                                 QString::number(program.processId())} +
                         sought);
        EXPECT_TRUE(reader.waitForFinished(40000));
        program.kill();
        program.waitForFinished();
        return {reader.readAllStandardOutput().toStdString(), reader.exitCode()};
    }
};

TEST_F(OnScreenReader, FindsTheRowsOfTheReportWithLevelFoldedStateAndCells) {
    writeDeepFile(at("big/inner/file"), std::string(3000, 'x'));
    writeDeepFile(at("small/file"), std::string(1000, 'x'));
    fs::remove(ini());  // The language is then English.
    const auto [found, status] = read({QString::fromStdString(tree.path())}, {QStringLiteral("3")});
    if (status == 77) GTEST_SKIP() << found;
    EXPECT_EQ(found, "tree item\t" + tree.path() + "\tLevel 1\texpanded\t" + tree.path() +
                         "\t4,000\t100.00%\t2\t3\n"
                         "tree item\tbig\tLevel 2\tcollapsed\tbig\t3,000\t75.00%\t1\t1\n"
                         "tree item\tsmall\tLevel 2\t-\tsmall\t1,000\t25.00%\t1\t\n");
}

TEST_F(OnScreenReader, FindsTheButtonsOfTheStartPage) {
    folder("kept");
    writeFile(ini(), "[ComboOrdner]\r\n0O=" + at("kept/") + "\r\n");
    const auto [found, status] =
        read({}, {QStringLiteral("4"), QStringLiteral("What would you like to scan?")});
    if (status == 77) GTEST_SKIP() << found;
    const std::string first = "push button\tHome folder\t",
                      second = "push button\tChoose a folder ...\tChoose a folder ...\n";
    EXPECT_EQ(found.substr(0, first.size()), first);
    EXPECT_TRUE(has(found, second + "push button\t/"));
    EXPECT_TRUE(has(found, "\npush button\t" + at("kept/") + "\t"));
}

}  // namespace
}  // namespace hl::test
