// The program on a screen, read by another process over the accessibility bus, as a screen reader does it.
#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QProcess>
#include <QProcessEnvironment>

#include "support/temp_dir.h"
#include "support/whole_files.h"

namespace hl {
namespace {

QProcessEnvironment environmentOf(const test::TempDir& home) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HARBORLANTERN_HOME"), QString::fromStdString(home.path()));
    // No other instance that would take the line over.
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), QString::fromStdString(home.path()));
    environment.insert(QStringLiteral("QT_LINUX_ACCESSIBILITY_ALWAYS_ON"), QStringLiteral("1"));
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C"));
    return environment;
}

TEST(OnScreenReader, FindsTheRowsOfTheReportWithLevelFoldedStateAndCells) {
    if (QGuiApplication::platformName() != QLatin1String("xcb")) GTEST_SKIP() << "needs an X server";
    const test::TempDir home, tree;
    std::filesystem::create_directories(tree.path() + "/big/inner");
    std::filesystem::create_directories(tree.path() + "/small");
    test::writeFile(tree.path() + "/big/inner/file", std::string(3000, 'x'));
    test::writeFile(tree.path() + "/small/file", std::string(1000, 'x'));

    QProcess program;
    program.setProcessEnvironment(environmentOf(home));
    program.start(QStringLiteral(HARBORLANTERN_PROGRAM), {QString::fromStdString(tree.path())});
    ASSERT_TRUE(program.waitForStarted());
    QProcess reader;
    reader.start(QStringLiteral("/usr/bin/python3"),
                 {QStringLiteral(HARBORLANTERN_SOURCE_DIR "/tests/gui/read_window.py"),
                  QString::number(program.processId()), QStringLiteral("3")});
    const bool ended = reader.waitForFinished(40000);
    program.kill();
    program.waitForFinished();
    ASSERT_TRUE(ended);
    const std::string found = reader.readAllStandardOutput().toStdString();
    if (reader.exitCode() == 77) GTEST_SKIP() << found;
    EXPECT_EQ(found, "tree item\t" + tree.path() + "\tLevel 1\texpanded\t" + tree.path() +
                         "\t4,000\t100.00%\t2\t3\n"
                         "tree item\tbig\tLevel 2\tcollapsed\tbig\t3,000\t75.00%\t1\t1\n"
                         "tree item\tsmall\tLevel 2\t-\tsmall\t1,000\t25.00%\t1\t\n")
        << reader.readAllStandardError().toStdString();
}

}  // namespace
}  // namespace hl
