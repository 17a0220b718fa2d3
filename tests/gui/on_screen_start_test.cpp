// The start of the window where nobody makes it the active one.
#include <QProcess>

#include "gui/window_fixture.h"
#include "support/patience.h"

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
    EXPECT_TRUE(QTest::qWaitFor([&] { return s.grid().rowCount() > 0 && s.enabled("cbrMain.2"); }));
    EXPECT_FALSE(s.frame().isActiveWindow());
    s.frame().activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&s.frame()));
    s.settle();
    EXPECT_EQ(s.grid().rowCount(), 6U);
}

}  // namespace
}  // namespace hl
