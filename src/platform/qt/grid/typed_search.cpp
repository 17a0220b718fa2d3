#include "platform/qt/grid/typed_search.h"

#include <QApplication>

#include "base/text.h"

namespace hl {

namespace {

// Returns the first row from `from` on, and then from the top, whose text begins with `front` without regard
// to case.
std::optional<std::size_t> findText(const std::string& front, std::size_t from, const Grid& grid,
                                    const VisibleRows& rows) {
    const std::size_t length = characterCount(front), count = rows.count();
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t index = (from + i) % count;
        const std::string_view text = firstCharacters(grid.text(rows.at(index)), length);
        if (compareFolded(text, front) == 0) return index;
    }
    return std::nullopt;
}

}  // namespace

std::optional<std::size_t> TypedSearch::type(const QString& key, const Grid& grid, const VisibleRows& rows,
                                             std::optional<std::size_t> current) {
    if (!typedAt_.isValid() || typedAt_.elapsed() > QApplication::keyboardInputInterval()) typed_.clear();
    typedAt_.start();
    typed_ += key;
    const std::size_t next = current ? *current + 1 : 0;
    const bool longer = typed_.size() > key.size();
    auto found = findText(typed_.toStdString(), longer ? current.value_or(0) : next, grid, rows);
    if (!found && typed_ == key.repeated(typed_.size() / key.size()))
        found = findText(key.toStdString(), next, grid, rows);
    return found;
}

}  // namespace hl
