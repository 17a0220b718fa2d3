// Tests what is told of the files that processes hold.
#include "platform/linux/space/open_files.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/linux/process/descriptor.h"
#include "support/temp_dir.h"
#include "support/trees.h"
#include "support/whole_files.h"

namespace {

using namespace hl;
using namespace hl::test;

enum class Holds { kOpen, kMapped };

/// A process that holds a file until it is destroyed.
class Holder {
  public:
    Holder(const std::string& path, Holds holds, uid_t user = ::geteuid()) {
        int ready[2];
        must(::pipe(ready));
        process_ = must(::fork());
        if (process_ == 0) hold(path, holds, user, ready[1]);
        char byte = 0;
        ::close(ready[1]);
        EXPECT_EQ(::read(ready[0], &byte, 1), 1) << "The process could not take the file";
        ::close(ready[0]);
    }
    ~Holder() {
        ::kill(process_, SIGKILL);
        ::waitpid(process_, nullptr, 0);
    }
    Holder(const Holder&) = delete;
    Holder& operator=(const Holder&) = delete;
    pid_t process() const { return process_; }

  private:
    [[noreturn]] static void hold(const std::string& path, Holds holds, uid_t user, int ready) {
        const int file = must(::open(path.c_str(), O_RDWR));
        if (holds == Holds::kMapped) {
            if (::mmap(nullptr, 4096, PROT_READ, MAP_SHARED, file, 0) == MAP_FAILED) ::_exit(1);
            ::close(file);
        }
        if (user != ::geteuid()) must(::setresuid(user, user, user));
        if (::write(ready, "1", 1) != 1) ::_exit(1);
        for (;;) ::pause();
    }

    pid_t process_;
};

/// Returns what `process` holds on the device of the folder.
std::vector<HeldFile> heldBy(pid_t process, const std::string& folder, const OpenFilesAnswer& answer) {
    std::vector<HeldFile> held;
    for (const HeldFile& file : answer.files)
        if (file.process == process && file.id.device == factsOf(folder).st_dev) held.push_back(file);
    return held;
}

TEST(OpenFiles, AFileIsToldWithItsProcessWhetherOpenOrMappedAndDeletedOrNot) {
    const TempDir dir;
    for (const Holds holds : {Holds::kOpen, Holds::kMapped}) {
        for (const bool deleted : {false, true}) {
            SCOPED_TRACE(testing::Message() << static_cast<int>(holds) << deleted);
            const std::string path = dir.path() + "/line\nbreak";
            writeFile(path, std::string(70'000, 'x'));
            const struct stat facts = factsOf(path);
            const Holder holder(path, holds);
            if (deleted) must(::unlink(path.c_str()));
            const auto inode = [&](const HeldFile& file) { return file.id.inode == facts.st_ino; };
            const auto held = heldBy(holder.process(), dir.path(), LinuxOpenFiles().list(inode));
            ASSERT_EQ(held.size(), 1U);
            EXPECT_EQ(held[0].isDeleted(), deleted);
            EXPECT_EQ(held[0].program, "unit_tests");
            const bool rootOnly = holds == Holds::kMapped && deleted && ::geteuid() != 0;
            EXPECT_EQ(held[0].bytes.value_or(0),
                      rootOnly ? 0 : 512U * static_cast<std::uint64_t>(facts.st_blocks));
        }
    }
}

TEST(OpenFiles, WithoutRootTheFilesOfOthersAreMissingAndThatIsSaid) {
    if (::geteuid() != 0) GTEST_SKIP() << "only root starts a process of another user";
    constexpr uid_t kOne = 61'001, kOther = 61'002;
    const TempDir dir;
    writeFile(dir.path() + "/held", "x");
    const Holder holder(dir.path() + "/held", Holds::kOpen, kOther);
    const std::uint64_t inode = factsOf(dir.path() + "/held").st_ino;
    const auto seen = [&] {
        const auto isHeld = [&](const HeldFile& file) { return file.id.inode == inode; };
        const OpenFilesAnswer answer = LinuxOpenFiles().list(isHeld);
        return std::pair(answer.sawAll, heldBy(holder.process(), dir.path(), answer).size());
    };
    // A container's root may not look at the first process either.
    const bool rootSeesAll = openAt(AT_FDCWD, "/proc/1/maps", O_RDONLY).isOpen();
    EXPECT_EQ(seen(), std::pair(rootSeesAll, std::size_t{1}));
    const int status = inChild([&] {
        must(::setresuid(kOne, kOne, kOne));
        return seen() == std::pair(false, std::size_t{0}) ? 0 : 1;
    });
    EXPECT_EQ(status, 0);
}

TEST(OpenFiles, WhereNoProcessIsShownNothingIsClaimed) {
    const TempDir dir;
    for (const std::string& proc : {dir.path(), dir.path() + "/missing"}) {
        const OpenFilesAnswer answer = LinuxOpenFiles(proc, dir.path()).list(nullptr);
        EXPECT_TRUE(answer.files.empty());
        EXPECT_FALSE(answer.sawAll);
    }
}

TEST(OpenFiles, WhatTheKernelHoldsIsToldByTheDevice) {
    const TempDir dir;
    const auto at = [&](const std::string& name) { return dir.path() + "/" + name; };
    writeFile(at("image"), "12");
    writeFile(at("swapfile"), "34");
    writeDeepFile(at("block/loop7/loop/backing_file"), at("image") + "\n");
    writeDeepFile(at("block/sda/loop/backing_file"), at("image") + "\n");
    writeDeepFile(at("proc/swaps"),
                  "Filename Type\n/dev/none partition 1\n" + at("swapfile") + "  file 1 0 -2\n");
    const OpenFilesAnswer answer = LinuxOpenFiles(at("proc"), at("block")).list(nullptr);
    std::string told;
    for (const HeldFile& file : answer.files)
        told += file.program + (file.id.inode == factsOf(at("image")).st_ino ? " image " : " other ");
    EXPECT_EQ(told, "loop7 image swap other ");
}

}  // namespace
