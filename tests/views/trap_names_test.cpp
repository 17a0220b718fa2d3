// Tests the names of routines in error reports, which users send and which are searched for: most are taken
// from the code, so that renaming a routine changes them.
#include "robustness/debug.h"

#include "base/scope_exit.h"
#include "platform/fault_signals.h"
#include "scan/driver.h"
#include "scan/rollup.h"
#include "views/views_fixture.h"

namespace hl::test {
namespace {

struct TrapNames : ViewsFixture {
    /// Returns what is reported when the first trap that `call` enters fails at once.
    std::string reportedBy(const std::function<void()>& call) {
        sink.shown.clear();
        static GuardedRoutine::Counter before;
        before = GuardedRoutine::counter();
        const ScopeExit restored([] { GuardedRoutine::countWith(before); });
        GuardedRoutine::countWith([]() -> GuardedRoutine::Count& {
            GuardedRoutine::countWith(before);
            throw Fault(1, "", "in the routine");
        });
        call();
        std::string names;
        for (const std::string& shown : sink.shown) {
            const auto valueOf = [&](const std::string& key) {
                const std::size_t from = shown.find(key) + key.size();
                return shown.substr(from, shown.find('\r', from) - from);
            };
            names += (names.empty() ? "" : " ") + valueOf("Modul: ") + "." + valueOf("Func: ");
        }
        return names;
    }
};

TEST_F(TrapNames, AreThoseOfTheRoutines) {
    const std::pair<const char*, std::function<void()>> cases[] = {
        {"frmMain.StartSearchViaToolbar", [&] { StartSearchViaToolbar(scan); }},
        {"frmMain.Ordnerliste_Abarbeiten", [&] { Ordnerliste_Abarbeiten(scan); }},
        {"frmMain.QuelleEinlesen", [&] { QuelleEinlesen(scan, "/s", 0, kNoRow); }},
        {"frmMain.Report_Rescan", [&] { Report_Rescan(scan); }},
        {"frmMain.Report_Sort", [&] { Report_Sort(scan); }},
        {"frmMain.Report_RemoveFolders", [&] { Report_RemoveFolders(scan); }},
        {"frmMain.Report_ChangePercentValue", [&] { Report_ChangePercentValue(scan, kNoRow); }},
        {"frmMain.Report_Resize_Columns", [&] { reportView.Report_Resize_Columns(true); }},
        {"frmMain.Report_ChangeColVisible", [&] { reportView.Report_ChangeColVisible(1, true); }},
        {"frmMain.Report_Set_SizeFormat", [&] { reportView.Report_Set_SizeFormat(); }},
        {"frmMain.Report_ExpandAllFolders", [&] { reportView.Report_ExpandAllFolders(true); }},
        {"frmMain.Report_ExpandSubFolders", [&] { reportView.Report_ExpandSubFolders(true); }},
        {"frmMain.Report_StartSearch", [&] { reportView.Report_StartSearch(); }},
        {"frmMain.tvwPL_KeyUp", [&] { reportView.KeyUp(kKeyDown); }},
        {"frmMain.List_Files_ScanFolder", [&] { filesView.List_Files_ScanFolder("/s", false); }},
        {"frmMain.List_Files_Refresh", [&] { filesView.List_Files_Refresh(); }},
        {"frmMain.List_Hardlinks_ShowDups", [&] { hardlinksView.List_Hardlinks_ShowDups(); }},
        {"frmMain.Toplist_ShowSelectedFilesize", [&] { topView.Toplist_ShowSelectedFilesize(); }},
        {"z_Translate.Init_Sprache", [&] { texts.Init_Sprache("", ""); }},
        {"z_Translate.LoadTextFromFile", [&] { texts.LoadTextFromFile(""); }},
        {"z_Translate.TL", [&] { texts.TL(1, ""); }},
    };
    for (const auto& [name, call] : cases) EXPECT_EQ(reportedBy(call), name);
}

TEST_F(TrapNames, OfListsBeginWithTheListsOwn) {
    const std::tuple<ListView&, std::string, std::string> lists[] = {
        {filesView, "List_Files_", "lvwFiles_"},
        {topView, "List_TOP_", "lvwTOP_"},
        {hardlinksView, "List_Hardlinks_", "lvwHardlinks_"}};
    for (const auto& [list, family, events] : lists) {
        ListView& view = list;
        EXPECT_EQ(reportedBy([&] { view.StartSearch(); }), "frmMain." + family + "StartSearch");
        EXPECT_EQ(reportedBy([&] { view.SetFileIcons(true); }), "frmMain." + family + "SetFileIcons");
        EXPECT_EQ(reportedBy([&] { view.Resize_Columns(true); }), "frmMain." + family + "Resize_Columns");
        EXPECT_EQ(reportedBy([&] { view.Set_SizeFormat(); }), "frmMain." + family + "Set_SizeFormat");
        EXPECT_EQ(reportedBy([&] { view.KeyUp(kKeyDown); }), "frmMain." + events + "KeyUp");
        EXPECT_EQ(reportedBy([&] { view.DblClick(); }), "frmMain." + events + "ItemDblClick");
        EXPECT_EQ(reportedBy([&] { view.GridColumnTitleClick(1); }),
                  "frmMain." + events + "GridColumnTitleClick");
    }
}

}  // namespace
}  // namespace hl::test
