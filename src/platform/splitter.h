// cSplitter: two panes side by side or stacked, and the bar between them, as pure logic over the size of
// their container. A window moves its widgets by layout() and calls the mouse routines; nothing here draws.
//
// Sizes in pixels. Errors of an argument are Faults with number 380. Thread of the logic only.
#pragma once

#include <cstdint>
#include <functional>

namespace hl {

enum class Orientation : std::int8_t { kStacked = 1, kSideBySide = 2 };

/// What lies in a pane.
struct PaneRef {
    enum class Kind : std::uint8_t { kNone, kSplitter, kBar, kGrid, kPreview };
    Kind kind = Kind::kNone;
    int number = 0;  ///< SplitterId, BarId or GridId by kind.
    bool operator==(const PaneRef&) const = default;
};

class cSplitter {
  public:
    /// One pane along the splitter's axis; its other measure is the container's.
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
    // differs; ShowGripper is for the start and lays out nothing.
    Orientation orientation() const { return orientation_; }
    /// The window then tells the total along the new axis.
    void setOrientation(Orientation orientation);
    /// Size of control 1, within the limits as far as the total allows; the minimum of control 1 beats all
    /// other limits. What is set while the total is unknown is held against the limits once it is known.
    int Position() const { return position_; }
    void setPosition(int position);
    int SplitterSize() const { return splitterSize_; }
    void setSplitterSize(int size);
    /// `index` is 1 or 2. A maximum of 0 or less is no limit.
    void setMinimumSize(int index, int size);
    void setMaximumSize(int index, int size);
    bool Control1Visible() const { return visible_[0]; }
    bool Control2Visible() const { return visible_[1]; }
    /// One pane always shows: hiding the last one shows the other.
    void setControl1Visible(bool on) { setVisible(0, on); }
    void setControl2Visible(bool on) { setVisible(1, on); }
    /// Whether the user may drag the bar; one without a gripper shows nothing.
    bool ShowGripper() const { return showGripper_; }
    void setShowGripper(bool on) { showGripper_ = on; }
    const PaneRef& Control1() const { return control_[0]; }
    const PaneRef& Control2() const { return control_[1]; }
    void setControl1(PaneRef pane) { Bind(pane, control_[1]); }
    void Bind(PaneRef control1, PaneRef control2);

    /// The container's size along the axis; 0 or less is unknown. Unknown until a window tells it; nothing is
    /// laid out before. The first total should be the real one: it may move the position.
    int total() const { return total_; }
    void setTotal(int total);

    /// Lays out: `changed` first, then `AfterResize`. Nothing happens while a pane or the total is missing.
    void Resize();
    /// Within the total, also where the position is not; all invisible while a pane or the total is missing.
    Layout layout() const;

    // --- dragging; `at` is the pointer's place along the axis, in pixels of the container
    void MouseDown(int at);
    void MouseMove(int at);
    void MouseUp(int at);
    bool dragging() const { return dragging_; }

    /// After each layout. May be null.
    std::function<void()> AfterResize;
    /// For the window: panes, sizes or looks have changed. May be null.
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
    bool positionUnchecked_ = false;  ///< Set while the total along the axis was not known.
    int dragStart_ = 0;
    int dragPosition_ = 0;
};

}  // namespace hl
