#include "app/settings.h"

#include <signal.h>

#include "app/settings_fixture.h"

namespace hl::test {
namespace {

using Settings = SettingsFixture;

TEST_F(Settings, GiveDefaultsWithoutAFileAndAreWrittenOnlyWhereSomethingChanges) {
    EXPECT_EQ(store.GetSettings("Optionen", "FontSize", 8.25F), "8.25");
    EXPECT_FALSE(fs::exists(path));
    store.StoreSettings("Allgemein", "Lang", 9);
    store.StoreSettings("Allgemein", "Lang", "9");
    EXPECT_EQ(contentOf(path), "[Allgemein]\r\nLang=9\r\n");
    EXPECT_EQ(files.replacements, 1);
}

TEST_F(Settings, GoToTheFileThatACallNamesOrAreLostInSilence) {
    const std::string other = dir.path() + "/other.ini", nowhere = dir.path() + "/missing/other.ini";
    store.StoreSettings("S", "k", "here", other);
    EXPECT_EQ(store.GetSettings("S", "k", "", other), "here");
    EXPECT_EQ(store.GetSettings("S", "k", "not there"), "not there");
    store.StoreSettings("S", "k", "v", nowhere);
    EXPECT_EQ(store.GetSettings("S", "k", "default", nowhere), "default");
}

TEST_F(Settings, AreNotOverwrittenWhereTheyCannotBeRead) {
    writeFile(path, "[S]\r\nprecious=1\r\n");
    files.readError = EIO;
    store.StoreSettings("S", "k", "v");
    EXPECT_EQ(contentOf(path), "[S]\r\nprecious=1\r\n");
    EXPECT_EQ(files.replacements, 0);
}

TEST_F(Settings, KeepANumberedListUntilTheFirstGap) {
    const std::vector<std::string> folders = {"/a", " /b ", "/c\n\xFF", "", "/d"};
    store.change([&](IniText& ini) { writeNumberedList(ini, "ComboOrdner", "O", folders); });
    EXPECT_EQ(readNumberedList(store.read(), "ComboOrdner", "O"), folders);
    store.change([&](IniText& ini) { writeNumberedList(ini, "ComboOrdner", "O", {"/e"}); });
    EXPECT_EQ(readNumberedList(store.read(), "ComboOrdner", "O"), std::vector<std::string>{"/e"});
    const IniText gap("[ComboOrdner]\n0o=/a\n1O=/b\n3O=/d\n");
    EXPECT_EQ(readNumberedList(gap, "ComboOrdner", "O"), (std::vector<std::string>{"/a", "/b"}));
    IniText ini;  // The mark that ends a list must never be written.
    writeNumberedList(ini, "S", "F", {"/a", std::string(kEndOfList), "/b"});
    EXPECT_EQ(ini.text(), "[S]\r\n0F=/a\r\n1F=/b\r\n");
    EXPECT_TRUE(readNumberedList(IniText("[S]\n0F=!(nix].-.\n1F=/b"), "S", "F").empty());
}

// Writes 50 keys with one number, again and again with the next number, until it is killed.
[[noreturn]] void keepWriting(SettingsStore& store, int ready) {
    for (int number = 1;; ++number) {
        store.change([number](IniText& ini) {
            for (int key = 0; key < 50; ++key) ini.set("S", std::to_string(key), std::to_string(number));
        });
        if (number == 1 && write(ready, "", 1) != 1) _exit(1);
    }
}

TEST_F(Settings, AreWholeHoweverOftenAWriterIsKilled) {
    for (int round = 0; round < 100; ++round) {
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        const pid_t child = fork();
        if (child == 0) keepWriting(store, ends[1]);
        char byte = 0;
        ASSERT_EQ(read(ends[0], &byte, 1), 1);
        usleep(static_cast<useconds_t>(round * 37 % 2000));  // The kill hits another moment of a write each
                                                             // time.
        kill(child, SIGKILL);
        ASSERT_EQ(waitpid(child, nullptr, 0), child);
        close(ends[0]);
        close(ends[1]);
        // In a file that was written completely, all keys hold the same number.
        const auto values = store.read().section("S");
        ASSERT_EQ(values.size(), 50U) << "round " << round;
        for (const auto& [key, value] : values) ASSERT_EQ(value, values.begin()->second) << "round " << round;
    }
}

TEST_F(Settings, LoseNothingWhereSeveralProcessesWriteAtOnce) {
    constexpr int kWriters = 4;
    constexpr int kEach = 20;
    std::vector<pid_t> writers;
    for (int writer = 0; writer < kWriters; ++writer) {
        writers.push_back(fork());
        if (writers.back() != 0) continue;
        for (int i = 0; i < kEach; ++i) store.StoreSettings("S", std::to_string(writer * kEach + i), "x");
        _exit(0);
    }
    for (const pid_t writer : writers) ASSERT_EQ(waitpid(writer, nullptr, 0), writer);
    EXPECT_EQ(store.read().section("S").size(), static_cast<std::size_t>(kWriters * kEach));
}

}  // namespace
}  // namespace hl::test
