// Trials on file systems in images: what a survey foretells, and what really comes back when the tree is
// deleted. The seed is printed; HARBORLANTERN_SEED sets another one.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cstdlib>
#include <iostream>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "images/image_mount.h"
#include "platform/linux/change/file_operations.h"
#include "platform/linux/process/descriptor.h"
#include "platform/linux/space/freed_surveys.h"
#include "platform/linux/space/open_files.h"
#include "support/patience.h"
#include "support/trees.h"

namespace hl::test {

namespace {

constexpr std::int64_t kMiB = 1 << 20;

unsigned trialSeed() {
    const char* named = std::getenv("HARBORLANTERN_SEED");
    return named != nullptr ? static_cast<unsigned>(std::atol(named)) : std::random_device()();
}

FreedSpace foretold(const FilePlace& place) {
    LinuxFreedSurveys surveys(std::make_shared<DirectoryCalls>(), std::make_shared<LinuxOpenFiles>(), nullptr,
                              3);
    const auto survey = surveys.begin({place});
    FreedSpace figures;
    comes([&] { return (figures = survey->figures()).state == SurveyState::kEnded; });
    return figures;
}

struct NoWatch final : OperationWatch {
    bool stillAt(const std::string&, bool) override { return true; }
};

bool removes(const std::string& path) {
    NoWatch watch;
    LinuxFileOperations operations(std::make_shared<DirectoryCalls>(),
                                   {.home = {}, .programFolders = {}, .trash = {}});
    return operations.removeTree({path}, watch).removed;
}

/// Makes a random tree "tree/in", and beside it "out" with what shares with it or holds it.
class Trial {
  public:
    Trial(const ImageMount& image, std::string kind, unsigned seed)
        : image_(image), kind_(std::move(kind)), random_(seed) {}

    /// Fails the test, with the figures, if what comes back is not what was foretold.
    void run();

  private:
    static constexpr std::size_t kBlock = 65'536;

    std::string tree() const { return image_.path() + "/tree"; }
    unsigned below(unsigned limit) { return std::uniform_int_distribution<unsigned>(0, limit - 1)(random_); }
    std::string folder() {
        std::string path = tree() + "/in";
        for (unsigned depth = below(4); depth > 0; --depth) path += "/d" + std::to_string(below(3));
        std::filesystem::create_directories(path);
        return path;
    }
    std::string name() {
        return (below(5) == 0 ? tree() + "/out" : folder()) + "/f" + std::to_string(++names_);
    }
    bool shares() const { return kind_ != "ext4"; }
    void make();
    void addFile();
    void addSecond(const std::string& of);
    void settle() const;
    std::int64_t used() const;
    void compare(const char* when, std::int64_t freed, std::uint64_t least, std::uint64_t most) const;

    const ImageMount& image_;
    const std::string kind_;
    std::mt19937 random_;
    unsigned names_ = 0;
    std::vector<std::string> files_;
    std::vector<Descriptor> open_;
};

void Trial::addFile() {
    const std::string path = name();
    const Descriptor file = openAt(AT_FDCWD, path, O_RDWR | O_CREAT | O_EXCL, 0600);
    ASSERT_TRUE(file.isOpen());
    std::string block(kBlock, '\0');
    for (char& c : block) c = static_cast<char>(random_());
    const bool holes = below(4) == 0;
    const unsigned blocks = below(3) == 0 ? below(24) : below(4);
    for (unsigned i = 0; i < blocks; ++i) {
        const auto at = static_cast<off_t>((holes ? i * (2 + below(3)) : i) * kBlock);
        ASSERT_EQ(::pwrite(file.number(), block.data(), kBlock, at), static_cast<ssize_t>(kBlock));
    }
    if (below(8) == 0)
        must(::fallocate(file.number(), FALLOC_FL_KEEP_SIZE, 0, static_cast<off_t>(4 * kBlock)));
    if (below(3) == 0)
        must(static_cast<int>(::pwrite(file.number(), "end", 3, static_cast<off_t>(below(3'000)))));
    files_.push_back(path);
}

/// Adds another name, or a copy that shares all or some of its bytes.
void Trial::addSecond(const std::string& of) {
    const std::string path = name();
    if (!shares() || below(2) == 0) return must(::link(of.c_str(), path.c_str())), void();
    const Descriptor from = openAt(AT_FDCWD, of, O_RDONLY);
    const Descriptor to = openAt(AT_FDCWD, path, O_RDWR | O_CREAT | O_EXCL, 0600);
    if (below(2) == 0) return must(::ioctl(to.number(), FICLONE, from.number())), void();
    file_clone_range range{};
    range.src_fd = from.number();
    range.src_offset = kBlock * below(2);
    range.src_length = kBlock;
    ::ioctl(to.number(), FICLONERANGE, &range);  // The file may be shorter: then nothing is shared.
}

void Trial::make() {
    const std::string quoted = "'" + tree() + "'";
    if (kind_ == "btrfs") {
        ASSERT_TRUE(shellDoes("btrfs subvolume create " + quoted));
    } else {
        makeFolder(tree());
    }
    makeFolder(tree() + "/in");
    makeFolder(tree() + "/out");
    for (unsigned i = 5 + below(40); i > 0; --i) addFile();
    image_.sync();  // Cloning would do it.
    for (unsigned i = below(20); i > 0; --i) addSecond(files_[below(static_cast<unsigned>(files_.size()))]);
    for (unsigned i = below(4); i > 0; --i)
        open_.push_back(openAt(AT_FDCWD, files_[below(static_cast<unsigned>(files_.size()))], O_RDONLY));
    if (kind_ != "btrfs" || below(3) != 0) return;
    ASSERT_TRUE(shellDoes("btrfs subvolume snapshot -r " + quoted + " '" + image_.path() + "/snapshot'"));
    for (unsigned i = 3 + below(5); i > 0; --i) addFile();
}

// On btrfs space comes back when the transaction is written, and that of a subvolume when it was cleaned. On
// xfs a thread of the kernel frees inodes some time after their last name went.
void Trial::settle() const {
    image_.sync();
    if (kind_ == "btrfs") {
        EXPECT_TRUE(shellDoes("btrfs subvolume sync '" + image_.path() + "'"));
    }
    image_.sync();
    for (std::int64_t last = -1, now = used(); kind_ == "xfs" && now != last;) {
        ::usleep(60'000);
        last = std::exchange(now, used());
    }
}

std::int64_t Trial::used() const {
    struct statvfs facts {};
    must(::statvfs(image_.path().c_str(), &facts));
    return static_cast<std::int64_t>((facts.f_blocks - facts.f_bfree) * facts.f_frsize);
}

void Trial::compare(const char* when, std::int64_t freed, std::uint64_t least, std::uint64_t most) const {
    const auto tolerance = [](std::uint64_t bytes) { return kMiB + static_cast<std::int64_t>(bytes / 100); };
    EXPECT_GE(freed, static_cast<std::int64_t>(least) - tolerance(least)) << when;
    EXPECT_LE(freed, static_cast<std::int64_t>(most) + tolerance(most)) << when;
}

void Trial::run() {
    make();
    settle();
    const std::int64_t before = used();
    const FreedSpace sum = foretold({tree() + "/in"});
    EXPECT_EQ(sum.state, SurveyState::kEnded);
    EXPECT_EQ(sum.unknown, FreedAmount());
    EXPECT_EQ(sum.foldersUnknown, 0U);
    EXPECT_EQ(sum.mayBeMore, kind_ == "btrfs");
    EXPECT_TRUE(removes(tree() + "/in"));
    settle();
    std::uint64_t held = 0;
    for (const FreedWhenClosed& closed : sum.whenClosed) held += closed.amount.bytes;
    compare("deleted", before - used(), sum.now.bytes, sum.now.bytes + sum.perhaps.bytes);
    open_.clear();
    settle();
    compare("closed", before - used(), sum.now.bytes + held, sum.now.bytes + held + sum.perhaps.bytes);
    if (kind_ == "btrfs") {
        shellDoes("btrfs subvolume delete '" + image_.path() + "/snapshot'");
        EXPECT_TRUE(shellDoes("btrfs subvolume delete '" + tree() + "'"));
    } else {
        EXPECT_TRUE(removes(tree()));
    }
    settle();
}

struct Trials {
    const char* kind;
    unsigned count;
};

class ComesBack : public testing::TestWithParam<Trials> {};

TEST_P(ComesBack, WhatIsForetoldComesBackFromRandomTrees) {
    const auto [kind, count] = GetParam();
    // The thread that cleans up subvolumes comes as often as a transaction is written.
    const bool btrfs = std::string(kind) == "btrfs";
    ImageMount image(kind, 600, {}, btrfs ? "commit=1" : "");
    if (!image.missing().empty()) GTEST_SKIP() << image.missing();
    const unsigned seed = trialSeed();
    std::cout << "HARBORLANTERN_SEED=" << seed << '\n';
    unsigned right = 0;
    for (unsigned i = 0; i < count; ++i) {
        SCOPED_TRACE(testing::Message() << kind << ", tree " << i << ", seed " << seed);
        const int failures =
            testing::UnitTest::GetInstance()->current_test_info()->result()->total_part_count();
        Trial(image, kind, seed + i).run();
        right +=
            testing::UnitTest::GetInstance()->current_test_info()->result()->total_part_count() == failures
                ? 1
                : 0;
    }
    std::cout << kind << ": " << right << " of " << count << " trees as foretold\n";
    EXPECT_EQ(right, count);
}

INSTANTIATE_TEST_SUITE_P(Kinds, ComesBack,
                         testing::Values(Trials{"ext4", 66}, Trials{"xfs", 67}, Trials{"btrfs", 67}),
                         [](const auto& trials) { return std::string(trials.param.kind); });

std::int64_t usedOf(const std::string& path) {
    struct statvfs facts {};
    must(::statvfs(path.c_str(), &facts));
    return static_cast<std::int64_t>((facts.f_blocks - facts.f_bfree) * facts.f_frsize);
}

TEST(ComesBackOnBtrfs, ASubvolumeStaysWhetherItIsSelectedOrTheFolderAboveIs) {
    ImageMount image("btrfs", 300);
    if (!image.missing().empty()) GTEST_SKIP() << image.missing();
    const std::string in = image.path() + "/in";
    makeFolder(in);
    ASSERT_TRUE(shellDoes("btrfs subvolume create '" + in + "/sub'"));
    for (const char* name : {"/own", "/sub/other"}) writeFile(in + name, std::string(100'000, 'x'));
    image.sync();
    for (const FilePlace& place : {FilePlace{in}, FilePlace{.base = in, .below = "sub"}}) {
        const FreedSpace sum = foretold(place);
        EXPECT_EQ(sum.mounts, 1U) << place.below;
        EXPECT_EQ(sum.all.files, place.below.empty() ? 1U : 0U);
    }
    EXPECT_FALSE(removes(in));
    EXPECT_TRUE(fs::exists(in + "/sub/other") && !fs::exists(in + "/own"));
}

// Of a compressed file nobody knows what it takes; of an overwritten one, more comes back than is told.
TEST(ComesBackOnBtrfs, CompressedAndOverwrittenFilesGiveAtLeastWhatIsForetoldAndThatIsSaid) {
    for (const bool compressed : {true, false}) {
        SCOPED_TRACE(compressed);
        ImageMount image("btrfs", 600, {}, compressed ? "compress=zstd" : "");
        if (!image.missing().empty()) GTEST_SKIP() << image.missing();
        makeFolder(image.path() + "/in");
        const std::string path = image.path() + "/in/file";
        const auto write = [&](std::size_t from, std::size_t bytes) {
            const Descriptor file = openAt(AT_FDCWD, path, O_RDWR | O_CREAT, 0600);
            const std::string text(bytes, 'x');
            ASSERT_EQ(::pwrite(file.number(), text.data(), bytes, static_cast<off_t>(from)),
                      static_cast<ssize_t>(bytes));
            must(::fsync(file.number()));
        };
        write(0, 64U << 20U);
        if (!compressed) write(0, 60U << 20U);
        image.sync();
        const std::int64_t before = usedOf(image.path());
        const FreedSpace sum = foretold({image.path() + "/in"});
        EXPECT_TRUE(sum.mayBeMore);
        ASSERT_TRUE(removes(image.path() + "/in"));
        image.sync();
        const std::int64_t freed = before - usedOf(image.path());
        std::cout << (compressed ? "compressed" : "overwritten") << ": foretold " << sum.now.bytes << " to "
                  << sum.now.bytes + sum.perhaps.bytes << " or more, freed " << freed << '\n';
        EXPECT_GE(freed + kMiB, static_cast<std::int64_t>(sum.now.bytes));
        if (compressed) {
            EXPECT_LE(freed, static_cast<std::int64_t>(sum.now.bytes + sum.perhaps.bytes) + kMiB);
        }
    }
}

}  // namespace

}  // namespace hl::test
