#include "platform/qt/print/print_columns.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <queue>
#include <string_view>

#include "base/text.h"

namespace hl {

namespace {

constexpr std::size_t kSample = 500;  ///< Rows from all parts of the grid.
constexpr std::size_t kLongest = 32;  ///< Rows with the longest texts, by each way of counting.
// The least and the largest width of a first column that is repeated, in percent of the page.
constexpr int kRepeatedLeast = 20, kRepeatedMost = 40;

/// Keeps the kLongest rows with the largest values of some number.
class Largest {
  public:
    void see(double size, Row row) {
        if (kept_.size() == kLongest && size <= kept_.top().first) return;
        if (kept_.size() == kLongest) kept_.pop();
        kept_.emplace(size, row);
    }
    template <class Visit>
    void each(Visit&& visit) {
        for (; !kept_.empty(); kept_.pop()) visit(kept_.top().second);
    }

  private:
    using Kept = std::pair<double, Row>;
    std::priority_queue<Kept, std::vector<Kept>, std::greater<>> kept_;
};

/// The rows that decide how wide the column is.
class Candidates {
  public:
    Candidates(const Grid& grid, std::size_t column)
        : grid_(grid),
          cell_(grid.cell(grid.columns()[column].key)),
          first_(column == 0),
          auto_(grid.columns()[column].unit == kModeAuto) {}

    void see(Row row) {
        if (cell_ == kNoCell) return seeText(row, grid_.text(row));
        if (grid_.cells().isText(cell_)) return seeText(row, grid_.cellText(row, cell_));
        const double number = shownNumber(row);
        if (std::isnan(number)) return;
        one_.see(number, row);
        other_.see(-number, row);
    }
    template <class Visit>
    void each(Visit&& visit) {
        one_.each(visit);
        other_.each(visit);
    }

  private:
    // A level counts as some three characters.
    void seeText(Row row, std::string_view text) {
        const double indentation = first_ ? 3.0 * grid_.level(row) : 0;
        const std::string_view note = first_ ? grid_.rowNote(row) : std::string_view();
        one_.see(indentation + static_cast<double>(text.size() + note.size()), row);
        other_.see(indentation + static_cast<double>(characterCount(text)) +
                       static_cast<double>(characterCount(note)),
                   row);
    }

    // In the unit that fits it, a smaller size may have the longer text.
    double shownNumber(Row row) const {
        const double number = grid_.number(row, cell_);
        if (!auto_ || !(number != 0)) return number;
        const auto size = SizeValue::fromBytes(static_cast<std::uint64_t>(std::abs(number)));
        return number / static_cast<double>(sizeUnit(fittingMode(size)).divisor);
    }

    const Grid& grid_;
    CellId cell_;
    bool first_, auto_;
    Largest one_, other_;
};

int percentOf(int whole, int percent) {
    return whole * percent / 100;
}

}  // namespace

int printedWidth(const RowPainter& painter, const Grid& grid, const VisibleRows& rows, std::size_t column) {
    int widest = 0;
    const auto measure = [&](Row row) { widest = std::max(widest, painter.contentWidth(row, column)); };
    Candidates candidates(grid, column);
    const std::size_t stride = rows.count() / kSample + 1;
    for (std::size_t i = 0; i < rows.count(); ++i) {
        candidates.see(rows.at(i));
        if (i % stride == 0) measure(rows.at(i));
    }
    candidates.each(measure);
    return widest;
}

std::vector<std::vector<PaintedColumn>> columnsOfPages(const std::vector<WantedColumn>& wanted, int room) {
    std::vector<std::vector<PaintedColumn>> pages(1);
    int left = 0;
    for (const auto& [column, width] : wanted) {
        const bool fits = left + width <= room;
        if (!fits && left > 0) {
            const WantedColumn& first = wanted.front();
            const int repeated = std::min(
                first.width,
                std::clamp(room - width, percentOf(room, kRepeatedLeast), percentOf(room, kRepeatedMost)));
            pages.push_back({{first.column, 0, repeated}});
            left = repeated;
        }
        const int given = std::min(width, room - left);
        pages.back().push_back({column, left, given});
        left += given;
    }
    return pages;
}

}  // namespace hl
