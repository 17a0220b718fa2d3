#include "platform/linux/trash.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iterator>
#include <map>
#include <optional>
#include <regex>
#include <thread>
#include <vector>

#include "support/temp_dir.h"
#include "support/trees.h"
#include "support/whole_files.h"

namespace hl {

// For the messages of failed tests.
static std::ostream& operator<<(std::ostream& out, RecycleError error) {
    return out << "RecycleError 0x" << std::hex << static_cast<int>(error);
}

namespace {

namespace fs = std::filesystem;

constexpr uid_t kNobody = 65534;

/// Everything at and below `path`, a line each: what it is, its rights, its content or where it leads.
std::string snapshotOf(const std::string& path) {
    struct stat status {};
    if (lstat(path.c_str(), &status) != 0) return "nothing\n";
    std::string line = std::to_string(status.st_mode) + " " + std::to_string(status.st_ino) + " ";
    if (S_ISREG(status.st_mode)) line += test::contentOf(path);
    if (S_ISLNK(status.st_mode)) line += fs::read_symlink(path).string();
    line += "\n";
    if (!S_ISDIR(status.st_mode)) return line;
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(path)) names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    for (const std::string& name : names) line += name + ": " + snapshotOf(path + "/" + name);
    return line;
}

std::string decoded(const std::string& text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            out += text[i];
        } else {
            out += static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16));
            i += 2;
        }
    }
    return out;
}

/// One trash as any other program reads it: names in files/ and the path that each came from.
using Content = std::map<std::string, std::string>;

/// Fails the test for an info file that is not exact, or has no entry; for an entry that has no info file.
Content contentOfTrash(const std::string& trash) {
    static const std::regex kForm(
        "\\[Trash Info\\]\nPath=([A-Za-z0-9._~/-]|%[0-9A-F]{2})+\n"
        "DeletionDate=(\\d{4})-(\\d\\d)-(\\d\\d)T(\\d\\d):(\\d\\d):(\\d\\d)\n");
    constexpr std::size_t kBeforePath = std::string_view("[Trash Info]\nPath=").size();
    Content content;
    if (!fs::exists(trash + "/info")) return content;
    for (const auto& info : fs::directory_iterator(trash + "/info")) {
        const std::string text = test::contentOf(info.path().string());
        EXPECT_EQ(info.path().extension(), ".trashinfo");
        EXPECT_EQ(info.symlink_status().permissions(), fs::perms::owner_read | fs::perms::owner_write);
        // The library's regular expressions recurse for every character of the long ones.
        if (text.size() < 3000) {
            EXPECT_TRUE(std::regex_match(text, kForm)) << text;
        }
        const std::string name = info.path().stem().string();
        const std::size_t end = text.find('\n', kBeforePath);
        content[name] = decoded(text.substr(kBeforePath, end - kBeforePath));
        EXPECT_TRUE(fs::exists(fs::symlink_status(trash + "/files/" + name))) << name;
    }
    EXPECT_EQ(content.size(), static_cast<std::size_t>(std::distance(fs::directory_iterator(trash + "/files"),
                                                                     fs::directory_iterator())));
    return content;
}

/// A home trash and a folder to throw away from, on one mount.
class Trashing : public testing::Test {
  protected:
    Trashing() { fs::create_directories(root); }

    RecycleError recycle(const std::string& name) { return moveToTrash({root, name}, settings); }
    std::string infoOf(const std::string& name) const {
        return test::contentOf(home + "/info/" + name + ".trashinfo");
    }

    test::TempDir dir;
    const std::string root = fs::canonical(dir.path()).string() + "/from";
    const std::string home = dir.path() + "/data/Trash";
    TrashSettings settings{home, geteuid()};
};

void makeSocket(const std::string& path) {
    sockaddr_un address{AF_UNIX, {}};
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    const int socket = test::must(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    test::must(bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address));
    close(socket);
}

struct Kind {
    std::string label;
    std::string name;
    std::function<void(const std::string& path)> make;
};

const auto kAFile = [](const std::string& path) { test::writeFile(path, "content"); };

const Kind kKinds[] = {
    {"file", "file", kAFile},
    {"emptyFile", "empty", [](auto& path) { test::writeFile(path, ""); }},
    {"emptyFolder", "folder", [](auto& path) { test::makeFolder(path); }},
    {"folderWithContent", "full",
     [](auto& path) {
         fs::create_directories(path + "/in/deeper");
         test::writeFile(path + "/in/deeper/file", "content");
         fs::create_symlink("/", path + "/in/link");
     }},
    {"linkToFile", "link", [](auto& path) { fs::create_symlink("/etc/passwd", path); }},
    {"linkToFolder", "linked", [](auto& path) { fs::create_symlink("/etc", path); }},
    {"danglingLink", "dangling", [](auto& path) { fs::create_symlink("nowhere/at all", path); }},
    {"linkToItself", "loop", [](auto& path) { fs::create_symlink("loop", path); }},
    {"fifo", "fifo", [](auto& path) { test::must(mkfifo(path.c_str(), 0600)); }},
    {"socket", "socket", makeSocket},
    {"readOnlyFile", "locked",
     [](auto& path) {
         test::writeFile(path, "content");
         fs::permissions(path, fs::perms::none);
     }},
    {"lineBreak", "a\nPath=/etc\n", kAFile},
    {"percentSign", "100%41 \t#;", kAFile},
    {"noUtf8", "\xff\xfe\x80 \xc3", kAFile},
    {"everyByte",
     [] {
         std::string all;
         for (int byte = 1; byte < 256; ++byte)
             if (byte != '/' && all.size() < 245) all += static_cast<char>(byte);
         return all;
     }(),
     kAFile},
    {"deleted", "gone (deleted)", kAFile},
    {"trashInfo", "x.trashinfo", kAFile},
};

class TrashingKind : public Trashing, public testing::WithParamInterface<Kind> {};

INSTANTIATE_TEST_SUITE_P(Kinds, TrashingKind, testing::ValuesIn(kKinds),
                         [](const auto& info) { return info.param.label; });

TEST_P(TrashingKind, GoesWholeAndCanComeBackToWhereItWas) {
    const std::string& name = GetParam().name;
    const std::string path = root + "/" + name;
    GetParam().make(path);
    const std::string before = snapshotOf(path);
    ASSERT_EQ(recycle(name), RecycleError::kNone);
    EXPECT_EQ(snapshotOf(path), "nothing\n");
    EXPECT_EQ(contentOfTrash(home), (Content{{name, path}}));
    EXPECT_EQ(snapshotOf(home + "/files/" + name), before);
}

TEST_F(Trashing, MakesTheHomeTrashForNobodyElse) {
    const mode_t before = umask(0);
    test::writeFile(root + "/file", "");
    EXPECT_EQ(recycle("file"), RecycleError::kNone);
    umask(before);
    for (const char* part : {"/data", "/data/Trash", "/data/Trash/files", "/data/Trash/info"})
        EXPECT_EQ(fs::status(dir.path() + part).permissions(), fs::perms::owner_all) << part;
}

TEST_F(Trashing, WritesTheLocalTime) {
    test::writeFile(root + "/file", "");
    const auto now = [] {
        char text[32] = {};
        const time_t seconds = time(nullptr);
        const tm local = *localtime(&seconds);
        snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d", local.tm_year + 1900, local.tm_mon + 1,
                 local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec);
        return std::string(text);
    };
    const char* zone = getenv("TZ");
    const std::string zoneBefore = zone != nullptr ? zone : "";
    setenv("TZ", "XYZ-5:17", 1);
    tzset();
    const std::string before = now();
    EXPECT_EQ(recycle("file"), RecycleError::kNone);
    const std::string after = now();
    zone != nullptr ? setenv("TZ", zoneBefore.c_str(), 1) : unsetenv("TZ");
    tzset();
    const std::string info = infoOf("file");
    const std::string date = info.substr(info.rfind('=') + 1, before.size());
    EXPECT_LE(before, date);
    EXPECT_LE(date, after);
}

TEST_F(Trashing, KeepsEntriesOfTheSameNameApart) {
    fs::create_directories(root + "/a");
    fs::create_directories(root + "/b/same/full");
    test::writeFile(root + "/same", "1");
    test::writeFile(root + "/a/same", "2");
    EXPECT_EQ(recycle("same"), RecycleError::kNone);
    EXPECT_EQ(recycle("a/same"), RecycleError::kNone);
    EXPECT_EQ(recycle("b/same"), RecycleError::kNone);
    EXPECT_EQ(
        contentOfTrash(home),
        (Content{{"same", root + "/same"}, {"same.2", root + "/a/same"}, {"same.3", root + "/b/same"}}));
    EXPECT_EQ(test::contentOf(home + "/files/same.2"), "2");
}

TEST_F(Trashing, FindsANameBehindManyOfTheSame) {
    for (int i = 0; i < 120; ++i) {
        test::writeFile(root + "/same", std::to_string(i));
        ASSERT_EQ(recycle("same"), RecycleError::kNone);
    }
    EXPECT_EQ(contentOfTrash(home).size(), 120U);
}

TEST_F(Trashing, LeavesWhatLiesInTheTrashWithoutAnInfoFile) {
    fs::create_directories(home + "/files/name");
    fs::create_directories(home + "/info");
    fs::create_symlink("/nowhere", home + "/files/name.2");
    test::writeFile(root + "/name", "mine");
    EXPECT_EQ(recycle("name"), RecycleError::kNone);
    EXPECT_EQ(test::contentOf(home + "/files/name.3"), "mine");
    EXPECT_TRUE(fs::is_empty(home + "/files/name"));
    EXPECT_EQ(snapshotOf(home + "/info/name.trashinfo"), "nothing\n");
    EXPECT_EQ(snapshotOf(home + "/info/name.2.trashinfo"), "nothing\n");
}

TEST_F(Trashing, ShortensANameUntilItsInfoFileHasOneToo) {
    const std::string longest(255, 'n');
    for (int i = 0; i < 2; ++i) {
        test::writeFile(root + "/" + longest, "");
        EXPECT_EQ(recycle(longest), RecycleError::kNone);
    }
    const std::string from = root + "/" + longest;
    EXPECT_EQ(contentOfTrash(home),
              (Content{{longest.substr(0, 245), from}, {longest.substr(0, 243) + ".2", from}}));
}

TEST_F(Trashing, NamesThePlaceWithoutTheLinksOnTheWay) {
    fs::create_directories(root + "/real");
    fs::create_directory_symlink("real", root + "/link");
    for (const char* name : {"one", "two", "three"}) test::writeFile(root + "/real/" + name, "");
    EXPECT_EQ(moveToTrash({root + "/link/one"}, settings), RecycleError::kNone);
    EXPECT_EQ(moveToTrash({root, "link/two", true}, settings), RecycleError::kNone);
    EXPECT_EQ(moveToTrash({root, "link/three"}, settings), RecycleError::kInvalidPath);
    EXPECT_EQ(contentOfTrash(home), (Content{{"one", root + "/real/one"}, {"two", root + "/real/two"}}));
    EXPECT_TRUE(fs::exists(root + "/real/three"));
}

TEST_F(Trashing, NamesAPlaceThatIsLongerThanTheKernelTells) {
    const std::string step(200, 's');
    constexpr int kDepth = 30;
    std::string below;
    test::makeChain(root, kDepth, step);
    for (int i = 0; i < kDepth; ++i) below += step + "/";
    EXPECT_EQ(recycle(below + "f"), RecycleError::kNone);
    EXPECT_EQ(contentOfTrash(home), (Content{{"f", root + "/" + below + "f"}}));
    test::removeChain(root, kDepth, step);
}

TEST_F(Trashing, SaysWhatIsNotThere) {
    test::writeFile(root + "/file", "");
    const struct {
        FilePlace place;
        RecycleError error;
    } cases[] = {
        {{root, "vanished"}, RecycleError::kInvalidPath},
        {{root, "no/where"}, RecycleError::kInvalidPath},
        {{root, "file/below"}, RecycleError::kInvalidPath},
        {{root + "/vanished"}, RecycleError::kInvalidPath},
        {{root, std::string(300, 'n')}, RecycleError::kNameTooLong},
        {{root, ".."}, RecycleError::kUnknown},
        {{"/"}, RecycleError::kRoot},
        {{"/proc"}, RecycleError::kRoot},
    };
    for (const auto& c : cases)
        EXPECT_EQ(moveToTrash(c.place, settings), c.error) << c.place.base << " " << c.place.below;
    EXPECT_EQ(contentOfTrash(home), Content());
    EXPECT_TRUE(fs::exists(root + "/file"));
}

TEST_F(Trashing, RefusesItselfAndWhatHoldsIt) {
    for (const char* part : {"/files", "/info"}) fs::create_directories(home + part);
    const std::string before = snapshotOf(dir.path());
    for (const char* name : {"data", "data/Trash", "data/Trash/files", "data/Trash/info"})
        EXPECT_EQ(moveToTrash({dir.path(), name}, settings), RecycleError::kUnknown) << name;
    EXPECT_EQ(snapshotOf(dir.path()), before);
}

/// Acts for another user until it goes.
class ActingAs {
  public:
    explicit ActingAs(uid_t user) : done_(seteuid(user) == 0) {}
    ~ActingAs() {
        if (done_ && seteuid(0) != 0) abort();
    }
    ActingAs(const ActingAs&) = delete;
    ActingAs& operator=(const ActingAs&) = delete;

  private:
    bool done_;
};

TEST_F(Trashing, TakesNothingFromWhereTheUserMayNot) {
    if (geteuid() != 0) GTEST_SKIP() << "needs root to act as somebody else";
    fs::permissions(dir.path(), fs::perms(0755));
    fs::create_directories(home);
    test::must(chown(home.c_str(), kNobody, kNobody));
    test::writeFile(root + "/file", "kept");
    const ActingAs nobody(kNobody);
    EXPECT_EQ(moveToTrash({root, "file"}, {home, kNobody}), RecycleError::kAccess);
    EXPECT_EQ(contentOfTrash(home), Content());
    EXPECT_EQ(test::contentOf(root + "/file"), "kept");
}

/// Something mounted on a folder of the test's own; gone before the folder.
class Mounted {
  public:
    Mounted(const std::string& source, const std::string& at, const char* kind, unsigned long flags = 0)
        : at_(at) {
        fs::create_directories(at);
        done_ = mount(source.c_str(), at.c_str(), kind, flags, nullptr) == 0;
    }
    ~Mounted() {
        if (done_ && umount2(at_.c_str(), MNT_DETACH) != 0)
            abort();  // What is mounted is not the test's to remove.
    }
    Mounted(const Mounted&) = delete;
    Mounted& operator=(const Mounted&) = delete;

    bool done() const { return done_; }

  private:
    std::string at_;
    bool done_ = false;
};

/// A mount of its own, with a home trash elsewhere.
class TrashingOnAMount : public Trashing {
  protected:
    void SetUp() override {
        if (!mounted.done()) GTEST_SKIP() << "may not mount";
        test::makeFolder(top + "/folder");
        test::writeFile(top + "/folder/a b", "content");
    }
    RecycleError recycleIt() { return moveToTrash({top, "folder/a b"}, settings); }

    const std::string top = root + "/mounted";
    const std::string number = std::to_string(geteuid());
    const std::string own = top + "/.Trash-" + number;
    const std::string shared = top + "/.Trash";
    const Content theOne = {{"a b", "folder/a b"}};
    Mounted mounted{"tmpfs", top, "tmpfs"};
};

TEST_F(TrashingOnAMount, GoesToItsOwnTrashWithAPathFromTheTop) {
    EXPECT_EQ(recycleIt(), RecycleError::kNone);
    EXPECT_EQ(contentOfTrash(own), theOne);
    EXPECT_EQ(fs::status(own).permissions(), fs::perms::owner_all);
    EXPECT_EQ(moveToTrash({top + "/folder"}, settings), RecycleError::kNone);
    EXPECT_EQ(contentOfTrash(own), (Content{{"a b", "folder/a b"}, {"folder", "folder"}}));
    EXPECT_FALSE(fs::exists(home));
    EXPECT_FALSE(fs::exists(dir.path() + "/data"));
}

TEST_F(TrashingOnAMount, NamesALongPlaceFromTheTop) {
    const std::string step(200, 's');
    constexpr int kDepth = 30;
    std::string below;
    test::makeChain(top, kDepth, step);
    for (int i = 0; i < kDepth; ++i) below += step + "/";
    EXPECT_EQ(moveToTrash({top, below + "f"}, settings), RecycleError::kNone);
    EXPECT_EQ(contentOfTrash(own), (Content{{"f", below + "f"}}));
    // Without the kernel's help a place that a link leads to cannot be named.
    fs::create_directory_symlink(step, root + "/link");
    const std::string inner = below.substr(0, below.size() - 1 - step.size() - 1);
    fs::remove(root + "/link");
    EXPECT_EQ(moveToTrash({top, inner + "/" + step + "/../f"}, settings), RecycleError::kUnknown);
    test::removeChain(top, kDepth, step);
}

TEST_F(TrashingOnAMount, TheMountItselfIsRefused) {
    EXPECT_EQ(recycle("mounted"), RecycleError::kRoot);
    EXPECT_EQ(recycle("mounted/"), RecycleError::kRoot);
    EXPECT_TRUE(fs::exists(top + "/folder/a b"));
}

TEST_F(TrashingOnAMount, AFolderThatHoldsAMountGoesNowhere) {
    const std::string before = snapshotOf(top);
    EXPECT_EQ(moveToTrash({root}, settings), RecycleError::kNone) << "the kernel lets mounts move along";
    EXPECT_EQ(snapshotOf(home + "/files/from/mounted"), before);
    fs::rename(home + "/files/from", root);
}

/// How ".Trash" and ".Trash-$uid" may be found, and which of them is used.
TEST_F(TrashingOnAMount, UsesOnlyATrashThatNobodyElseCanTurnAgainstTheUser) {
    const std::string elsewhere = dir.path() + "/elsewhere";
    const auto makeSticky = [](const std::string& path) {
        test::makeFolder(path);
        fs::permissions(path, fs::perms(01777));
    };
    const auto makeForeign = [](const std::string& path) {
        test::makeFolder(path);
        test::must(chown(path.c_str(), kNobody, kNobody));
    };
    enum class Used { kNothing, kShared, kOwn };
    const struct {
        const char* label;
        std::function<void()> make;
        Used used;
    } cases[] = {
        {"sticky", [&] { makeSticky(shared); }, Used::kShared},
        {"sticky, user's folder there", [&] { makeSticky(shared), test::makeFolder(shared + "/" + number); },
         Used::kShared},
        {"not sticky", [&] { test::makeFolder(shared); }, Used::kOwn},
        {"shared is a link", [&] { fs::create_directory_symlink(elsewhere, shared); }, Used::kOwn},
        {"shared is a file", [&] { test::writeFile(shared, ""); }, Used::kOwn},
        {"user's folder a link",
         [&] { makeSticky(shared), fs::create_directory_symlink(elsewhere, shared + "/" + number); },
         Used::kOwn},
        {"user's folder foreign", [&] { makeSticky(shared), makeForeign(shared + "/" + number); },
         Used::kOwn},
        {"own there", [&] { test::makeFolder(own); }, Used::kOwn},
        {"own a link", [&] { fs::create_directory_symlink(elsewhere, own); }, Used::kNothing},
        {"own a dangling link", [&] { fs::create_symlink(elsewhere + "/not", own); }, Used::kNothing},
        {"own a file", [&] { test::writeFile(own, ""); }, Used::kNothing},
        {"own foreign", [&] { makeForeign(own); }, Used::kNothing},
        {"files a link",
         [&] { test::makeFolder(own), fs::create_directory_symlink(elsewhere, own + "/files"); },
         Used::kNothing},
        {"info a link",
         [&] { test::makeFolder(own), fs::create_directory_symlink(elsewhere, own + "/info"); },
         Used::kNothing},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.label);
        makeSticky(elsewhere);
        const std::string before = snapshotOf(elsewhere);
        c.make();
        const bool used = c.used != Used::kNothing;
        EXPECT_EQ(recycleIt(), used ? RecycleError::kNone : RecycleError::kNoTrash);
        if (used) {
            EXPECT_EQ(contentOfTrash(c.used == Used::kOwn ? own : shared + "/" + number), theOne);
        }
        EXPECT_EQ(fs::exists(top + "/folder/a b"), !used);
        EXPECT_EQ(snapshotOf(elsewhere), before);
        for (const std::string& made : {shared, own, elsewhere}) fs::remove_all(made);
        test::writeFile(top + "/folder/a b", "content");
    }
}

TEST_F(TrashingOnAMount, SaysThatItIsReadOnly) {
    for (const bool withTrash : {false, true}) {
        if (withTrash) fs::create_directories(own + "/files"), fs::create_directories(own + "/info");
        test::must(mount("", top.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr));
        EXPECT_EQ(recycleIt(), RecycleError::kReadOnly);
        test::must(mount("", top.c_str(), nullptr, MS_REMOUNT, nullptr));
        EXPECT_TRUE(fs::exists(top + "/folder/a b"));
    }
}

TEST_F(TrashingOnAMount, AFullDiskLeavesNoInfoFileBehind) {
    for (const char* part : {"/files", "/info"}) fs::create_directories(own + part);
    test::must(mount("", top.c_str(), nullptr, MS_REMOUNT, "size=64k"));
    test::writeFile(top + "/filler", std::string(1 << 17, 'x'));
    EXPECT_EQ(recycleIt(), RecycleError::kUnknown);
    EXPECT_EQ(contentOfTrash(own), Content());
    EXPECT_EQ(test::contentOf(top + "/folder/a b"), "content");
}

TEST_F(TrashingOnAMount, HomeTrashOfTheSameMountIsPreferred) {
    settings.homeTrash = top + "/home/data/Trash";
    EXPECT_EQ(recycleIt(), RecycleError::kNone);
    EXPECT_EQ(contentOfTrash(settings.homeTrash), (Content{{"a b", top + "/folder/a b"}}));
    EXPECT_FALSE(fs::exists(own));
}

TEST_F(TrashingOnAMount, WithoutAUsableHomeTrashTheMountHasItsOwn) {
    test::writeFile(top + "/file", "");
    for (const std::string& path : {std::string(), std::string("relative/Trash"), top + "/file/Trash"}) {
        settings.homeTrash = path;
        test::writeFile(top + "/folder/a b", "content");
        EXPECT_EQ(recycleIt(), RecycleError::kNone) << path;
        EXPECT_EQ(contentOfTrash(own), theOne);
        fs::remove_all(own);
    }
}

TEST_F(Trashing, ABindMountIsAMountOfItsOwn) {
    const std::string source = root + "/source";
    const std::string top = root + "/bound";
    fs::create_directories(source + "/folder");
    test::writeFile(source + "/folder/file", "content");
    const Mounted bound(source, top, nullptr, MS_BIND);
    if (!bound.done()) GTEST_SKIP() << "may not mount";
    EXPECT_EQ(recycle("bound"), RecycleError::kRoot);
    EXPECT_EQ(recycle("bound/folder/file"), RecycleError::kNone);
    EXPECT_EQ(contentOfTrash(source + "/.Trash-" + std::to_string(geteuid())),
              (Content{{"file", "folder/file"}}));
    EXPECT_FALSE(fs::exists(home));
}

TEST_F(Trashing, AFileAsMountPointIsRefused) {
    for (const char* name : {"/source", "/bound"}) test::writeFile(root + name, name);
    const int bound = mount((root + "/source").c_str(), (root + "/bound").c_str(), nullptr, MS_BIND, nullptr);
    if (bound != 0) GTEST_SKIP() << "may not mount";
    EXPECT_EQ(recycle("bound"), RecycleError::kRoot);
    test::must(umount2((root + "/bound").c_str(), MNT_DETACH));
    EXPECT_EQ(test::contentOf(root + "/bound"), "/bound");
}

/// Values of some environment variables, as they were before when it goes.
class Environment {
  public:
    explicit Environment(const std::map<std::string, const char*>& values) {
        for (const auto& [name, value] : values) {
            const char* old = getenv(name.c_str());
            before_[name] = old != nullptr ? std::optional<std::string>(old) : std::nullopt;
            value != nullptr ? setenv(name.c_str(), value, 1) : unsetenv(name.c_str());
        }
    }
    ~Environment() {
        for (const auto& [name, value] : before_)
            value ? setenv(name.c_str(), value->c_str(), 1) : unsetenv(name.c_str());
    }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

  private:
    std::map<std::string, std::optional<std::string>> before_;
};

TEST(TrashSettings, FollowTheEnvironmentWhereItNamesAbsoluteFolders) {
    const struct {
        const char *data, *home, *expected;
    } cases[] = {
        {"/data", "/home/me", "/data/Trash"},
        {"data", "/home/me", "/home/me/.local/share/Trash"},
        {"", "/home/me", "/home/me/.local/share/Trash"},
        {nullptr, "/home/me", "/home/me/.local/share/Trash"},
    };
    for (const auto& c : cases) {
        const Environment set({{"XDG_DATA_HOME", c.data}, {"HOME", c.home}});
        EXPECT_EQ(trashSettingsFromEnvironment().homeTrash, c.expected);
        EXPECT_EQ(trashSettingsFromEnvironment().user, geteuid());
    }
    const Environment set({{"XDG_DATA_HOME", nullptr}, {"HOME", "relative"}});
    const std::string known = trashSettingsFromEnvironment().homeTrash;
    EXPECT_TRUE(known.starts_with('/') && known.ends_with("/.local/share/Trash")) << known;
}

/// Another implementation has the last word: what we throw away it restores.
TEST_F(Trashing, AnotherProgramRestoresIt) {
    const Environment set({{"XDG_DATA_HOME", (dir.path() + "/data").c_str()}});
    if (std::system("gio list trash:/// >/dev/null 2>&1") != 0)
        GTEST_SKIP() << "needs gio with the gvfs daemon and a session bus";
    const struct {
        std::string name, inTrash;
    } cases[] = {{"a file 100%.txt", "a%20file%20100%25.txt"}, {"folder", "folder"}};
    fs::create_directories(root + "/folder/in");
    test::writeFile(root + "/folder/in/file", "inside");
    test::writeFile(root + "/a file 100%.txt", "content");
    for (const auto& c : cases) {
        const std::string path = root + "/" + c.name;
        const std::string before = snapshotOf(path);
        ASSERT_EQ(recycle(c.name), RecycleError::kNone);
        ASSERT_EQ(snapshotOf(path), "nothing\n");
        EXPECT_EQ(std::system(("gio trash --restore 'trash:///" + c.inTrash + "'").c_str()), 0);
        EXPECT_EQ(snapshotOf(path), before);
    }
}

TEST_F(Trashing, ASwappedEntryLeadsNowhereElse) {
    constexpr int kRounds = 1000;
    const std::string precious = dir.path() + "/precious";
    fs::create_directories(precious + "/in/deeper");
    for (const char* name : {"/child", "/in/child", "/in/deeper/child"})
        test::writeFile(precious + name, name);
    const std::string before = snapshotOf(precious);
    fs::create_directory_symlink(precious, root + "/other");
    const std::string victim = root + "/victim";

    std::atomic<bool> ends{false};
    std::thread swapper([&] {
        const std::string other = root + "/other";
        while (!ends) renameat2(AT_FDCWD, other.c_str(), AT_FDCWD, victim.c_str(), RENAME_EXCHANGE);
    });
    int taken = 0;
    for (int round = 0; round < kRounds; ++round) {
        // Taken away is now one, now the other; what is missing is made again.
        for (const char* name : {"/victim", "/other"}) {
            if (fs::exists(fs::symlink_status(root + name))) continue;
            if (round % 2 == 0)
                fs::create_directories(root + name + "/in/deeper");
            else
                fs::create_directory_symlink(precious, root + name);
        }
        const bool whole = round % 3 == 0;
        const RecycleError result = recycle(whole            ? "victim"
                                            : round % 3 == 1 ? "victim/child"
                                                             : "victim/in/child");
        taken += result == RecycleError::kNone ? 1 : 0;
    }
    ends = true;
    swapper.join();
    EXPECT_GE(taken, kRounds / 10);
    EXPECT_EQ(snapshotOf(precious), before);
}

}  // namespace
}  // namespace hl
