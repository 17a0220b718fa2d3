// The entry of the window's tests: one QApplication for all of them, on no screen.

#include "platform/qt/window/desktop_settings.h"

namespace hl::test {
/// These run a session in a process of its own, to test what a process does only once: see
/// program_window_test.cpp.
int wholeSession();
int quitFromReport();
/// These answer as the desktop, and play a file manager, in processes of their own: see desktop_commands.cpp.
int desktopCommand(int count, char** words);
int fileManager(int count, char** words);
}  // namespace hl::test

int main(int argc, char** argv) {
    if (argc > 1 && std::string_view(argv[1]) == "--whole-session") return hl::test::wholeSession();
    if (argc > 1 && std::string_view(argv[1]) == "--quit-from-report") return hl::test::quitFromReport();
    if (argc > 2 && std::string_view(argv[1]) == "--desktop")
        return hl::test::desktopCommand(argc - 2, argv + 2);
    if (argc > 2 && std::string_view(argv[1]) == "--file-manager")
        return hl::test::fileManager(argc - 2, argv + 2);
    testing::InitGoogleTest(&argc, argv);
    hl::quietMessages();  // Hundreds of lines of the toolkit would hide a failure.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QApplication::setStyle(QStringLiteral("Fusion"));
    QApplication::setEffectEnabled(Qt::UI_AnimateMenu, false);
    return RUN_ALL_TESTS();
}
