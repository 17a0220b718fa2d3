// The balance of random trees on file systems of their own: what is left unexplained.
#include <linux/falloc.h>
#include <sys/statvfs.h>

#include <iostream>

#include "base/scope_exit.h"
#include "images/image_mount.h"
#include "support/mounted.h"
#include "support/program.h"

namespace hl::test {

namespace {

/// Returns the seed of the environment, so that a failure can be repeated.
unsigned balanceSeed() {
    const char* given = std::getenv("HARBORLANTERN_SEED");
    return given != nullptr ? static_cast<unsigned>(std::stoul(given)) : std::random_device()();
}

/// Makes a tree of everything that takes space in another way than by its size.
class SpaceTree {
  public:
    SpaceTree(std::string root, unsigned seed) : root_(std::move(root)), random_(seed) {
        fs::create_directories(root_);
        folders_.push_back(root_);
        for (int i = 0; i < 40; ++i) addFolder();
        for (int i = 0; i < 600; ++i) addEntry();
        addCrowdedFolder();
    }
    ~SpaceTree() {
        for (const int file : held_) ::close(file);
    }
    SpaceTree(const SpaceTree&) = delete;
    SpaceTree& operator=(const SpaceTree&) = delete;

  private:
    unsigned pick(unsigned below) { return static_cast<unsigned>(random_() % below); }
    std::string newName() {
        return folders_[pick(static_cast<unsigned>(folders_.size()))] + "/" + std::to_string(++names_) +
               std::string(pick(30), 'n');
    }
    void addFolder() {
        folders_.push_back(newName());
        makeFolder(folders_.back());
    }
    int write(const std::string& path, std::size_t size) {
        const int file = must(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644));
        std::string bytes(size, '\0');
        for (char& each : bytes) each = static_cast<char>(random_());
        if (::write(file, bytes.data(), size) != static_cast<ssize_t>(size)) std::abort();
        return file;
    }
    void addEntry() {
        const std::string path = newName();
        const unsigned kind = pick(10);
        if (kind == 0 && !files_.empty())
            return fs::create_hard_link(files_[pick(unsigned(files_.size()))], path);
        if (kind == 1) return fs::create_symlink(std::string(1 + pick(900), 'l'), path);
        if (kind == 2)  // A long link to a folder.
            return fs::create_directory_symlink(root_ + std::string(pick(400), '/') + "/.", path);
        // One in three is small.
        const int file = write(path, pick(3) == 0 ? pick(5000) : pick(400'000));
        if (kind == 3) must(::ftruncate(file, 1 + pick(50'000'000)));
        if (kind == 4) must(::fallocate(file, FALLOC_FL_KEEP_SIZE, 0, 1 + pick(2'000'000)));
        if (kind == 5) must(::unlink(path.c_str()));
        if (kind == 5) return held_.push_back(file);
        files_.push_back(path);
        ::close(file);
    }
    // Its own blocks are many, and stay so when it is nearly empty.
    void addCrowdedFolder() {
        const std::string crowded = root_ + "/crowded";
        makeFolder(crowded);
        for (int i = 0; i < 3000; ++i) makeFile(crowded + "/" + std::string(100, 'c') + std::to_string(i), 0);
        for (int i = 0; i < 2900; ++i)
            ::unlink((crowded + "/" + std::string(100, 'c') + std::to_string(i)).c_str());
    }

    std::string root_;
    std::mt19937 random_;
    std::vector<std::string> folders_, files_;
    std::vector<int> held_;
    int names_ = 0;
};

/// Returns the bytes of a line of a balance in JSON.
std::int64_t lineOf(const std::string& json, const std::string& line) {
    const std::regex pattern("\"line\":\"" + line + "\",\"role\":\"[a-z_]+\",\"bytes\":(-?[0-9]+)");
    std::smatch found;
    if (std::regex_search(json, found, pattern)) return std::stoll(found[1]);
    ADD_FAILURE() << "no " << line << " in " << json;
    return 0;
}

struct Disk {
    const char* kind;
    const char* options;  ///< Of mkfs.
    double mostPercent;   ///< Of what is used that may be left unexplained.
};
std::ostream& operator<<(std::ostream& out, const Disk& disk) {
    return out << disk.kind << " " << disk.options;
}

/// Lets the program write the balance of a folder; it must end well.
void readBalance(const std::string& folder, std::string& json) {
    const Program program;
    const std::string file = program.home("balance.json");
    const Ended ended = program.run({"-s", "--balance", file, folder});
    ASSERT_EQ(ended.status, 0) << ended.errors;
    json = contentOf(file);
}

class BalanceOn : public testing::TestWithParam<Disk> {};

TEST_P(BalanceOn, LeavesHardlyAnythingUnexplained) {
    constexpr int kTrees = 4;
    constexpr double kMostOnExt = 4096;
    const Disk& disk = GetParam();
    const unsigned seed = balanceSeed();
    std::cout << disk << ", HARBORLANTERN_SEED=" << seed << "\n";
    for (unsigned tree = 0; tree < kTrees; ++tree) {
        ImageMount image(disk.kind, 900, disk.options);
        if (!image.missing().empty()) GTEST_SKIP() << image.missing();
        const SpaceTree found(image.path() + "/tree", seed + tree);
        // Then something is mounted over a part of what was there.
        const SpaceTree covered(image.path() + "/covered", seed + tree + kTrees);
        const Mounted cover("none", image.path() + "/covered", "tmpfs");
        ASSERT_TRUE(cover.done());
        image.sync();
        std::string json;
        readBalance(image.path(), json);
        ASSERT_NE(json, "");
        struct statvfs now {};
        must(::statvfs(image.path().c_str(), &now));
        const auto used = static_cast<double>((now.f_blocks - now.f_bfree) * now.f_frsize);
        EXPECT_EQ(static_cast<double>(lineOf(json, "used")), used);
        const auto rest = static_cast<double>(lineOf(json, "rest"));
        std::cout << "rest " << lineOf(json, "rest") << " of " << lineOf(json, "used") << ", "
                  << 100 * rest / used << " %\n";
        EXPECT_LE(std::abs(rest), disk.mostPercent == 0 ? kMostOnExt : used * disk.mostPercent / 100) << json;
        for (const char* some : {"hidden", "held", "holes", "further_names", "rounded_up"})
            EXPECT_GT(lineOf(json, some), 100'000) << json;
    }
}

TEST(BalanceOfLoops, ADeletedFileThatALoopDeviceHoldsIsCounted) {
    ImageMount image("ext4", 300);
    if (!image.missing().empty()) GTEST_SKIP() << image.missing();
    const std::string held = image.path() + "/held";
    writeFile(held, std::string(5'000'000, 'x'));
    std::string device = outputOf("losetup -f --show '" + held + "'");
    ASSERT_TRUE(device.starts_with("/dev/loop")) << device;
    device.pop_back();
    const ScopeExit detach([&] { EXPECT_TRUE(shellDoes("losetup -d " + device)); });
    image.sync();
    const auto blocks = static_cast<std::int64_t>(factsOf(held).st_blocks);
    must(::unlink(held.c_str()));
    image.sync();
    std::string json;
    readBalance(image.path(), json);
    ASSERT_NE(json, "");
    EXPECT_EQ(lineOf(json, "held"), 512 * blocks);
    EXPECT_TRUE(has(json, "\"program\":\"" + device.substr(5) + "\",\"process\":0")) << json;
    EXPECT_LE(std::abs(lineOf(json, "rest")), 4096) << json;
}

INSTANTIATE_TEST_SUITE_P(Disks, BalanceOn,
                         testing::Values(Disk{"ext4", "", 0}, Disk{"ext4", "-O orphan_file", 0},
                                         Disk{"ext4", "-b 1024 -O ^64bit", 0}, Disk{"xfs", "", 2},
                                         Disk{"xfs", "-m rmapbt=1", 2}, Disk{"btrfs", "", 2},
                                         Disk{"btrfs", "-d dup", 2}));

}  // namespace

}  // namespace hl::test
