// The four lists in the window: files of a folder, largest files, hardlinks, junctions. Mouse and keys are
// real, and the trees are on the disk.
#pragma once

#include "base/text.h"
#include "gui/window_fixture.h"
#include "scan/file_columns.h"
#include "scan/records.h"

namespace hl::test {

using Names = std::vector<std::string>;

/// Chooses an entry in the menu that opens next, and records the captions of all its entries, "-" for a
/// separator.
class MenuAnswer {
  public:
    /// `first` is done while the menu is open.
    explicit MenuAnswer(
        std::string caption, std::function<void()> first = [] {})
        : caption_(std::move(caption)), first_(std::move(first)) {
        wait();
    }
    const Names& entries() const { return entries_; }

  private:
    void wait() {
        QTimer::singleShot(5, &context_, [this] {
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            if (menu == nullptr || !menu->isVisible()) return wait();
            first_();
            QAction* chosen = nullptr;
            for (QAction* action : menu->actions()) {
                entries_.push_back(action->isSeparator() ? "-" : action->text().toStdString());
                if (entries_.back() == caption_) chosen = action;
            }
            if (chosen == nullptr) return menu->close(), void();
            QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(chosen).center());
        });
    }
    QObject context_;
    std::string caption_;
    std::function<void()> first_;
    Names entries_;
};

struct ListInfo {
    GridId id;
    Command panel, fullView, save, searchText;
    Command icons = Command::kNone, columns = Command::kNone;  // The latter is the first of them.
};
inline constexpr ListInfo
    kFileList = {GridId::kFiles,           Command::kShowFiles,       Command::kFilesFullView,
                 Command::kFilesSave,      Command::kFilesSearchText, Command::kFilesIcons,
                 Command::kFilesSizeColumn},
    kTopList = {GridId::kTop,           Command::kShowTop,       Command::kTopFullView,
                Command::kTopSave,      Command::kTopSearchText, Command::kTopIcons,
                Command::kTopSizeColumn},
    kHardlinkList = {GridId::kHardlinks,         Command::kShowHardlinks,       Command::kHardlinksFullView,
                     Command::kHardlinksSave,    Command::kHardlinksSearchText, Command::kHardlinksIcons,
                     Command::kHardlinksIdColumn},
    kJunctionList = {GridId::kJunctions, Command::kShowJunctions, Command::kJunctionsFullView,
                     Command::kJunctionsSave, Command::kJunctionsSearchText};
inline constexpr ListInfo kStatisticsList = {GridId::kStatistics, Command::kShowStatistics,
                                             Command::kStatisticsFullView, Command::kStatisticsSave,
                                             Command::kStatisticsSearchText};
inline constexpr ListInfo kChangesList = {GridId::kChanges, Command::kShowChanges, Command::kChangesFullView,
                                          Command::kChangesSave, Command::kChangesSearchText};
inline constexpr ListInfo kAll[] = {kFileList, kTopList, kHardlinkList, kJunctionList};
inline constexpr ListInfo kWithFiles[] = {kFileList, kTopList, kHardlinkList};

inline const std::string kBytes = "\xff\xfe odd \x80 #%41?.txt";

struct ListSession : Session {
    using Session::Session;
    /// Starts a session and reads a folder.
    ListSession(const std::string& home, const std::string& source) : Session(home) {
        start();
        scan(source);
    }
    /// Makes the window wide enough for all entries of a bar, unlike the screen of the offscreen platform.
    void start() {
        Session::start();
        frame().resize(1400, 900);
        settle();
    }
    /// Shows the list, and nothing beside it.
    GridView& open(const ListInfo& list) {
        if (!window().grid(list.id).isVisible()) click(list.panel);
        click(list.fullView);
        EXPECT_EQ(panes(), window().grid(list.id).objectName().toStdString());
        return window().grid(list.id);
    }
    QLineEdit& edit(Command box) { return *frame().findChild<QLineEdit*>(entryName(box)); }
    static Names names(GridView& view) {
        Names all;
        view.sync();
        for (std::size_t i = 0; i < view.rows().count(); ++i)
            all.emplace_back(view.grid().text(view.rows().at(i)));
        return all;
    }
    /// Returns the folder and name of a row.
    static std::string path(const Grid& grid, Row row) {
        return std::string(grid.cellText(row, kFilePath)).append(grid.text(row));
    }
    /// Sorts the rows by name, ascending.
    static void sortByName(GridView& view) {
        const auto less = [](const std::string& a, const std::string& b) { return compareFolded(a, b) < 0; };
        for (Names now = names(view); !std::is_sorted(now.begin(), now.end(), less); now = names(view))
            clickTitleOf(view, 0);
    }
    static QPoint place(GridView& view, std::size_t index) {
        view.horizontalScrollBar()->setValue(0);
        return {20, view.rowRect(index).center().y()};
    }
    static void clickOn(GridView& view, std::size_t index, Qt::KeyboardModifiers keys = {}) {
        QTest::mouseClick(view.viewport(), Qt::LeftButton, keys, place(view, index));
        settle();
    }
    static void doubleClickOn(GridView& view, std::size_t index) {
        doubleClick(view.viewport(), place(view, index));
    }
    /// Saves the list in the format of that letter and returns the file.
    std::string saved(const ListInfo& list, Qt::Key format, const std::string& target) {
        answers.add([&](QDialog& dialog) {
            EXPECT_EQ(dialog.objectName(), QStringLiteral("frmSaveFiles"));
            QTest::keyClick(dialog.findChildren<QComboBox*>().first(), format);
            pressIn(dialog, "OK");
        });
        answers.add([&](QDialog& dialog) { choosePath(dialog, target); });
        click(list.save);
        return contentOf(target);
    }
};

/// Shows sizes in bytes, fills all lists, and hides the list of drives.
struct ListsTest : WindowTest {
    ListsTest() { options(""); }
    void options(const std::string& more) const {
        std::string text = "[Optionen]\r\nDiskinfoVisible=0\r\n";
        for (const char* on : {"CreateListTOP", "CreateListHardlink", "CreateListJunction"})
            text += std::string(on) + "=1\r\n";
        for (const char* list : {"Files", "Top", "Hardlinks"})
            text += std::string("FileSizeFormat") + list + "=0\r\n";
        if (more.find("AskBeforeDelete") == std::string::npos) text += "AskBeforeDelete=0\r\n";
        setSettings(text + more);
    }
    void link(const std::string& from, const std::string& to) const {
        fs::create_hard_link(at(from), at(to));
    }
    /// Makes the files a to f of the sizes 600 to 100, files with two names, and links to folders.
    void someTree() const {
        for (const char* path : {"src/sub", "other"}) folder(path);
        for (int i = 0; i < 6; ++i) {
            const std::string name =
                std::string(1, static_cast<char>("aBcDeF"[i])) + (i % 2 == 0 ? ".txt" : ".Dat");
            file("src/" + name, 600 - 100 * i);
            link("src/" + name, "src/sub/again " + name);
        }
        for (const char* name : {"to A", "to b", "to C"})
            fs::create_directory_symlink(at("other"), at("src/") + name);
    }
};

}  // namespace hl::test
