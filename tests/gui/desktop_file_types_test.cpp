// Tests file types with the machine's database of types, or with that of the toolkit.
#include "platform/qt/window/desktop_file_types.h"

namespace hl {
namespace {

TEST(DesktopFileTypes, GiveEachNameTheTypeThatTheDatabaseGivesWhateverWasAskedBefore) {
    const QMimeDatabase database;
    DesktopFileTypes types;
    const std::string names[] = {"abc",      "Makefile",       "README", "core",    "x.png",   "X.PNG",
                                 "a.tar.gz", "b.gz",           "abd",    ".gz",     ".bashrc", "x.h",
                                 "x.C",      "CMakeLists.txt", "y.txt",  "a.b.c.d", "123",     "x.unknown",
                                 "\xff.c",   "README.Mine",    "x.so.1"};
    for (int round = 0; round < 2; ++round)
        for (const std::string& name : names) {
            const auto fitting = database.mimeTypesForFileName(QString::fromStdString(name));
            const auto type = types.typeName(name);
            EXPECT_EQ(type.has_value(), fitting.size() == 1) << name;
            const std::string expected = fitting.size() == 1 ? fitting.front().comment().toStdString() : "";
            EXPECT_EQ(type.value_or(""), expected) << name;
        }
}

}  // namespace
}  // namespace hl
