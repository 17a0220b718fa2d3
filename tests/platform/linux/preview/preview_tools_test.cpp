// Tests files that are not to be read, helpers that misbehave, and folders that must not stay.
#include "platform/linux/preview/preview_tools.h"

#include <poll.h>

#include "platform/linux/preview/file_confinement.h"
#include "platform/preview_protocol.h"
#include "support/patience.h"
#include "support/results.h"

namespace hl::test {
namespace {

struct PreviewToolsTest : testing::Test {
    TempDir dir;
    LinuxPreviewTools tools{dir.path(), "relative:" + dir.path() + ":/usr/bin:/bin", dir.path()};

    std::string path(const std::string& name) const { return dir.path() + "/" + name; }
    std::string script(const std::string& name, const std::string& body) const {
        writeScript(path(name), body);
        return path(name);
    }
    std::string errorOf(const std::string& file) {
        const auto opened = tools.open(file);
        return opened ? "opened" : opened.error().text;
    }
    std::unique_ptr<HelperProcess> start(const ProcessOrder& order) {
        auto process = tools.start(order);
        return process ? *std::move(process) : nullptr;
    }
    /// Returns all output of the helper until its end, or only until its first line is there.
    static std::string outputOf(HelperProcess& process, bool firstLine = false) {
        std::string output;
        pollfd wait{process.outputDescriptor(), POLLIN, 0};
        while (process.readOutput(output, 100'000) && !(firstLine && output.find('\n') != output.npos))
            ::poll(&wait, 1, 10'000);
        return output;
    }
};

TEST_F(PreviewToolsTest, OpensRegularFilesOfAnyNameAndNothingElse) {
    const std::string odd = path("a\xFF\n.txt");
    writeFile(odd, "content");
    const auto file = *tools.open(odd);
    EXPECT_EQ(*file->head(4), "cont");
    EXPECT_EQ(*(*tools.again(*file))->head(100), "content");
    ASSERT_EQ(symlink(odd.c_str(), path("link").c_str()), 0);
    EXPECT_EQ(errorOf(path("link")), "opened");
    ASSERT_EQ(mkfifo(path("fifo").c_str(), 0600), 0);
    for (const std::string& bad : {path("fifo"), dir.path(), std::string("/dev/zero")})
        EXPECT_TRUE(tools.open(bad).failedAs(ErrorKind::kUnsuited)) << bad;
    EXPECT_EQ(errorOf(path("none")), "No such file or directory");
}

TEST_F(PreviewToolsTest, FindsCommandsInAbsoluteFoldersOnly) {
    script("converter", "true");
    EXPECT_EQ(tools.command("converter"), path("converter"));
    EXPECT_EQ(tools.command("no-such-converter"), "");
    writeFile(path("text"), "x");
    EXPECT_EQ(tools.command("text"), "") << "it cannot be started";
}

TEST_F(PreviewToolsTest, AHelperGetsTheFileAndALittleOfEverythingElse) {
    writeFile(path("file"), "content");
    const auto file = *tools.open(path("file"));
    const auto folder = *tools.makeFolder();
    const int leak = open("/dev/null", O_RDONLY);
    ASSERT_EQ(dup2(leak, 77), 77);
    const std::string program =
        script("helper",
               "cat <&3; echo \" $HOME $PWD\"; ls /proc/$$/fd | tr '\\n' ' '; "
               "ulimit -t; cut -d' ' -f6 /proc/$$/stat; echo $$; echo x > made || echo refused; exit 0");
    auto process =
        start({.program = program, .input = file.get(), .home = folder.get(), .limits = {.cpuSeconds = 7}});
    ASSERT_NE(process, nullptr);
    const std::string output = outputOf(*process);
    const std::string home = folder->path();
    EXPECT_EQ(output.substr(0, output.find('\n')), "content " + home + " " + home);
    EXPECT_FALSE(has(output, " 77 "));
    EXPECT_TRUE(has(output, "7\n"));
    // The folder's name may end in a 7, too.
    const std::string last = output.substr(output.find("7\n", output.find('\n') + 1) + 2),
                      leader = last.substr(0, last.find('\n') + 1);
    EXPECT_EQ(last.substr(0, 2 * leader.size()), leader + leader) << "it can type into the terminal";
    EXPECT_EQ(contentOf(home + "/made"), "");
    close(leak);
    close(77);
}

TEST_F(PreviewToolsTest, AConverterReachesItsInputItsOutputAndAFolderOfItsOwn) {
    const TempDir elsewhere;  // A program may read its own folder, so the secret is elsewhere.
    const std::string secret = elsewhere.path() + "/secret";
    writeFile(secret, "secret\n");
    const auto folder = *tools.makeFolder();
    const auto input = *tools.inMemory("input\n");
    // The script uses only commands of the shell itself, because one without a folder starts no other
    // program.
    const std::string program =
        script("converter", "read x && echo $x\nread y < " + secret +
                                " && echo $y\nkill -0 $PPID && echo hit\n"
                                "echo x > " +
                                path("made") + " && echo made\necho x > own && echo own\nexit 0");
    for (const bool hasFolder : {false, true}) {
        auto process = start({.program = program,
                              .input = input.get(),
                              .inputIsStandard = true,
                              .home = hasFolder ? folder.get() : nullptr,
                              .limits = {.fileSize = 100},
                              .foreign = true});
        std::string output = outputOf(*process);
        // If the system cannot confine reading, the secret can be read.
        if (const auto read = output.find("secret\n");
            FileConfinement::version() < 1 && read != std::string::npos)
            output.erase(read, 7);
        EXPECT_EQ(output, hasFolder ? "own\n" : "input\n");
        EXPECT_TRUE(process->endedWell());
        EXPECT_FALSE(fs::exists(path("made")));
    }
}

TEST_F(PreviewToolsTest, TheEndOfAHelperTakesItsChildrenAlong) {
    auto process = start({.program = script("helper", "sleep 1000 & echo $!; wait")});
    const pid_t child = std::stoi(outputOf(*process, true));
    ASSERT_EQ(kill(child, 0), 0);
    process.reset();
    // It was killed, but whoever takes in orphans may be slow to reap it.
    EXPECT_TRUE(comes([state = "/proc/" + std::to_string(child) + "/stat"] {
        const std::string now = contentOf(state);
        return now.empty() || now.find(") Z") != std::string::npos || now.find(") X") != std::string::npos;
    }));
}

TEST_F(PreviewToolsTest, APrivateFolderGoesWithAllThatIsInIt) {
    writeFile(path("file"), std::string(300'000, 'x'));
    const auto file = *tools.open(path("file"));
    auto folder = *tools.makeFolder();
    const std::string home = folder->path();
    EXPECT_EQ(factsOf(home).st_mode & 0777U, 0700U);
    EXPECT_EQ(numberOf(folder->copy(*file, "copy", 299'999)), EFBIG);
    EXPECT_EQ(numberOf(folder->copy(*file, "copy", 300'000)), 0);
    EXPECT_EQ(contentOf(home + "/copy"), contentOf(path("file")));
    EXPECT_EQ(numberOf(folder->makeFolder("sub")), 0);
    EXPECT_EQ(numberOf(folder->makeFolder("sub")), EEXIST);
    EXPECT_EQ(numberOf(folder->write("sub/x", "x")), 0);
    EXPECT_EQ(numberOf(folder->write("none/x", "x")), ENOENT);
    folder.reset();
    EXPECT_FALSE(fs::exists(home));
}

TEST_F(PreviewToolsTest, AFolderThatCannotBeMadeSaysWhy) {
    LinuxPreviewTools nowhere(dir.path(), "", path("none"));
    EXPECT_EQ(numberOf(nowhere.makeFolder()), ENOENT);
}

TEST(PreviewProtocol, AnswersThatMakeNoSenseAreRefused) {
    constexpr auto kPicture = PreviewAnswer::kPicture;
    EXPECT_TRUE(isSound({kPicture, 0, 10, 20, 5, 10, 800}));
    for (const AnswerHeader& bad : {AnswerHeader{kPicture, 0, 10, 20, 5, 10, 799},
                                    {kPicture, 0, -10, -20, 5, 10, 800},
                                    {kPicture, 0, 32'767, 32'767, 5, 10, 4U * 32'767 * 32'767},
                                    {kPicture, 0, 10, 20, 0, 10, 800},
                                    {static_cast<PreviewAnswer>(7), 0, 10, 20, 5, 10, 800},
                                    {PreviewAnswer::kPages, 0, 10, 20, 5, 10, 12},
                                    {PreviewAnswer::kFailed, 0, 10, 20, 5, 10, 1U << 20}})
        EXPECT_FALSE(isSound(bad)) << static_cast<int>(bad.kind) << " " << bad.width << " " << bad.bytes;
}

TEST(PreviewProtocol, RequestsComeBackAsTheyWere) {
    const auto back =
        requestOf(requestLine({.page = 4999, .box = {800, 600}, .scale = 2000, .trimmed = true}));
    ASSERT_TRUE(back);
    EXPECT_TRUE(back->page == 4999 && back->box == (PictureSize{800, 600}) && back->scale == 2000 &&
                back->trimmed);
    for (const char* line : {"", "1 2 3 1000", "0 0 5 1000 0", "0 5 99999 1000 0", "0 5 5 0 0", "x"})
        EXPECT_FALSE(requestOf(line)) << line;
}

}  // namespace
}  // namespace hl::test
