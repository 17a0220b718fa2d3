#include "window_lists.h"

#include "scan/list_handover.h"
#include "scan/records.h"
#include "views/file_list.h"
#include "window_parts.h"

namespace hl::bench {

namespace {

Grid& listOf(WindowForm& form, GridId id) {
    return *form.parts().grids[static_cast<std::size_t>(id)];
}

void begin(WindowForm& form) {
    form.formActivate();
    settle();
}

void sortBy(WindowForm& form, const char* name, std::size_t column) {
    timed(name, [&] { form.form().lists.of(GridId::kFiles)->GridColumnTitleClick(column); });
    timed((name + std::string("_again")).c_str(),
          [&] { form.form().lists.of(GridId::kFiles)->GridColumnTitleClick(column); });
}

}  // namespace

void lists(WindowForm& form, const std::string& tree, bool all) {
    constexpr Command kCreateLists[] = {Command::kCreateListTop, Command::kCreateListHardlinks,
                                        Command::kCreateListJunctions};
    begin(form);
    for (const Command command : kCreateLists)
        if (all) run(form, command);  // The settings of a new home switch none of them on.
    timed("scan", [&] { form.handOver('"' + tree + '"'); });
    tell("resident", residentBytes());
    for (const auto& [name, id] : {std::pair("top", GridId::kTop), std::pair("hardlinks", GridId::kHardlinks),
                                   std::pair("junctions", GridId::kJunctions)})
        tell(name, static_cast<double>(listOf(form, id).rowCount()));
}

// The run of the folder lists its files at the end; a selection in the report would list them in the same
// way.
void files(WindowForm& form, const std::string& folder) {
    begin(form);
    const double before = residentBytes();
    form.handOver('"' + folder + '"');
    settle();
    const auto count = static_cast<double>(listOf(form, GridId::kFiles).rowCount());
    tell("rows", count);
    tell("bytes", (residentBytes() - before) / count);
    timed("list", [&] { run(form, Command::kFilesRefresh); });
    sortBy(form, "sort_numbers", kFilesTable.columnOf(kFileSize));
    sortBy(form, "sort_names", kFilesTable.columnOf(kNoCell));
    sortBy(form, "sort_types", kFilesTable.columnOf(kFileType));
    sortBy(form, "sort_dates", kFilesTable.columnOf(kFileDate));
}

void fileClicks(WindowForm& form, const std::string& folder) {
    begin(form);
    form.handOver('"' + folder + '"');
    settle();
    ClickWatch watch;
    run(form, Command::kFilesRefresh);
    settle();
    watch.tellWaits();
}

// Tells the seconds of one question, without what the window does afterwards.
void asked(const std::string& what, Statistics& statistics, const Grid& report, Row row) {
    const auto start = Clock::now();
    const auto sums = statistics.of(report, row);
    tell(what.c_str(), secondsSince(start));
}

// Rows of a tree in which every folder has ten below it, and cells as a real tree has them.
void madeStatistics(std::uint32_t rows) {
    Grid report(kFolderCells);
    Statistics kept;
    Disorder numbers;
    std::vector<Row> all{report.addRow(kNoRow, "/made")};
    while (all.size() < rows) all.push_back(report.addRow(all[all.size() / 10], "folder"));
    kept.keepSource(all.front(), 2'000'000'000);
    for (const Row row : all) {
        report.setNumber(row, kIsFolder, 1);
        FolderCells cells;
        for (std::uint32_t i = (numbers.next() >> 16) % 4; i > 0; --i)
            kept.addFile(cells, "file." + std::to_string((numbers.next() >> 16) % 300),
                         {.written = numbers.next(), .owner = (numbers.next() >> 16) % 3}, 2'000'000'000,
                         {1, numbers.next() >> 12, numbers.next() >> 21});
        kept.leave(row, kept.place(), cells);
    }
    kept.orderChanged();
    const std::string count = std::to_string(rows);
    asked("made_order_" + count, kept, report, all.front());
    asked("made_sum_" + count, kept, report, all.front());
}

void statistics(WindowForm& form, const std::string& tree) {
    begin(form);
    form.handOver('"' + tree + '"');
    settle();
    Session& session = form.form().session;
    const Grid& report = session.tvwPL;
    std::size_t folders = 0;
    for (Row row = report.firstRoot(); row != kNoRow; row = report.tree().following(row))
        folders += report.number(row, kIsFolder) == 1 ? 1 : 0;
    tell("folders", static_cast<double>(folders));
    tell("bytes", static_cast<double>(session.statistics.bytesUsed()) / static_cast<double>(folders));
    asked("sum", session.statistics, report, report.firstRoot());
    session.statistics.orderChanged();
    asked("order", session.statistics, report, report.firstRoot());
    run(form, Command::kShowStatistics);
    timed("show", [&] { form.form().report.goTo(std::string(report.text(report.firstRoot()))); });
    for (const std::uint32_t rows : {100'000U, 1'000'000U}) madeStatistics(rows);
}

void analyse(WindowForm& form) {
    constexpr std::uint32_t kNames = 200'000, kFiles = 70'000;
    begin(form);
    run(form, Command::kShowHardlinks);
    Grid& grid = listOf(form, GridId::kHardlinks);
    Disorder numbers;
    grid.setRedraw(false);
    for (std::uint32_t i = 0; i < kNames; ++i) {
        const Row row = grid.addRow(kNoRow, "name-" + std::to_string(numbers.next()) + ".dat");
        const std::uint32_t file = numbers.next() % kFiles;
        grid.setNumber(row, kFileSize, file);
        grid.setNumber(row, kFileLinks, 3);
        grid.setCellText(row, kFileId, fileId((std::uint64_t{1} << 33) + file));
        grid.setCellText(row, kFilePath, "/a folder/below another/" + std::to_string(file % 1000) + "/");
    }
    grid.setRedraw(true);
    settle();
    timed("analyse", [&] { run(form, Command::kHardlinksAnalyze); });
    timed("analyse_again", [&] { run(form, Command::kHardlinksAnalyze); });
}

}  // namespace hl::bench
