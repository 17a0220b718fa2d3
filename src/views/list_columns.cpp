#include "views/list_columns.h"

#include <span>

#include "grid/no_redraw.h"
#include "views/column_masks.h"

namespace hl {

namespace {

GridColumn column(std::string title, std::string_view key) {
    return {.title = std::move(title), .key = std::string(key), .mask = {}};
}

GridColumn sizeColumn(const Texts& texts) {
    GridColumn size = column(texts.TL(3519, "Größe (%1)", {texts.TL(3515, "Bytes")}), "size");
    size.mask = kSizeMask;
    size.alignment = Alignment::kRight;
    return size;
}

// Appends the columns that follow the size in both lists of files, except for the path.
void appendFileColumns(std::vector<GridColumn>& columns, const Texts& texts) {
    columns.push_back(column(texts.TL(9103, "Endung"), "ext"));
    columns.push_back(column(texts.TL(9104, "Typ"), "type"));
    columns.push_back(column(texts.TL(9105, "Attribute"), "attr"));
    columns.push_back(column(texts.TL(9106, "Änderungsdatum"), "date"));
    columns.push_back(column(texts.TL(9107, "Erstellungsdatum"), "dateE"));
    columns.push_back(column(texts.TL(9108, "Zugriffsdatum"), "dateZ"));
}

void setDateMasks(Grid& grid, const Options& options, std::initializer_list<std::size_t> columns) {
    if (grid.columns().empty()) return;
    for (const std::size_t index : columns) grid.changeColumn(index).mask = dateMask(options.DateFormat);
}

void hideColumns(std::vector<GridColumn>& columns, std::span<const Flag> shown) {
    for (std::size_t i = 0; i < shown.size(); ++i) columns[i + 1].visible = shown[i] != 0;
}

void build(Grid& grid, std::vector<GridColumn> columns, std::string_view sortKey) {
    grid.clear();
    grid.setColumns(std::move(columns));
    grid.levelSort(0) = {.key = std::string(sortKey), .numbers = true, .descending = true};
}

}  // namespace

void Init_FileList(Grid& grid, const Options& options, const Texts& texts) {
    std::vector<GridColumn> columns = {column(texts.TL(9102, "Dateiname"), ""), sizeColumn(texts)};
    appendFileColumns(columns, texts);
    hideColumns(columns, options.FileColumn);
    const NoRedraw off(grid);
    build(grid, std::move(columns), "size");
    Init_FileList_DateFormat(grid, options);
}

void Init_TopList(Grid& grid, const Options& options, const Texts& texts) {
    std::vector<GridColumn> columns = {column(texts.TL(9102, "Dateiname"), ""), sizeColumn(texts),
                                       column(texts.TL(3626, "Pfad"), "path")};
    appendFileColumns(columns, texts);
    hideColumns(columns, options.TopColumn);
    const NoRedraw off(grid);
    build(grid, std::move(columns), "size");
    Init_TopList_DateFormat(grid, options);
}

void Init_HardlinksList(Grid& grid, const Options& options, const Texts& texts) {
    std::vector<GridColumn> columns = {column(texts.TL(9102, "Dateiname"), ""),
                                       column(texts.TL(9109, "ID"), "id"),
                                       column(texts.TL(3740, "Hardlinks"), "links"),
                                       column(texts.TL(3626, "Pfad"), "path"), sizeColumn(texts)};
    appendFileColumns(columns, texts);
    hideColumns(columns, options.HardlinkColumn);
    const NoRedraw off(grid);
    build(grid, std::move(columns), "size");
    Init_HardlinksList_DateFormat(grid, options);
}

void Init_JunctionList(Grid& grid, const Texts& texts) {
    std::vector<GridColumn> columns = {column(texts.TL(9111, "Junction"), ""),
                                       column(texts.TL(9112, "Zielordner"), "target"),
                                       column(texts.TL(9104, "Typ"), "type")};
    // These are the texts for a positive number, a negative one and 0.
    columns[kJunctionListType].mask = texts.TL(9113, "Abzweigungspunkt") + ";" +
                                      texts.TL(9114, "Verknüpfung") + ";" +
                                      texts.TL(9115, "Symbolischer Link") + ";";
    const NoRedraw off(grid);
    build(grid, std::move(columns), "");
}

void Init_FileList_DateFormat(Grid& grid, const Options& options) {
    setDateMasks(grid, options, {kFileListDate, kFileListDateCreated, kFileListDateAccessed});
}

void Init_TopList_DateFormat(Grid& grid, const Options& options) {
    setDateMasks(grid, options, {kTopDate, kTopDateCreated, kTopDateAccessed});
}

void Init_HardlinksList_DateFormat(Grid& grid, const Options& options) {
    setDateMasks(grid, options, {kHardlinksDate, kHardlinksDateCreated, kHardlinksDateAccessed});
}

}  // namespace hl
