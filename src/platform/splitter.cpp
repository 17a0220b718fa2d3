#include "platform/splitter.h"

#include <algorithm>
#include <limits>

#include "base/fault.h"
#include "base/scope_exit.h"

namespace hl {

namespace {

constexpr std::int64_t kFaultPropertyValue = 380;

void require(bool valid) {
    if (!valid) throw Fault(kFaultPropertyValue, "Harborlantern.cSplitter", "Invalid property value");
}

void requireIndex(int index) {
    require(index == 1 || index == 2);
}

// Positions and sizes are added in 64 bits, since each of them may be as large as an int.
int narrowed(std::int64_t value) {
    using Limits = std::numeric_limits<int>;
    return static_cast<int>(std::clamp<std::int64_t>(value, Limits::min(), Limits::max()));
}

}  // namespace

// --- properties

void cSplitter::setOrientation(Orientation orientation) {
    if (orientation == orientation_) return;
    orientation_ = orientation;
    positionUnchecked_ = true;
    Resize();
}

void cSplitter::setPosition(int position) {
    if (position == position_) return;
    position_ = position;
    pApply();
}

void cSplitter::setSplitterSize(int size) {
    require(size >= 0);
    if (size == splitterSize_) return;
    splitterSize_ = size;
    pApply();
}

void cSplitter::setMinimumSize(int index, int size) {
    requireIndex(index);
    if (size == minimum_[index - 1]) return;
    minimum_[index - 1] = size;
    pApply();
}

void cSplitter::setMaximumSize(int index, int size) {
    requireIndex(index);
    if (size == maximum_[index - 1]) return;
    maximum_[index - 1] = size;
    pApply();
}

void cSplitter::setVisible(int index, bool on) {
    if (on == visible_[index]) return;
    visible_[index] = on;
    if (!on) visible_[1 - index] = true;
    Resize();
}

void cSplitter::Bind(PaneRef control1, PaneRef control2) {
    if (control1 == control_[0] && control2 == control_[1]) return;
    control_[0] = control1;
    control_[1] = control2;
    if (pbConfigured()) return Resize();
    if (changed) changed();  // There is nothing to lay out, but an old pane has to be removed.
}

void cSplitter::setTotal(int total) {
    if (total == total_ && !positionUnchecked_) return;
    total_ = total;
    if (positionUnchecked_) pValidatePosition();
    Resize();
}

// --- layout

bool cSplitter::pbConfigured() const {
    return total_ > 0 && control_[0].kind != PaneRef::Kind::kNone && control_[1].kind != PaneRef::Kind::kNone;
}

void cSplitter::pApply() {
    pValidatePosition();
    Resize();
}

// The order matters: where the limits contradict each other, the later one wins.
void cSplitter::pValidatePosition() {
    positionUnchecked_ = total_ <= 0;
    if (positionUnchecked_) return;
    const std::int64_t both = std::int64_t{total_} - splitterSize_;
    std::int64_t position = position_;
    if (maximum_[1] > 0 && both - position > maximum_[1]) position = both - maximum_[1];
    if (maximum_[0] > 0 && position > maximum_[0]) position = maximum_[0];
    if (minimum_[1] > 0 && both - position < minimum_[1]) position = both - minimum_[1];
    if (minimum_[0] > 0 && position < minimum_[0]) position = minimum_[0];
    position_ = narrowed(position);
}

void cSplitter::Resize() {
    if (!pbConfigured()) return;
    if (changed) changed();
    if (AfterResize) AfterResize();
}

cSplitter::Layout cSplitter::layout() const {
    Layout spans;
    if (!pbConfigured()) return spans;
    const Span all{true, 0, total_};
    if (!visible_[0]) {
        spans.second = all;
    } else if (!visible_[1]) {
        spans.first = all;
    } else {
        const int end = std::clamp(position_, 0, total_);
        const int start = std::min(total_, narrowed(std::int64_t{end} + splitterSize_));
        spans.first = {true, 0, end};
        spans.bar = {start > end, end, start - end};
        spans.second = {true, start, total_ - start};
    }
    return spans;
}

// --- dragging

void cSplitter::MouseDown(int at) {
    if (!layout().bar.visible) return;
    dragging_ = true;
    dragStart_ = std::clamp(at, 0, total_);
    dragPosition_ = position_;
}

void cSplitter::MouseMove(int at) {
    if (!dragging_) return;
    const int before = position_;
    moveTo(at);
    if (position_ != before && changed) changed();
}

void cSplitter::MouseUp(int at) {
    if (!dragging_) return;
    const ScopeExit released([this] { dragging_ = false; });
    moveTo(at);
    if (changed) changed();
    if (AfterResize) AfterResize();
}

// The pointer is treated as if it could not leave the container.
void cSplitter::moveTo(int at) {
    position_ = narrowed(std::int64_t{dragPosition_} + std::clamp(at, 0, std::max(total_, 0)) - dragStart_);
    pValidatePosition();
}

}  // namespace hl
