// Changes of what is on the disk, one after another and at random: the report must keep the figures of a
// fresh scan. CHANGES_SEED in the environment makes another run of them.
#include <dirent.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <map>
#include <random>

#include "gui/files_fixture.h"
#include "platform/linux/scan/folder_record.h"
#include "platform/linux/scan/subvolumes.h"
#include "scan/snapshots.h"

namespace hl {
namespace {

namespace fs = std::filesystem;
using test::Names;

/// The real system calls, which take some folders, by their inodes, for the roots of subvolumes.
class SomeSubvolumes final : public DirectoryCalls {
  public:
    std::map<std::uint64_t, Subvolume> known;

    // A subvolume's root begins with its own record; folders of other file systems may not.
    long readEntries(int folder, void* buffer, std::size_t bytes) override {
        FolderId id;
        identity(folder, id);
        if (!known.contains(id.inode) || ::lseek(folder, 0, SEEK_CUR) != 0)
            return DirectoryCalls::readEntries(folder, buffer, bytes);
        constexpr std::size_t kOwn = sizeof(FolderRecord);
        auto* const rest = static_cast<char*>(buffer) + kOwn;
        const long got = DirectoryCalls::readEntries(folder, rest, bytes - kOwn);
        if (got < 0) return got;
        std::memset(buffer, 0, kOwn);
        auto* own = static_cast<FolderRecord*>(buffer);
        own->inode = kSubvolumeInode;
        own->length = kOwn;
        own->type = DT_DIR;
        own->name[0] = '.';
        return got + static_cast<long>(kOwn);
    }
    int subvolume(int folder, Subvolume& out) override {
        FolderId id;
        identity(folder, id);
        const auto found = known.find(id.inode);
        if (found == known.end()) return -ENOTTY;
        out = found->second;
        return 0;
    }
};

/// A user who changes what is on the disk, at random.
class ChangesTest : public test::FilesTest {
  protected:
    ChangesTest() {
        QObject::connect(&closer_, &QTimer::timeout, [] {
            if (auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget())) dialog->reject();
        });
        closer_.start(10);
    }
    ~ChangesTest() override { test::Logic::folderCalls = std::make_shared<DirectoryCalls>(); }
    /// Makes subvolumes 1 and 2, a snapshot of each, one that can be written, and one of a snapshot.
    void makeSubvolumes() {
        const auto calls = std::make_shared<SomeSubvolumes>();
        const auto isOne = [&](const char* name, std::uint64_t id, std::uint64_t origin, bool readOnly) {
            calls->known[test::factsOf(at(name)).st_ino] = {{0, id}, {0, origin}, readOnly};
        };
        isOne("src/f1/g1", 1, 0, false);
        isOne("src/f2/g2", 2, 0, false);
        isOne("src/f1/g5", 3, 1, true);
        isOne("src/f3/g7", 4, 2, true);
        isOne("src/f0/g4", 5, 1, false);
        isOne("src/f0/g8", 6, 4, true);
        test::Logic::folderCalls = calls;
    }
    void makeTree() const {
        std::error_code none;
        fs::remove_all(at("src"), none);
        for (int i = 0; i < 12; ++i) {
            const std::string name = "src/f" + std::to_string(i % 4) + "/g" + std::to_string(i);
            folder(name);
            test::writeFile(at(name + "/data"), std::string(1000U * static_cast<std::size_t>(i), 'x'));
            file(name + "/hole", 100'000 * (i + 1));
            fs::create_hard_link(at(name + "/data"),
                                 at("src/f" + std::to_string(i % 3) + "/link" + std::to_string(i)));
            const auto age = std::chrono::hours(100 + random_() % 1000);
            fs::last_write_time(at(name + "/data"), fs::file_time_type::clock::now() - age);
        }
        fs::create_directory_symlink("f1", at("src/link"));
    }
    int pick(std::size_t below) const { return static_cast<int>(random_() % below); }
    Row pickRow() { return s().grid().rowAt(static_cast<std::size_t>(pick(s().grid().rowCount()))); }
    void change() {
        s().execute(Command::kReportUnfoldAll);
        click(s().view(), pickRow(), Qt::LeftButton);
        GridView& files = s().window().grid(GridId::kFiles);
        const std::function<void()> changes[] = {
            [&] { s().execute(Command::kRecycleFolders); },
            [&] { s().execute(Command::kDeleteFolders); },
            [&] {
                s().key(s().view(), Qt::Key_F2);
                auto* box = s().view().viewport()->findChild<QLineEdit*>();
                if (box == nullptr) return;  // A source, or the row of files.
                box->setText(QStringLiteral("new%1").arg(pick(3)));
                s().key(*box, Qt::Key_Return);
            },
            [&] {  // A link that is not followed is read if the user asks for it.
                if (s().grid().picture(s().grid().currentRow()) != kPictureLink)
                    s().execute(Command::kReportRescan);
            },
            [&] { s().execute(Command::kTakeBack); },
            [&] { s().execute(Command::kTakeBack); },
            [&] {
                if (files.grid().rowCount() == 0) return;
                test::ListSession::clickOn(files, static_cast<std::size_t>(pick(files.grid().rowCount())));
                s().execute(pick(2) == 0 ? Command::kFilesRecycle : Command::kFilesDelete);
            },
            [&] {
                if (files.grid().rowCount() == 0) return;
                test::ListSession::clickOn(files, static_cast<std::size_t>(pick(files.grid().rowCount())));
                rename(files, QStringLiteral("new%1").arg(pick(3)));
            },
        };
        changes[pick(std::size(changes))]();
        test::Session::settle();
    }

    mutable std::mt19937 random_{1};
    QTimer closer_;  ///< Closes what tells of a change that was refused.
};

TEST_F(ChangesTest, AfterAnyChangeEveryFigureIsThatOfAFreshScan) {
    const char* seed = std::getenv("CHANGES_SEED");
    if (seed != nullptr) random_.seed(static_cast<unsigned>(std::atoi(seed)));
    const std::pair<const char*, bool> sets[] = {{"", false},
                                                 {"AddHardlinksOnlyOnce=1\r\n", false},
                                                 {"ReckonOnDisk=1\r\nScanHardlinks=1\r\n", false},
                                                 {"Exclude0=g1*/\r\nExclude1=link?\r\nExclude2=/f2/"
                                                  "g2\r\nExclude3=new1\r\nExclude4=/f3/**/hole\r\n",
                                                  false},
                                                 {"AddHardlinksOnlyOnce=1\r\n", true}};
    for (const auto& [set, snapshots] : sets) {
        makeTree();
        if (snapshots) makeSubvolumes();
        options(set);
        startUnfolded();
        EXPECT_EQ(isLeftOut(s().grid(), s().row("g5")), snapshots);
        for (int step = 0; step < 24; ++step) {
            change();
            if (step % 4 == 3) expectReportOfAFreshScan();
            if (HasFailure()) FAIL() << set << " step " << step;
        }
        EXPECT_EQ(s().reports, Names());
        session_.reset();
    }
}

TEST_F(ChangesTest, ALinkLeadsAgainOnceItsFolderHasItsNameBack) {
    makeTree();
    startUnfolded();
    for (const char* name : {"other name", "f1"}) {
        s().clickRow(name[0] == 'o' ? "f1" : "other name");
        rename(s().view(), QString::fromUtf8(name));
        expectReportOfAFreshScan();
    }
    EXPECT_NE(s().row("link"), kNoRow);
}

}  // namespace
}  // namespace hl
