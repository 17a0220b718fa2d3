#include "platform/linux/process/system_facts.h"

#include <sys/utsname.h>

#include "platform/linux/process/system_error.h"

namespace hl::test {
namespace {

// A machine whose files the test writes.
struct FilesOfAMachine : testing::Test {
    void file(const std::string& path, const std::string& content) {
        writeDeepFile(root.path() + path, content);
    }

    TempDir root;
    LinuxSystemFacts facts{root.path()};
};

std::string release() {
    utsname name = {};
    uname(&name);
    return name.release;
}

TEST_F(FilesOfAMachine, NameItByItsReleaseFile) {
    EXPECT_EQ(facts.systemName().name, "Linux") << "the kernel has a name without any";
    file("/usr/lib/os-release", "PRETTY_NAME='My = \"own\"'\nID=\"a\\\"b\\\\c\"\n");
    EXPECT_EQ(facts.systemName().name, "My = \"own\"") << "read with the quotes of a shell";
    EXPECT_EQ(facts.systemName().identifier, "a\"b\\c B" + release());
    file("/etc/os-release",
         "# a comment\nNAME=Debian\nPRETTY_NAME=\"Debian GNU/Linux 12 (bookworm)\"\nID=debian\n"
         "VERSION_ID=\"12\"\nID_LIKE=other\n");
    const SystemName name = facts.systemName();
    EXPECT_EQ(name.name, "Debian GNU/Linux 12 (bookworm)");
    EXPECT_EQ(name.identifier, "debian 12 B" + release());
    EXPECT_EQ(release().find(name.version + "."), 0U) << name.version;
}

TEST_F(FilesOfAMachine, TellMemoryUpTimeAndEachDifferentProcessorOnce) {
    EXPECT_EQ(facts.memory().loadPercent + facts.upTimeSeconds() + facts.workingSet(), 0U) << "no files yet";
    file("/proc/meminfo",
         "MemTotal:        4000 kB\nMemFree:          100 kB\nMemAvailable:    1000 kB\nSwapCached:  7 kB\n"
         "SwapTotal:       2000 kB\nSwapFree:         500 kB\n");
    file("/proc/self/statm", "1000 20 10 5 0 100 0\n");
    file("/proc/uptime", "350735.47 234388.90\n");
    file("/proc/cpuinfo",
         "processor\t: 0\nmodel\t\t: 85\nmodel name\t: Big: fast\n\nmodel name\t: Big: fast\n\n"
         "model name\t: Little\n");
    const auto page = static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
    const MemoryFacts memory = facts.memory();
    EXPECT_EQ(std::tuple(memory.physicalTotal, memory.physicalAvailable, memory.pageFileTotal,
                         memory.pageFileAvailable, memory.loadPercent),
              std::tuple(4000U * 1024, 1000U * 1024, 2000U * 1024, 500U * 1024, 75U));
    EXPECT_EQ(memory.virtualTotal - memory.virtualAvailable, 1000 * page);
    EXPECT_EQ(facts.workingSet(), 20 * page);
    EXPECT_EQ(facts.upTimeSeconds(), 350735U);
    EXPECT_EQ(facts.processorName(), "Big: fast\tLittle");
}

TEST(LinuxSystemFacts, AreKnownOnTheRealMachine) {
    LinuxSystemFacts facts;
    const MemoryFacts memory = facts.memory();
    EXPECT_GT(memory.physicalTotal, memory.physicalAvailable);
    EXPECT_TRUE(facts.workingSet() > 100U * 1024 && facts.upTimeSeconds() > 0);
    EXPECT_TRUE(facts.computerName() != "" && facts.userName() != "");
    EXPECT_EQ(facts.adminRights(), geteuid() == 0);
    EXPECT_EQ(facts.environment("PATH"), getenv("PATH"));
    EXPECT_EQ(facts.environment("HARBORLANTERN_UNSET_VALUE"), "");
}

TEST(SystemError, HasTheNumberTheNameAndAnEnglishTextIfThereIsOne) {
    const Error error = systemError(EACCES, "/x");
    EXPECT_TRUE(error.number == EACCES && error.name == "/x" && error.text == "Permission denied");
    for (const int unknown : {99999, -5}) EXPECT_EQ(systemError(unknown).text, "");
    EXPECT_TRUE(systemResult(0) && systemResult(ENOTDIR).failedAs(ErrorKind::kNoFolder));
}

}  // namespace
}  // namespace hl::test
