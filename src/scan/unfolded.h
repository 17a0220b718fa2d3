// Remembers what the user unfolded and selected below a row, and the current row, because reading a folder
// again makes new rows. For the thread of the logic.
#pragma once

#include <string>
#include <unordered_set>
#include <vector>

#include "scan/records.h"
#include "scan/rollup.h"
#include "scan/scan_context.h"

namespace hl {

class Unfolded {
  public:
    Unfolded(const ScanContext& scan, Row top) : scan_(scan), report_(scan.tvwPL) {
        const std::uint32_t level = report_.level(top);
        for (Row row = report_.tree().following(top); row != kNoRow && report_.level(row) > level;
             row = report_.tree().following(row)) {
            if (report_.expanded(row)) paths_.insert(pathOf(row));
            if (report_.selected(row) && report_.number(row, kIsFolder) == 1) selected_.insert(pathOf(row));
            if (row == report_.currentRow()) current_ = pathOf(row);
        }
    }
    void restore(Row top) {
        std::vector<Row> open{top};
        while (!open.empty()) {
            const Row above = open.back();
            open.pop_back();
            for (Row row = report_.firstChild(above); row != kNoRow; row = report_.nextSibling(row))
                if (report_.number(row, kIsFolder) == 1 && restoreOne(row)) open.push_back(row);
        }
    }

  private:
    bool restoreOne(Row row) {
        const std::string path = pathOf(row);
        if (path == current_) report_.setCurrentRow(row);
        if (selected_.contains(path)) report_.setSelected(row, true);
        if (!paths_.contains(path)) return false;
        report_.setExpanded(row, true);
        return true;
    }
    std::string pathOf(Row row) const { return Report_GetFullpathOfNode(report_, row, false, scan_.paths); }

    const ScanContext& scan_;
    Grid& report_;
    std::unordered_set<std::string> paths_, selected_;
    std::string current_;
};

}  // namespace hl
