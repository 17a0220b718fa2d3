// cSplitter has two panes, side by side or stacked, and the bar between them. It is pure logic over the size
// of the container: a window places its widgets by layout() and calls the mouse routines; nothing here draws.
//
// Sizes are in pixels. A wrong argument raises a Fault with number 380. For the thread of the logic only.
#pragma once

#include <cstdint>
#include <functional>

namespace hl {

enum class Orientation : std::int8_t { kStacked = 1, kSideBySide = 2 };

/// What a pane contains.
struct PaneRef {
    enum class Kind : std::uint8_t { kNone, kSplitter, kBar, kGrid, kPreview, kMap };
    Kind kind = Kind::kNone;
    int number = 0;  ///< A SplitterId, BarId or GridId, depending on the kind.
    bool operator==(const PaneRef&) const = default;
};

class cSplitter {
  public:
    /// The extent of a pane along the splitter's axis; across it, a pane has the container's.
    struct Span {
        bool visible = false;
        int start = 0;
        int size = 0;
    };
    struct Layout {
        Span first, second;
        Span bar;
    };

    cSplitter() = default;
    cSplitter(const cSplitter&) = delete;
    cSplitter& operator=(const cSplitter&) = delete;

    // --- properties. Setters of position, sizes, visibility, panes and orientation lay out anew if the value
    // changes; setShowGripper is for the start and does not.
    Orientation orientation() const { return orientation_; }
    /// The window must then set the total along the new axis.
    void setOrientation(Orientation orientation);
    /// The size of control 1. It stays within the limits as far as the total allows; the minimum of control 1
    /// has precedence. A position set while the total is unknown is checked once it is known.
    int Position() const { return position_; }
    void setPosition(int position);
    int SplitterSize() const { return splitterSize_; }
    void setSplitterSize(int size);
    /// `index` is 1 or 2. A maximum of 0 or less means no limit.
    void setMinimumSize(int index, int size);
    void setMaximumSize(int index, int size);
    bool Control1Visible() const { return visible_[0]; }
    bool Control2Visible() const { return visible_[1]; }
    /// One pane is always visible: hiding the last one shows the other.
    void setControl1Visible(bool on) { setVisible(0, on); }
    void setControl2Visible(bool on) { setVisible(1, on); }
    /// Tells whether the user may drag the bar; a bar without a gripper looks empty.
    bool ShowGripper() const { return showGripper_; }
    void setShowGripper(bool on) { showGripper_ = on; }
    const PaneRef& Control1() const { return control_[0]; }
    const PaneRef& Control2() const { return control_[1]; }
    void setControl1(PaneRef pane) { Bind(pane, control_[1]); }
    void Bind(PaneRef control1, PaneRef control2);

    /// The container's size along the axis. It is unknown (0 or less) until a window sets it; nothing is laid
    /// out before. The first total should be the real one, because it may move the position.
    int total() const { return total_; }
    void setTotal(int total);

    /// Lays out, then calls `changed` and `AfterResize`. Does nothing while a pane or the total is missing.
    void Resize();
    /// Returns a layout within the total, even if the position is not; everything is invisible while a pane
    /// or the total is missing.
    Layout layout() const;

    // --- dragging; `at` is the pointer's place along the axis, in pixels of the container
    void MouseDown(int at);
    void MouseMove(int at);
    void MouseUp(int at);
    bool dragging() const { return dragging_; }

    /// Is called after each layout; may be null.
    std::function<void()> AfterResize;
    /// Is called for the window when panes, sizes or looks have changed; may be null.
    std::function<void()> changed;

  private:
    bool pbConfigured() const;
    void pApply();
    void pValidatePosition();
    void setVisible(int index, bool on);
    void moveTo(int at);

    bool visible_[2] = {true, true};
    bool showGripper_ = false;
    bool dragging_ = false;
    int position_ = 128;
    int splitterSize_ = 4;
    int minimum_[2] = {8, 8};
    int maximum_[2] = {-1, -1};
    Orientation orientation_ = Orientation::kStacked;
    PaneRef control_[2];
    int total_ = 0;
    bool positionUnchecked_ = false;  ///< The position was set while the total along the axis was unknown.
    int dragStart_ = 0;
    int dragPosition_ = 0;
};

}  // namespace hl
