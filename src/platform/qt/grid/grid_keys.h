// The keys in a grid's view. The view first does what a row's own keys do; then the logic is told. For the
// grid's thread.
#pragma once

#include <optional>

#include "platform/qt/grid/typed_search.h"

class QKeyEvent;

namespace hl {

class GridView;

class GridKeys {
  public:
    explicit GridKeys(GridView& view) : view_(view) {}

    /// Accepts the event if the key means something here.
    void press(QKeyEvent& event);
    void release(QKeyEvent& event);
    /// Is called when the focus has left the view: the releases of keys go elsewhere.
    void focusLeft();

  private:
    void look(QKeyEvent& event);
    std::optional<std::size_t> moveTarget(int key) const;
    bool pressMoveKey(const QKeyEvent& event);
    bool pressTreeKey(const QKeyEvent& event);
    bool pressOtherKey(const QKeyEvent& event);
    bool pressTextKey(const QKeyEvent& event);

    GridView& view_;
    int pressed_ = 0;
    int movedBy_ = 0;  ///< The key that moved the current row or changed the selection, until its release.
    TypedSearch search_;
};

}  // namespace hl
