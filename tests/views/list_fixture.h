// The four lists with rows, and a host that records what it is asked.
#pragma once

#include "support/fake_window.h"
#include "support/scan_fixture.h"
#include "views/files_view.h"
#include "views/hardlinks_view.h"
#include "views/junctions_view.h"
#include "views/list_columns.h"
#include "views/top_view.h"

namespace hl::test {

struct ListFixture : ScanFixture, ListHost {
    FakeWindow window;
    FakeTypes types;
    FilePictures pictures{types};
    bool dragGuard = false;
    Grid lvwFiles{kFileCells};
    CommandBar cbrFiles{BarId::kFiles, ""}, cbrTOP{BarId::kTop, ""}, cbrHardlinks{BarId::kHardlinks, ""},
        cbrJunctions{BarId::kJunctions, ""};
    ListParts parts{scan, options, window, *this, pictures, dragGuard};
    FilesView filesView{parts, lvwFiles, cbrFiles};
    TopView topView{parts, top, cbrTOP};
    HardlinksView hardlinksView{parts, hardlinks, cbrHardlinks};
    JunctionsView junctionsView{parts, junctions, cbrJunctions};

    struct List {
        ListView& view;
        Grid& grid;
        CommandBar& bar;
        std::size_t sizeColumn = 0;
        std::uint8_t* mode = nullptr;  ///< The unit of its sizes.
        Flag* decimals = nullptr;
    };
    List filesList{filesView,
                   lvwFiles,
                   cbrFiles,
                   kFilesTable.columnOf(kFileSize),
                   &options.FileSizeFormatFiles,
                   &options.SizeFormatNachkommastellenFiles},
        topList{topView,
                top,
                cbrTOP,
                kTopTable.columnOf(kFileSize),
                &options.FileSizeFormatTop,
                &options.SizeFormatNachkommastellenTop},
        hardlinksList{hardlinksView,
                      hardlinks,
                      cbrHardlinks,
                      kHardlinksTable.columnOf(kFileSize),
                      &options.FileSizeFormatHardlinks,
                      &options.SizeFormatNachkommastellenHardlinks},
        junctionsList{junctionsView, junctions, cbrJunctions};
    std::array<List*, 4> all{&filesList, &topList, &hardlinksList, &junctionsList};

    // What the lists ask, and the answers.
    Lines asked;
    std::string status;
    bool shows = true;

    ListFixture() {
        window.visibleRows = RowRange{0, 99};
        window.onRename = [this](Row) { asked.emplace_back("rename"); };
        Init_List(lvwFiles, kFilesTable, options, texts);
        Init_List(top, kTopTable, options, texts);
        Init_List(hardlinks, kHardlinksTable, options, texts);
        Init_List(junctions, kJunctionsTable, options, texts);
        for (const List* list : all)
            for (const Command box : {Command::kFilesSearchText, Command::kTopCount})
                list->bar.add({.id = idOf(box)});
        state.currentFolder = "/s/";
        for (Grid* grid : {&lvwFiles, &top, &hardlinks})
            for (const auto& [name, size] :
                 {std::pair("b.txt", 4096.0), {"C.png", 2048.0}, {"a.txt", 1024.0}}) {
                const Row row = grid->addRow(kNoRow, name);
                grid->setNumber(row, kFileSize, size);
                if (grid != &lvwFiles) grid->setCellText(row, kFilePath, std::string("/s/") + name[0] + "/");
            }
        for (const char* name : {"/s/b", "/s/C", "/s/a"})
            junctions.setCellText(junctions.addRow(kNoRow, name), kJunctionTarget, std::string("/to") + name);
    }

    bool listShows(GridId) override { return shows; }
    void setSecondPanel(const std::string& text) override { status = text; }
    void showPreview(GridId, bool force) override { asked.emplace_back(force ? "preview!" : "preview"); }
    void deleteFiles(GridId list, bool forGood) override {
        asked.push_back("delete " + std::to_string(static_cast<int>(list)) + (forGood ? " for good" : ""));
    }
    void openFile(const std::string& path) override { asked.push_back("open " + path); }
    void ShellContextMenuFileList(GridId, Point) override { asked.emplace_back("menu"); }
    void openColumnsMenu(GridId, Point) override { asked.emplace_back("columns menu"); }
    void copyPaths(const std::vector<std::string>& copied) override {
        for (const std::string& path : copied) asked.push_back("copy " + path);
    }
    void fillNow(GridId) override { asked.emplace_back("fill"); }
    void nameEdited(GridId, Row, const std::string& name) override { asked.push_back("name " + name); }

    static void select(Grid& grid, std::initializer_list<std::size_t> rows) {
        grid.selectNone();
        for (const std::size_t index : rows) grid.setSelected(grid.rowAt(index), true);
        grid.setCurrentRow(rows.size() == 0 ? kNoRow : grid.rowAt(*rows.begin()));
    }
    Lines taken() { return std::exchange(asked, {}); }
};

}  // namespace hl::test
