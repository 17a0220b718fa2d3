#include "platform/linux/drives/drives.h"

#include <poll.h>

namespace hl::test {
namespace {

using std::chrono::milliseconds;

// Long enough that no question that is answered at once takes so long, even on a busy machine.
constexpr milliseconds kLimit(250);

/// A machine that consists of files: a mount table, /sys/block devices and labels.
class FakeMachine {
  public:
    const std::string& root() const { return dir_.path(); }

    void write(const std::string& path, const std::string& content) const {
        writeDeepFile(root() + path, content);
    }
    void link(const std::string& path, const std::string& target) const {
        fs::create_directories(fs::path(root() + path).parent_path());
        fs::create_symlink(target, root() + path);
    }
    /// Adds a disk with one partition ("sda" and "sda1").
    void disk(const std::string& name, const std::string& number, bool removable) const {
        write("/sys/devices/" + name + "/removable", removable ? "1\n" : "0\n");
        write("/sys/devices/" + name + "/" + name + "1/partition", "1\n");
        link("/sys/dev/block/" + number, "../../devices/" + name + "/" + name + "1");
        link("/sys/class/block/" + name + "1", "../../devices/" + name + "/" + name + "1");
    }
    void mounts(const std::vector<std::string>& lines) const {
        std::string table;
        int id = 20;
        for (const std::string& line : lines) table += std::to_string(++id) + " 1 " + line + "\n";
        write("/proc/self/mountinfo", table);
    }
    std::vector<std::string> roots() const {
        std::vector<std::string> roots;
        for (const Drive& drive : LinuxDrives({.root = root()}).drives()) roots.push_back(drive.root);
        return roots;
    }

  private:
    TempDir dir_;
};

TEST(LinuxDrives, ListsWhatAUserWouldCallADrive) {
    const FakeMachine machine;
    const std::pair<const char*, bool> cases[] = {
        {"8:1 / /mnt/p rw - ext4 /dev/sda1 rw", true},
        {"0:40 /@home /mnt/p rw shared:1 - btrfs /dev/sda1 rw", true},
        {"0:41 / /mnt/p rw - zfs tank/home rw", true},
        {"0:42 / /mnt/p rw - nfs4 server:/x rw", true},
        {"0:43 / /mnt/p rw - fuse.sshfs me@server: rw", true},
        {"7:3 / /mnt/p ro - iso9660 /dev/loop3 ro", true},
        {"0:45 / /tmp rw - tmpfs tmpfs rw", true},
        {"0:45 / /run/user/1000 rw - tmpfs tmpfs rw", false},
        {"0:45 / /dev/shm rw - tmpfs tmpfs rw", false},
        {"7:1 / /snap/core/1 ro - squashfs /dev/loop1 ro", false},
        {"0:22 / /proc rw - proc proc rw", false},
        {"0:27 / /mnt/p rw - fuse.portal portal rw", false},
        {"0:28 / /var/lib/docker/overlay2/a/merged rw - overlay overlay rw", false},
        {"0:29 / /net rw - autofs systemd-1 rw", false}};
    for (const auto& [line, listed] : cases) {
        machine.mounts({"0:9 / / rw - overlay overlay rw", line});
        EXPECT_EQ(machine.roots().size(), listed ? 2U : 1U) << line;
    }
}

TEST(LinuxDrives, ListsEachDeviceOnceWhereItWasMountedFirst) {
    const FakeMachine machine;
    machine.write("/etc/hosts", "");
    machine.mounts({"0:2 / / rw - rootfs rootfs rw", "8:2 /x /etc/hosts rw - ext4 /dev/sda2 rw",
                    "8:1 / / rw - ext4 /dev/sda1 rw",  // It hides the first line.
                    "8:2 / /data rw - ext4 /dev/sda2 rw", "8:1 /srv /again rw - ext4 /dev/sda1 rw",
                    "0:50 / /a rw - zfs tank/a rw", "0:51 / /b rw - zfs tank/b rw",
                    "0:52 / /c rw - zfs tan rw", "0:60 / /n1 rw - nfs server:/one rw",
                    "0:60 / /n2 rw - nfs server:/two rw", "0:60 / /n3 rw - nfs server:/one rw",
                    "8:3 / /hidden rw - ext4 /dev/sda3 rw", "8:4 / /hidden rw - ext4 /dev/sda4 rw"});
    EXPECT_EQ(machine.roots(), (std::vector<std::string>{"/", "/data", "/a", "/c", "/n1", "/n2", "/hidden"}));
}

TEST(LinuxDrives, KnowsTypeAndLabelWithoutAsking) {
    const FakeMachine machine;
    machine.disk("sda", "8:1", false);
    machine.disk("sdb", "8:17", true);
    machine.disk("sdc", "8:33", false);
    machine.write("/sys/devices/sdc/device/type", "5\n");
    machine.disk("dm-", "253:1", false);
    machine.link("/dev/mapper/vg-home", "../dm-1");
    machine.link("/dev/disk/by-label/My\\x20disk\\x2f\\xc3\\xa4\\xzz", "../../sda1");
    machine.link("/dev/disk/by-label/pool", "../../dm-1");
    const std::tuple<const char*, DriveType, const char*> cases[] = {
        {"8:1 / / rw - ext4 /dev/sda1 rw", DriveType::kFixed, "My disk/ä\\xzz"},
        {"8:17 / / rw - vfat /dev/sdb1 rw", DriveType::kRemovable, ""},
        {"8:33 / / rw - ext4 /dev/sdc1 rw", DriveType::kDisc, ""},
        {"11:0 / / ro - udf /dev/sr0 ro", DriveType::kDisc, ""},
        {"0:7 / / rw - btrfs /dev/mapper/vg-home rw", DriveType::kFixed, "pool"},
        {"0:7 / / rw - btrfs /dev/sdb1 rw", DriveType::kRemovable, ""},
        {"0:7 / / rw - tmpfs tmpfs rw", DriveType::kRam, ""},
        {"0:7 / / rw - cifs //server/share rw", DriveType::kRemote, "//server/share"},
        {"99:1 / / rw - ext4 /dev/gone rw", DriveType::kFixed, ""}};
    for (const auto& [line, type, label] : cases) {
        machine.mounts({line});
        const auto drives = LinuxDrives({.root = machine.root()}).drives();
        ASSERT_EQ(drives.size(), 1U) << line;
        EXPECT_EQ(drives[0].type, type) << line;
        EXPECT_EQ(drives[0].label.valueOr("?"), label) << line;
    }
    fs::remove_all(machine.root() + "/dev/disk");
    machine.mounts({"8:1 / / rw - ext4 /dev/sda1 rw"});
    EXPECT_TRUE(LinuxDrives({.root = machine.root()}).drives()[0].label.failedAs(ErrorKind::kNotFound));
}

TEST(LinuxDrives, FindsTheMountOfAUncText) {
    const FakeMachine machine;
    machine.mounts({"0:1 / /srv/all rw - nfs server:/export rw",
                    "0:2 / /srv/in rw - nfs server:/export/in rw", "0:3 / /win rw - cifs //Box/Share$ rw",
                    "0:4 / /ssh rw - fuse.sshfs me@far:home rw", "8:1 / /local rw - ext4 //box/local rw",
                    "0:5 / / rw - 9p box2:/exports rw"});
    const char* const cases[][2] = {
        {"\\\\server\\export\\", "/srv/all"}, {"//SERVER/export", "/srv/all"},
        {"//server/export/in", "/srv/in"},    {"//server/export/inner", "/srv/all/inner"},
        {"//server/exported", "none"},        {"\\\\BOX\\share$\\A b\\", "/win/A b"},
        {"//far/home/x", "/ssh/x"},           {"//box/local", "none"},
        {"//box2/exports/x", "/x"},           {"//server", "none"}};
    LinuxDrives drives({.root = machine.root()});
    for (const auto& [unc, root] : cases) {
        const auto found = drives.network(unc);
        EXPECT_EQ(found ? found->root : "none", root) << unc;
        EXPECT_TRUE(!found || found->type == DriveType::kRemote) << unc;
    }
}

/// Drives that answer with the length of their path, except "/dead...", which hang until they are released.
struct AskedDrives : testing::Test {
    ~AskedDrives() override {
        letGo();
        // The threads use this fixture's members until they have returned.
        std::unique_lock lock(mutex);
        moved.wait(lock, [&] { return inside == 0; });
    }

    LinuxDrives make(milliseconds limit) {
        return LinuxDrives({.root = "/no/such",
                            .space = [this](const std::string& path) { return space(path); },
                            .limit = limit});
    }
    DriveAnswer space(const std::string& path) {
        std::unique_lock lock(mutex);
        ++inside;
        ++asked[path];
        moved.notify_all();
        if (path.starts_with("/dead")) moved.wait(lock, [&] { return released; });
        --inside;
        moved.notify_all();
        if (path == "/throws") throw std::runtime_error("no");
        if (path == "/failing") return Error();
        return DriveSpace{path.size(), 1, 512};
    }
    void letGo() {
        const std::lock_guard lock(mutex);
        released = true;
        moved.notify_all();
    }
    void ask(LinuxDrives& drives, const std::string& path, DriveType type = DriveType::kFixed) {
        drives.ask({.root = path, .type = type}, [this, path](const DriveAnswer& answer) {
            ++calls;
            answers[path] = answer ? static_cast<int>(answer->total) : -1;
        });
    }
    /// Takes answers as they come, until there are `wanted` of them.
    void await(LinuxDrives& drives, int wanted) const {
        while (calls < wanted) {
            pollfd ready = {.fd = drives.answersDescriptor(), .events = POLLIN, .revents = 0};
            ASSERT_EQ(poll(&ready, 1, 30000), 1) << "no answer and no end of the limit";
            drives.takeAnswers();
        }
    }

    std::mutex mutex;
    std::condition_variable moved;
    int inside = 0;
    bool released = false;
    std::map<std::string, int> asked;
    int calls = 0;
    std::map<std::string, int> answers;  ///< -1 stands for no answer.
};

TEST_F(AskedDrives, AnswerEachQuestionOnceAndOnlyWhenTaken) {
    LinuxDrives drives = make(std::chrono::hours(1));
    for (const char* path : {"/a", "/failing", "/throws", "/a"}) ask(drives, path);
    EXPECT_EQ(calls, 0);
    await(drives, 4);
    EXPECT_EQ(answers, (std::map<std::string, int>{{"/a", 2}, {"/failing", -1}, {"/throws", -1}}));
    drives.takeAnswers();
    EXPECT_EQ(calls, 4);
}

TEST_F(AskedDrives, ThatAreDeadHoldUpNoOtherAndCostOneThreadEach) {
    LinuxDrives drives = make(kLimit);
    for (int i = 0; i < 6; ++i) ask(drives, "/dead" + std::to_string(i), DriveType::kRemote);
    for (int i = 0; i < 300; ++i) ask(drives, "/live" + std::to_string(i));
    await(drives, 306);
    EXPECT_EQ(answers["/dead5"], -1);
    EXPECT_EQ(answers["/live299"], 8);
    EXPECT_EQ(drives.hangingThreads(), 6U);
    for (int i = 0; i < 3; ++i) ask(drives, "/dead0", DriveType::kRemote);
    await(drives, 309);
    EXPECT_EQ(drives.hangingThreads(), 6U);
    const std::lock_guard lock(mutex);
    EXPECT_EQ(asked["/dead0"], 1);
}

TEST_F(AskedDrives, AreAskedAgainWhenTheyCameBack) {
    LinuxDrives drives = make(kLimit);
    ask(drives, "/dead");
    await(drives, 1);
    EXPECT_EQ(answers["/dead"], -1);
    letGo();
    while (drives.hangingThreads() > 0) std::this_thread::yield();
    drives.takeAnswers();
    EXPECT_EQ(calls, 1) << "an answer that comes too late is dropped";
    ask(drives, "/dead");
    await(drives, 2);
    EXPECT_EQ(answers["/dead"], 5);
}

TEST_F(AskedDrives, ThatHangAreNotWaitedForAtTheEnd) {
    {
        LinuxDrives drives = make(std::chrono::hours(1));
        ask(drives, "/dead");
        std::unique_lock lock(mutex);
        moved.wait(lock, [&] { return inside == 1; });
    }
    const std::lock_guard lock(mutex);
    EXPECT_EQ(inside, 1);
    EXPECT_EQ(calls, 0);
}

TEST(LinuxDrives, TellTheSizesOfThisMachine) {
    const auto space = spaceAt("/");
    ASSERT_TRUE(space);
    EXPECT_GT(space->total, space->free);
    EXPECT_GE(space->clusterSize, 512U);
    EXPECT_FALSE(spaceAt("/no/such/place"));
}

}  // namespace
}  // namespace hl::test
