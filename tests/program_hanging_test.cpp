// Tests the program from outside with a disk that does not answer.
#include <gtest/gtest.h>

#include <thread>

#include "support/fuse_mount.h"
#include "support/program.h"

namespace hl {
namespace {

TEST(ProgramHanging, AReportSaysWhatItWaitsForAndGoesOnOrEndsWhenItIsTold) {
    const test::TempDir dir;
    test::makeTree(dir.path(), {"shown/a/file", "shown/file"});
    const test::FuseMount mount(dir.path() + "/shown", dir.path() + "/mount");
    if (!mount.missing().empty()) GTEST_SKIP() << mount.missing();
    for (const bool goesOn : {true, false}) {
        const test::Program program;
        mount.stopAnswering();
        std::thread later([&] {
            const auto says = [&] { return !test::readFile(program.home("stderr.txt")).empty(); };
            EXPECT_TRUE(test::comes(says)) << "not without a word";
            if (!goesOn) ::kill(std::stoi(test::readFile(program.home("pid"))), SIGINT);
            if (goesOn) mount.answerAgain();
        });
        const auto pid = [&] { test::writeFile(program.home("pid"), std::to_string(::getpid())); };
        const std::string report = program.home("report.csv"), source = dir.path() + "/mount";
        const test::Ended ended = program.run({"-s", report, source}, pid);
        later.join();
        EXPECT_EQ(ended.status, goesOn ? 0 : 128 + SIGINT);
        EXPECT_NE(ended.errors.find("Warten auf " + source), std::string::npos) << ended.errors;
        EXPECT_EQ(test::readFile(report).find("/mount/a\"") != std::string::npos, goesOn);
        mount.answerAgain();
    }
}

}  // namespace
}  // namespace hl
