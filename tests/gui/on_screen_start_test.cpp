// The start of the window where nobody makes it the active one.
#include <QProcess>

#include "gui/window_fixture.h"
#include "support/fuse_mount.h"
#include "support/patience.h"
#include "support/program.h"

namespace hl {
namespace {

using namespace test;

constexpr const char* kNeedsX = "needs an X server";

class OnScreenStart : public WindowTest {
  protected:
    static bool onScreen() { return QGuiApplication::platformName() == QLatin1String("xcb"); }
};

TEST_F(OnScreenStart, WithoutAWindowManagerTheSourceOfTheCommandLineIsRead) {
    if (!onScreen()) GTEST_SKIP() << kNeedsX;
    smallTree();
    QProcess server, program;
    server.start(QStringLiteral("Xvfb"), {QStringLiteral("-displayfd"), QStringLiteral("1")});
    ASSERT_TRUE(server.waitForReadyRead());
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("DISPLAY"),
                       QLatin1Char(':') + QString::fromUtf8(server.readLine().trimmed()));
    // No other instance that would take the line over.
    for (const char* own : {"HARBORLANTERN_HOME", "XDG_RUNTIME_DIR"})
        environment.insert(QLatin1String(own), QString::fromStdString(home.path()));
    program.setProcessEnvironment(environment);
    program.start(QStringLiteral(HARBORLANTERN_PROGRAM), {QString::fromStdString(at("src"))});
    EXPECT_TRUE(comes([&] {
        return contentOf(home.path() + "/Harborlantern.log").find("Dateianzahl: 4") != std::string::npos;
    }));
    for (QProcess* each : {&program, &server}) {
        each->terminate();
        each->waitForFinished();
    }
}

TEST_F(OnScreenStart, AWindowThatDoesNotBecomeTheActiveOneReadsItsSourcesOnce) {
    if (!onScreen()) GTEST_SKIP() << kNeedsX;
    smallTree();
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    Session s(home.path());
    s.onThere = [&] { s.frame().setAttribute(Qt::WA_ShowWithoutActivating); };
    s.form().state().SourceQueue.push_back(at("src"));
    s.show();
    EXPECT_TRUE(QTest::qWaitFor([&] { return s.grid().rowCount() > 0 && s.enabled(Command::kStart); }));
    EXPECT_FALSE(s.frame().isActiveWindow());
    s.frame().activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&s.frame()));
    s.settle();
    EXPECT_EQ(s.grid().rowCount(), 6U);
}

// The process itself stays as long as the kernel holds one of its threads.
TEST_F(OnScreenStart, AWindowThatIsClosedWhileADiskHangsIsInNoNewOnesWay) {
    if (!onScreen()) GTEST_SKIP() << kNeedsX;
    folder("src/hangs/deep");
    FuseMount mount(at("src"), at("mount"));
    if (!mount.missing().empty()) GTEST_SKIP() << mount.missing();
    setSettings("[ComboOrdner]\r\n0O=" + at("mount/hangs/deep") + "\r\n");
    const std::string own = home.path() + "/run", socket = own + "/harborlantern_APPLICATION";
    std::filesystem::create_directory(own);
    ::chmod(own.c_str(), 0700);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HARBORLANTERN_HOME"), QString::fromStdString(home.path()));
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), QString::fromStdString(own));
    QProcess first, second;
    for (QProcess* each : {&first, &second}) each->setProcessEnvironment(environment);
    first.start(QStringLiteral(HARBORLANTERN_PROGRAM), QStringList());
    ASSERT_TRUE(first.waitForStarted() && comes([&] { return std::filesystem::exists(socket); }));
    const std::string process = "/proc/" + std::to_string(first.processId());
    // The source is asked for on another thread.
    ASSERT_TRUE(comes([&] {
        return outputOf("cat " + process + "/task/*/wchan").find("request_wait_answer") != std::string::npos;
    }));
    mount.stopAnswering();
    std::filesystem::remove(ini());
    EXPECT_EQ(QProcess::execute(QStringLiteral("/usr/bin/python3"),
                                {QStringLiteral(HARBORLANTERN_SOURCE_DIR "/tests/gui/close_window.py"),
                                 QString::number(first.processId())}),
              0);
    EXPECT_TRUE(comes([&] { return !std::filesystem::exists(socket); }));
    EXPECT_TRUE(std::filesystem::exists(ini())) << "its settings are saved";
    second.start(QStringLiteral(HARBORLANTERN_PROGRAM), QStringList());
    EXPECT_TRUE(comes([&] { return std::filesystem::exists(socket); }));
    EXPECT_TRUE(std::filesystem::exists(process)) << "the kernel holds it";
    mount.die();
    EXPECT_TRUE(first.waitForFinished());
    second.kill();
    second.waitForFinished();
}

}  // namespace
}  // namespace hl
