#include "platform/qt/grid/grid_accessible.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <optional>
#include <unordered_map>

#include "platform/qt/common/qt_guard.h"
#include "platform/qt/grid/grid_view.h"

namespace hl {

namespace {

constexpr QtGuard kRowGuard{"RowAccessible"};
constexpr QtGuard kGridGuard{"GridAccessible"};
constexpr QtGuard kCellGuard{"CellAccessible"};

using Ids = std::unordered_map<std::size_t, QAccessible::Id>;

// Returns the object with this key, which is made if there is none yet. The toolkit owns it; `ids` knows it
// by its number.
template <class Object, class... Arguments>
QAccessibleInterface* objectOf(Ids& ids, std::size_t key, Arguments&&... arguments) {
    const auto known = ids.find(key);
    if (known != ids.end()) return QAccessible::accessibleInterface(known->second);
    auto* made = new Object(std::forward<Arguments>(arguments)...);
    ids[key] = QAccessible::registerAccessibleInterface(made);
    return made;
}

void dropAll(Ids& ids) {
    for (const auto& [key, id] : std::exchange(ids, {})) QAccessible::deleteAccessibleInterface(id);
}

QAccessibleInterface* objectAt(const Ids& ids, std::size_t key) {
    const auto known = ids.find(key);
    return known == ids.end() ? nullptr : QAccessible::accessibleInterface(known->second);
}

// What rows and cells have in common: a place in the list of visible rows.
class RowPart : public QAccessibleInterface {
  public:
    RowPart(GridView& view, std::size_t index) : view_(view), index_(index) {}

    bool isValid() const override { return row().has_value(); }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override { return view_.window()->windowHandle(); }
    void setText(QAccessible::Text, const QString&) override {}

  protected:
    /// Returns the grid's row; nothing while changes wait to be applied. (Applying them here would destroy
    /// this very object.)
    std::optional<Row> row() const {
        if (!view_.upToDate() || index_ >= view_.rows().count()) return std::nullopt;
        return view_.rows().at(index_);
    }
    QRect onScreen(const QRect& inViewport) const {
        return {view_.viewport()->mapToGlobal(inViewport.topLeft()), inViewport.size()};
    }

    GridView& view_;
    std::size_t index_;
};

class CellAccessible final : public RowPart {
  public:
    CellAccessible(GridView& view, std::size_t index, std::size_t column)
        : RowPart(view, index), column_(column) {}

    QAccessibleInterface* parent() const override {
        return kCellGuard(view_.events(), [&]() -> QAccessibleInterface* {
            QAccessibleInterface* list = QAccessible::queryAccessibleInterface(&view_);
            return list != nullptr ? list->child(static_cast<int>(index_)) : nullptr;
        });
    }
    QAccessibleInterface* child(int) const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QAccessible::Role role() const override { return QAccessible::Cell; }
    QRect rect() const override {
        return kCellGuard(view_.events(), [&] {
            const int section = static_cast<int>(column_);
            QRect cell = view_.rowRect(index_);
            cell.setLeft(view_.columnViewportPosition(section));
            cell.setWidth(view_.columnWidth(section));
            return onScreen(cell);
        });
    }
    QString text(QAccessible::Text kind) const override {
        return kCellGuard(view_.events(), [&]() -> QString {
            const auto shown = row();
            if (!shown || column_ >= view_.grid().columns().size()) return {};
            if (kind == QAccessible::Name) return view_.cellText(column_, *shown);
            if (kind != QAccessible::Description) return {};
            return QString::fromStdString(view_.grid().columns()[column_].title);
        });
    }
    QAccessible::State state() const override {
        return kCellGuard(view_.events(), [&] {
            QAccessible::State state;
            const auto shown = row();
            state.invalid = !shown;
            state.selectable = true;
            state.selected = shown && view_.grid().selected(*shown);
            return state;
        });
    }

  private:
    std::size_t column_;
};

class RowAccessible final : public RowPart, public QAccessibleActionInterface {
  public:
    using RowPart::RowPart;
    ~RowAccessible() override { dropAll(cells_); }

    QAccessibleInterface* parent() const override {
        return kRowGuard(view_.events(), [&] { return QAccessible::queryAccessibleInterface(&view_); });
    }
    QAccessibleInterface* child(int number) const override {
        return kRowGuard(view_.events(), [&]() -> QAccessibleInterface* {
            const std::vector<std::size_t> columns = view_.shownColumns();
            if (number < 0 || static_cast<std::size_t>(number) >= columns.size()) return nullptr;
            const std::size_t column = columns[static_cast<std::size_t>(number)];
            return objectOf<CellAccessible>(cells_, column, view_, index_, column);
        });
    }
    QAccessibleInterface* childAt(int x, int y) const override {
        return kRowGuard(view_.events(), [&]() -> QAccessibleInterface* {
            for (int i = 0; i < childCount(); ++i)
                if (child(i)->rect().contains(x, y)) return child(i);
            return nullptr;
        });
    }
    int childCount() const override {
        return kRowGuard(view_.events(), [&] { return static_cast<int>(view_.shownColumns().size()); });
    }
    int indexOfChild(const QAccessibleInterface* sought) const override {
        return kRowGuard(view_.events(), [&] {
            const std::vector<std::size_t> columns = view_.shownColumns();
            for (std::size_t i = 0; i < columns.size(); ++i)
                if (sought != nullptr && objectAt(cells_, columns[i]) == sought) return static_cast<int>(i);
            return -1;
        });
    }
    QAccessible::Role role() const override {
        return view_.isTree() ? QAccessible::TreeItem : QAccessible::ListItem;
    }
    QRect rect() const override {
        return kRowGuard(view_.events(), [&] { return onScreen(view_.rowRect(index_)); });
    }
    QString text(QAccessible::Text kind) const override;
    QAccessible::State state() const override;

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }
    QStringList actionNames() const override;
    void doAction(const QString& action) override;
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

  private:
    bool hasBranch() const {
        const auto shown = row();
        return shown && view_.isTree() && view_.grid().hasChildren(*shown);
    }
    mutable Ids cells_;
};

QString RowAccessible::text(QAccessible::Text kind) const {
    return kRowGuard(view_.events(), [&]() -> QString {
        const auto shown = row();
        if (!shown) return {};
        if (kind == QAccessible::Name) return view_.cellText(0, *shown);
        if (kind != QAccessible::Description || !view_.isTree()) return {};
        const QString level =
            view_.levelCaption() + QLatin1Char(' ') + QString::number(view_.grid().level(*shown) + 1);
        const QString mark = view_.markNote(*shown);
        return mark.isEmpty() ? level : level + QLatin1String(". ") + mark;
    });
}

QAccessible::State RowAccessible::state() const {
    return kRowGuard(view_.events(), [&] {
        QAccessible::State state;
        const auto shown = row();
        state.invalid = !shown;
        if (!shown) return state;
        const Grid& grid = view_.grid();
        state.selectable = state.focusable = true;
        state.selected = grid.selected(*shown);
        state.focused = view_.hasFocus() && grid.currentRow() == *shown;
        state.active = grid.currentRow() == *shown;
        state.expandable = hasBranch();
        state.expanded = hasBranch() && grid.expanded(*shown);
        state.collapsed = hasBranch() && !grid.expanded(*shown);
        state.offscreen = !view_.viewport()->rect().intersects(view_.rowRect(index_));
        return state;
    });
}

QStringList RowAccessible::actionNames() const {
    return kRowGuard(view_.events(), [&] {
        QStringList names{QAccessibleActionInterface::setFocusAction()};
        if (hasBranch()) names << QAccessibleActionInterface::toggleAction();
        return names;
    });
}

void RowAccessible::doAction(const QString& action) {
    kRowGuard(view_.events(), [&] {
        const auto shown = row();
        if (!shown) return;
        // Folding destroys the objects of all rows, this one too, so nothing may follow it.
        if (action == QAccessibleActionInterface::toggleAction())
            return view_.actions().foldRow(index_, !view_.grid().expanded(*shown));
        if (action != QAccessibleActionInterface::setFocusAction()) return;
        view_.focus();
        view_.actions().pickRow(index_);
    });
}

class GridAccessible final : public QAccessibleWidget {
  public:
    explicit GridAccessible(GridView& view)
        : QAccessibleWidget(&view, view.isTree() ? QAccessible::Tree : QAccessible::List), view_(view) {}
    ~GridAccessible() override { dropAll(rows_); }

    void forgetRows() { dropAll(rows_); }

    int childCount() const override { return static_cast<int>(view_.rows().count()); }
    QAccessibleInterface* child(int number) const override {
        return kGridGuard(view_.events(), [&]() -> QAccessibleInterface* {
            if (!view_.upToDate() || number < 0 || number >= childCount()) return nullptr;
            const auto index = static_cast<std::size_t>(number);
            return objectOf<RowAccessible>(rows_, index, view_, index);
        });
    }
    QAccessibleInterface* childAt(int x, int y) const override {
        return kGridGuard(view_.events(), [&]() -> QAccessibleInterface* {
            const QPoint point = view_.viewport()->mapFromGlobal(QPoint(x, y));
            const Row row = view_.upToDate() ? view_.rowAt(point) : kNoRow;
            const auto index = row == kNoRow ? std::nullopt : view_.rows().find(row);
            return index ? child(static_cast<int>(*index)) : nullptr;
        });
    }
    int indexOfChild(const QAccessibleInterface* sought) const override {
        return kGridGuard(view_.events(), [&] {
            for (const auto& [index, id] : rows_)
                if (QAccessible::accessibleInterface(id) == sought) return static_cast<int>(index);
            return -1;
        });
    }
    QAccessibleInterface* focusChild() const override {
        return kGridGuard(view_.events(), [&]() -> QAccessibleInterface* {
            if (!view_.hasFocus() || !view_.upToDate()) return nullptr;
            const auto index = view_.rows().find(view_.grid().currentRow());
            return index ? child(static_cast<int>(*index)) : nullptr;
        });
    }
    QAccessible::State state() const override {
        return kGridGuard(view_.events(), [&] {
            QAccessible::State state = QAccessibleWidget::state();
            state.multiSelectable = state.extSelectable = true;
            return state;
        });
    }

  private:
    GridView& view_;
    mutable Ids rows_;
};

QAccessibleInterface* makeGridAccessible(const QString&, QObject* object) {
    auto* view = dynamic_cast<GridView*>(object);
    if (view == nullptr) return nullptr;
    return QtGuard()(view->events(), [&]() -> QAccessibleInterface* {
        view->setDescribed();
        return new GridAccessible(*view);
    });
}

}  // namespace

void installGridAccessible() {
    QAccessible::installFactory(makeGridAccessible);
}

// No ObjectReorder is sent, because the toolkit would send a message for each of the children, perhaps a
// million. It has reported a new model already, as for any table.
void accessibleRowsChanged(GridView& view) {
    if (!view.described()) return;
    if (auto* list = dynamic_cast<GridAccessible*>(QAccessible::queryAccessibleInterface(&view)))
        list->forgetRows();
}

void accessibleCurrentChanged(GridView& view, std::size_t index) {
    if (!QAccessible::isActive() || !view.hasFocus()) return;
    for (const QAccessible::Event kind : {QAccessible::Focus, QAccessible::Selection}) {
        QAccessibleEvent event(&view, kind);
        event.setChild(static_cast<int>(index));
        QAccessible::updateAccessibility(&event);
    }
}

// The bridge of Qt 6.4 does not pass on a change of the state; when the row gets the focus, it is read again.
void accessibleFoldChanged(GridView& view, std::size_t index) {
    if (!QAccessible::isActive()) return;
    QAccessible::State changed;
    changed.expanded = changed.collapsed = true;
    QAccessibleStateChangeEvent event(&view, changed);
    event.setChild(static_cast<int>(index));
    QAccessible::updateAccessibility(&event);
    if (view.rows().at(index) == view.grid().currentRow()) accessibleCurrentChanged(view, index);
}

}  // namespace hl
