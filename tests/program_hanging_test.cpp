// Tests the program from outside with a disk that does not answer.
#include <signal.h>

#include "support/fuse_mount.h"
#include "support/program.h"

namespace hl::test {
namespace {

TEST(ProgramHanging, AReportSaysWhatItWaitsForAndGoesOnOrEndsWhenItIsTold) {
    const TempDir dir;
    makeTree(dir.path(), {"shown/a/file", "shown/file"});
    const FuseMount mount(dir.path() + "/shown", dir.path() + "/mount");
    if (!mount.missing().empty()) GTEST_SKIP() << mount.missing();
    for (const bool goesOn : {true, false}) {
        const Program program;
        mount.stopAnswering();
        std::thread later([&] {
            const auto says = [&] { return !contentOf(program.home("stderr.txt")).empty(); };
            EXPECT_TRUE(comes(says)) << "not without a word";
            if (!goesOn) ::kill(std::stoi(contentOf(program.home("pid"))), SIGINT);
            if (goesOn) mount.answerAgain();
        });
        const auto pid = [&] {
            ::signal(SIGINT, SIG_DFL);  // A shell's job in the background ignores it.
            writeFile(program.home("pid"), std::to_string(::getpid()));
        };
        const std::string report = program.home("report.csv"), source = dir.path() + "/mount";
        const Ended ended = program.run({"-s", report, source}, pid);
        later.join();
        EXPECT_EQ(ended.status, goesOn ? 0 : 128 + SIGINT);
        EXPECT_TRUE(has(ended.errors, "Warten auf " + source));
        EXPECT_EQ(ended.errors.find("wurde nicht geschrieben: angehalten") == std::string::npos, goesOn);
        EXPECT_EQ(contentOf(report).find("/mount/a\"") != std::string::npos, goesOn);
        mount.answerAgain();
    }
}

}  // namespace
}  // namespace hl::test
