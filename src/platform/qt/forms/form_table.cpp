#include "platform/qt/forms/form_table.h"

#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QScreen>
#include <algorithm>

#include "platform/qt/common/qt_convert.h"
#include "platform/qt/common/qt_guard.h"

namespace hl {

namespace {

constexpr QtGuard kFormTableGuard{"FormTable"};

constexpr int kFewestTableLines = 4, kMostTableLines = 24;
constexpr int kWidestTable = 120;  ///< In characters.
constexpr double kMostOfScreen = 0.6;
constexpr int kLeadsRole = Qt::UserRole;

QStringList shownTexts(const std::vector<std::string>& texts) {
    QStringList shown;
    for (const std::string& text : texts) shown.push_back(qtText(text));
    return shown;
}

}  // namespace

FormTable::FormTable(WindowEvents& events, std::function<void(int)> activated, QWidget* parent)
    : QTableWidget(parent), events_(events), activated_(std::move(activated)) {
    setEditTriggers(NoEditTriggers);
    setSelectionBehavior(SelectRows);
    setSelectionMode(ExtendedSelection);
    setTabKeyNavigation(false);
    setShowGrid(false);
    setAlternatingRowColors(true);
    setWordWrap(false);
    verticalHeader()->hide();
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() * 3 / 2);
    horizontalHeader()->setHighlightSections(false);
    connect(this, &QTableWidget::itemDoubleClicked, this, [this](const QTableWidgetItem* item) {
        kFormTableGuard(events_, "doubleClicked", [&] { activate(item->row()); });
    });
}

void FormTable::show(const TableBox& table) {
    setEnabled(table.enabled);
    const int columns = static_cast<int>(table.titles.size());
    if (columnCount() != columns) {
        setColumnCount(columns);
        horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
        if (columns > 0) horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
    }
    setHorizontalHeaderLabels(shownTexts(table.titles));
    for (int column = 0; column < columns; ++column)
        horizontalHeaderItem(column)->setTextAlignment(Qt::AlignVCenter |
                                                       (column == 0 ? Qt::AlignLeft : Qt::AlignRight));
    const int lines = static_cast<int>(table.lines.size());
    if (rowCount() != lines) setRowCount(lines);
    for (int row = 0; row < lines; ++row) showLine(row, table.lines[static_cast<std::size_t>(row)]);
    if (currentRow() < 0 && lines > 0) setCurrentCell(0, 0);
    // The dialog grows with the table; a larger one that the user made stays.
    setMinimumSize(sizeHint().boundedTo(screen()->availableSize() * kMostOfScreen));
    const QString announcement = qtText(table.announcement);
    if (announcement == accessibleDescription()) return;
    setAccessibleDescription(announcement);
    QAccessibleEvent told(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&told);
}

void FormTable::showLine(int row, const TableBox::Line& line) {
    for (int column = 0; column < columnCount(); ++column) {
        const auto index = static_cast<std::size_t>(column);
        const QString text = index < line.cells.size() ? shownName(line.cells[index]) : QString();
        QTableWidgetItem* cell = item(row, column);
        if (cell == nullptr) {
            cell = new QTableWidgetItem;
            cell->setTextAlignment(Qt::AlignVCenter | (column == 0 ? Qt::AlignLeft : Qt::AlignRight));
            setItem(row, column, cell);
        }
        QFont shown = font();
        shown.setBold(line.strong);
        shown.setUnderline(line.leads && column == 0);
        if (cell->text() != text) cell->setText(text);
        if (cell->font() != shown) cell->setFont(shown);
        cell->setToolTip(qtText(line.tooltip));
        cell->setData(kLeadsRole, line.leads);
    }
}

QSize FormTable::sizeHint() const {
    const int lines = std::clamp(rowCount(), kFewestTableLines, kMostTableLines);
    const int line = verticalHeader()->defaultSectionSize();
    int width = 2 * frameWidth();
    for (int column = 0; column < columnCount(); ++column)
        width += std::max(sizeHintForColumn(column), horizontalHeader()->sectionSizeHint(column));
    const int widest = fontMetrics().averageCharWidth() * kWidestTable;
    return {std::min(width, widest),
            horizontalHeader()->sizeHint().height() + lines * line + 2 * frameWidth()};
}

void FormTable::keyPressEvent(QKeyEvent* event) {
    kFormTableGuard(events_, [&] {
        const bool enters = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
        const QTableWidgetItem* current = item(currentRow(), 0);
        if (event->matches(QKeySequence::Copy)) {
            copySelection();
        } else if (enters && current != nullptr && current->data(kLeadsRole).toBool()) {
            activate(currentRow());
        } else {
            enters ? event->ignore() : QTableWidget::keyPressEvent(event);
        }
    });
}

void FormTable::activate(int row) {
    if (item(row, 0)->data(kLeadsRole).toBool()) activated_(row);
}

void FormTable::copySelection() const {
    QStringList lines;
    for (int row = 0; row < rowCount(); ++row) {
        if (!selectionModel()->isRowSelected(row, {})) continue;
        QStringList cells;
        for (int column = 0; column < columnCount(); ++column) cells.push_back(item(row, column)->text());
        lines.push_back(cells.join(QLatin1Char('\t')) + QLatin1Char('\n'));
    }
    if (!lines.isEmpty()) QGuiApplication::clipboard()->setText(lines.join(QString()));
}

}  // namespace hl
