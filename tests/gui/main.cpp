// Tests of the window: one QApplication for all of them, on no screen.
#include <gtest/gtest.h>

#include <QApplication>
#include <string_view>

namespace hl::test {
/// A session in a process of its own, for what a process does once: see program_window_test.cpp.
int wholeSession();
}  // namespace hl::test

int main(int argc, char** argv) {
    if (argc > 1 && std::string_view(argv[1]) == "--whole-session") return hl::test::wholeSession();
    testing::InitGoogleTest(&argc, argv);
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QApplication::setStyle(QStringLiteral("Fusion"));
    QApplication::setEffectEnabled(Qt::UI_AnimateMenu, false);
    return RUN_ALL_TESTS();
}
