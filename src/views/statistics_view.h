// lvwStatistics: which kinds of files the selected folder of the report holds, how old they are and whose.
//
// The rows are a tree: three groups, each of which adds up to the folder; kinds unfold to endings. There is
// nothing to preview, open, rename or delete. For the thread of the logic only.
#pragma once

#include <cstdint>
#include <set>
#include <string>

#include "scan/statistics.h"
#include "views/list_view.h"
#include "views/statistics_list.h"

namespace hl {

class StatisticsView final : public ListView {
  public:
    StatisticsView(const ListParts& parts, Grid& lvwStatistics, CommandBar& cbrStatistics);

    /// Shows the current row of the report. Nothing happens if the list shows it already.
    void follow();
    /// The list is empty because no statistics are kept for the source of the row.
    bool isNotKept() const { return isNotKept_; }
    /// Says whose figures these are.
    std::string title() const;

    /// A double click on a row, or Return, finds its files; a group is folded or unfolded.
    void DblClick() override;
    void KeyUp(int key) override;
    void Shortcut(GridShortcut /*what*/) override {}  // There are no paths to copy.
    std::string pathOf(Row /*row*/) const override { return {}; }
    std::vector<std::string> menuPaths() const override { return {}; }

  private:
    /// What the rows were made of.
    struct Shown {
        std::uint64_t version = 0;
        Row row = kNoRow;
        std::string path;
        bool reckonsOnDisk = false;
        bool operator==(const Shown&) const = default;
    };

    Row rowOfReport() const;
    void fill(const StatisticsSums& sums);
    void addKinds(Row group, const StatisticsSums& sums);
    Row add(Row above, StatisticsRow what, std::string_view text, const FileSums& sums, double number);
    std::set<std::string> unfolded() const;
    void unfold(const std::set<std::string>& keys, const std::string& current);
    std::string keyOf(Row row) const;
    StatisticsRow kindOf(Row row) const;
    std::string filterOf(Row row) const;
    std::string ownerName(std::uint32_t owner) const;

    void sortRows() override;
    std::string total() const override;

    Shown shown_;
    FileSums all_;
    bool isNotKept_ = false;
    bool wasFilled_ = false;
};

}  // namespace hl
