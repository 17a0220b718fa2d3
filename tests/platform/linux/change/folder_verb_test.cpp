#include "platform/linux/change/folder_verb.h"

#include "support/results.h"

namespace hl::test {
namespace {

struct FolderVerbTest : testing::Test {
    TempDir dir;
    std::string file = dir.path() + "/data/applications/lantern.desktop";
    LinuxFolderVerb verb{"lantern", dir.path() + "/data", dir.path()};
};

// Returns the value of Exec as a reader of such files sees it: with the escapes of values undone and field
// codes expanded.
std::string commandIn(const std::string& entry) {
    const std::size_t start = entry.find("\nExec=") + 6;
    const std::string value = entry.substr(start, entry.find('\n', start) - start);
    std::string text;
    for (std::size_t i = 0; i < value.size(); ++i)
        text += value[i] != '\\' ? value[i] : value[++i] == 'n' ? '\n' : value[i] == 't' ? '\t' : value[i];
    std::string command;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%')
            command += text[i];
        else if (text[++i] == '%')
            command += '%';
        else
            command += "\"$FOLDERS\"";
    }
    return command;
}

// The quotes of a command line are a subset of the shell's.
TEST_F(FolderVerbTest, TheCommandStartsTheProgramWhateverItsPathHolds) {
    int number = 0;
    for (const char* name : {"plain", "two words", "a\"b", "it's", "$HOME", "`id`", "back\\slash", "100%F",
                             "a\nb", "tab\t", "\xff\xfe", "ümlaut", "-x", "a;b&c"}) {
        const std::string folder = dir.path() + "/" + name;
        const std::string program = folder + "/lantern";
        fs::create_directories(folder);
        writeScript(program, "printf %s \"$1\" > " + dir.path() + "/out");
        const std::string wanted = "/some folder/" + std::to_string(++number);
        setenv("FOLDERS", wanted.c_str(), 1);
        const std::string command = commandIn(folderEntryText({"Lantern", program}));
        EXPECT_EQ(std::system(command.c_str()), 0) << command;
        EXPECT_EQ(contentOf(dir.path() + "/out"), wanted) << command;
        EXPECT_EQ(folderEntryText({"Lantern", program}).find('\xff'), std::string::npos);
    }
    unsetenv("FOLDERS");
}

TEST_F(FolderVerbTest, AnOfferIsOneEntryAndNoChoiceOfDefaults) {
    EXPECT_EQ(numberOf(verb.withdraw()), 0);
    EXPECT_TRUE(fs::is_empty(dir.path())) << "to withdraw what is not there makes nothing";
    for (const char* executable : {"/opt/lantern", "/usr/bin/lantern"}) {
        EXPECT_EQ(numberOf(verb.offer({"Lantern", executable})), 0);
        const std::string entry = contentOf(file);
        for (const char* line :
             {"[Desktop Entry]\n", "\nNoDisplay=true\n", "\nMimeType=inode/directory;\n", executable})
            EXPECT_TRUE(has(entry, line));
    }
    std::size_t files = 0;
    for (const auto& entry : fs::recursive_directory_iterator(dir.path()))
        files += entry.is_regular_file() ? 1 : 0;
    EXPECT_EQ(files, 1U);
    const auto before = fs::last_write_time(file) - std::chrono::hours(1);
    fs::last_write_time(file, before);
    EXPECT_EQ(numberOf(verb.offer({"Lantern", "/usr/bin/lantern"})), 0);
    EXPECT_EQ(fs::last_write_time(file), before) << "an offer that stands is left alone";
    EXPECT_EQ(numberOf(verb.withdraw()), 0);
    EXPECT_FALSE(fs::exists(file));
}

TEST_F(FolderVerbTest, FailuresAreToldWithTheirPlace) {
    writeFile(dir.path() + "/data", "a file in the way");
    const Error failure = verb.offer({"Lantern", "/opt/lantern"}).error();
    EXPECT_EQ(failure.number, ENOTDIR);
    EXPECT_EQ(failure.name, dir.path() + "/data/applications");
    LinuxFolderVerb homeless("lantern", "relative", "");
    EXPECT_EQ(numberOf(homeless.offer({"Lantern", "/opt/lantern"})), ENOENT);
    EXPECT_EQ(numberOf(homeless.withdraw()), 0);
    EXPECT_EQ(LinuxFolderVerb("lantern", "relative", "/home/ada").folder(),
              "/home/ada/.local/share/applications");
}

}  // namespace
}  // namespace hl::test
