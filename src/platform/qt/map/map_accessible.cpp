#include "platform/qt/map/map_accessible.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <unordered_map>
#include <utility>

#include "platform/qt/common/qt_convert.h"
#include "platform/qt/common/qt_guard.h"
#include "platform/qt/map/map_area.h"

namespace hl {

namespace {

constexpr QtGuard kTileGuard{"TileAccessible"};
constexpr QtGuard kMapTreeGuard{"MapAccessible"};

class TileAccessible final : public QAccessibleInterface, public QAccessibleActionInterface {
  public:
    TileAccessible(MapArea& map, std::size_t number) : map_(map), number_(number) {}

    bool isValid() const override { return number_ < map_.itemCount(); }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override { return map_.window()->windowHandle(); }
    void setText(QAccessible::Text, const QString&) override {}
    QAccessibleInterface* parent() const override {
        return kTileGuard(map_.faults(), [&] { return QAccessible::queryAccessibleInterface(&map_); });
    }
    QAccessibleInterface* child(int) const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QAccessible::Role role() const override { return QAccessible::TreeItem; }
    QRect rect() const override {
        return kTileGuard(map_.faults(), [&] {
            const QRect place = map_.placeOnWidget(map_.item(number_).place).toAlignedRect();
            return QRect(map_.mapToGlobal(place.topLeft()), place.size());
        });
    }
    QString text(QAccessible::Text kind) const override {
        return kTileGuard(map_.faults(), [&]() -> QString {
            const MapItem item = map_.item(number_);
            if (kind == QAccessible::Name) return qtText(item.text);
            if (kind != QAccessible::Description) return {};
            return map_.levelCaption() + QLatin1Char(' ') + QString::number(item.level + 1);
        });
    }
    QAccessible::State state() const override {
        return kTileGuard(map_.faults(), [&] {
            QAccessible::State state;
            state.invalid = !isValid();
            if (state.invalid) return state;
            const bool selected = map_.selectedItem() == number_;
            state.selectable = state.focusable = true;
            state.selected = state.active = selected;
            state.focused = selected && map_.hasFocus();
            state.expandable = state.expanded = map_.item(number_).hasItems;
            return state;
        });
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }
    QStringList actionNames() const override { return {QAccessibleActionInterface::setFocusAction()}; }
    void doAction(const QString& action) override {
        kTileGuard(map_.faults(), [&] {
            if (action != QAccessibleActionInterface::setFocusAction()) return;
            map_.setFocus();
            map_.selectItem(number_);
        });
    }
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

  private:
    MapArea& map_;
    std::size_t number_;
};

class MapAccessible final : public QAccessibleWidget {
  public:
    explicit MapAccessible(MapArea& map) : QAccessibleWidget(&map, QAccessible::Tree), map_(map) {}
    ~MapAccessible() override { forgetTiles(); }

    void forgetTiles() {
        for (const auto& [number, id] : std::exchange(tiles_, {})) QAccessible::deleteAccessibleInterface(id);
    }

    int childCount() const override {
        return kMapTreeGuard(map_.faults(), [&] { return static_cast<int>(map_.itemCount()); });
    }
    QAccessibleInterface* child(int number) const override {
        return kMapTreeGuard(map_.faults(), [&]() -> QAccessibleInterface* {
            if (number < 0 || number >= childCount()) return nullptr;
            const auto index = static_cast<std::size_t>(number);
            const auto known = tiles_.find(index);
            if (known != tiles_.end()) return QAccessible::accessibleInterface(known->second);
            auto* made = new TileAccessible(map_, index);
            tiles_[index] = QAccessible::registerAccessibleInterface(made);
            return made;
        });
    }
    QAccessibleInterface* childAt(int x, int y) const override {
        return kMapTreeGuard(map_.faults(), [&]() -> QAccessibleInterface* {
            return child(static_cast<int>(map_.itemAt(map_.mapFromGlobal(QPointF(x, y)))));
        });
    }
    int indexOfChild(const QAccessibleInterface* sought) const override {
        return kMapTreeGuard(map_.faults(), [&] {
            for (const auto& [number, id] : tiles_)
                if (QAccessible::accessibleInterface(id) == sought) return static_cast<int>(number);
            return -1;
        });
    }
    QAccessibleInterface* focusChild() const override {
        return kMapTreeGuard(map_.faults(), [&]() -> QAccessibleInterface* {
            return map_.hasFocus() ? child(static_cast<int>(map_.selectedItem())) : nullptr;
        });
    }

  private:
    MapArea& map_;
    mutable std::unordered_map<std::size_t, QAccessible::Id> tiles_;  ///< The toolkit owns the objects.
};

QAccessibleInterface* makeMapAccessible(const QString&, QObject* object) {
    auto* map = dynamic_cast<MapArea*>(object);
    if (map == nullptr) return nullptr;
    return QtGuard()(map->faults(), [&]() -> QAccessibleInterface* {
        map->setDescribed();
        return new MapAccessible(*map);
    });
}

}  // namespace

void installMapAccessible() {
    QAccessible::installFactory(makeMapAccessible);
}

void accessibleTilesChanged(MapArea& map) {
    if (!map.described()) return;
    if (auto* tree = dynamic_cast<MapAccessible*>(QAccessible::queryAccessibleInterface(&map)))
        tree->forgetTiles();
}

void accessibleSelectionChanged(MapArea& map) {
    if (!QAccessible::isActive() || !map.hasFocus()) return;
    const std::size_t selected = map.selectedItem();
    if (selected >= map.itemCount()) return;
    for (const QAccessible::Event kind : {QAccessible::Focus, QAccessible::Selection}) {
        QAccessibleEvent event(&map, kind);
        event.setChild(static_cast<int>(selected));
        QAccessible::updateAccessibility(&event);
    }
}

}  // namespace hl
