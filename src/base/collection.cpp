// The collection: look-up; adding; removing; values, tags and keys; the red-black tree.
//
// Between two calls this holds: OrderIndex[1] to OrderIndex[count_] are the nodes of the tree, each once; the
// keys of the tree are in order; the root and the sentinel are black, no red node has a red child, and all
// ways down from a node meet the same number of black nodes.
#include "base/collection.h"

#include <algorithm>
#include <utility>

#include "base/fault.h"
#include "base/text.h"

namespace hl {

namespace {

constexpr std::int32_t kBlack = 0;
constexpr std::int32_t kRed = 1;

constexpr std::int64_t kFaultPosition = 1;
constexpr std::int64_t kFaultMissing = 2;
constexpr std::int64_t kFaultDuplicate = 8;

constexpr const char* kAddSource = "CStringCollection.Add";

int compareTexts(std::string_view a, std::string_view b, std::int32_t mode) {
    return mode != 0 ? compareFolded(a, b) : a.compare(b);
}

std::string textOf(const KeyOrPosition& key) {
    if (const auto* position = std::get_if<std::int32_t>(&key)) return std::to_string(*position);
    return std::string(std::get<std::string_view>(key));
}

auto otherSide(std::int32_t KeyNode::*side) {
    return side == &KeyNode::left ? &KeyNode::right : &KeyNode::left;
}

[[noreturn]] void raiseMissing(const char* source, const KeyOrPosition& key, const std::string& more = {}) {
    throw Fault(kFaultMissing, source, "Key: " + textOf(key) + more);
}

}  // namespace

// Look-up

std::int32_t CStringCollection::GetKeyIndex(const KeyOrPosition& key) const {
    if (const auto* text = std::get_if<std::string_view>(&key)) return FindNode(*text);
    const std::int32_t position = std::get<std::int32_t>(key);
    return position < 1 || position > count_ ? 0 : order(position);
}

std::int32_t CStringCollection::FindNode(std::string_view key) const {
    return count_ == 0 ? 0 : placeOf(key, true).equal;
}

// Finds where a key belongs. Where equal keys are allowed, they go to the right. REQUIRES: Init was called.
CStringCollection::Place CStringCollection::placeOf(std::string_view key, bool stopAtEqual) const {
    Place place;
    for (std::int32_t at = root_; at != 0; at = node(at).*place.side) {
        const int order = compareTexts(key, node(at).key, compareMode_);
        if (order == 0 && stopAtEqual) {
            place.equal = at;
            break;
        }
        place.parent = at;
        place.side = order < 0 ? &KeyNode::left : &KeyNode::right;
    }
    return place;
}

// Searches linearly; called only when adding beside another item and when removing. REQUIRES: the node is in
// use.
std::int32_t CStringCollection::GetIndex(std::int32_t number) const {
    const auto first = OrderIndex.begin() + 1;
    return static_cast<std::int32_t>(std::find(first, first + count_, number) - OrderIndex.begin());
}

// Adding

void CStringCollection::Init(std::int32_t initialSize, float growth) {
    initialSize_ = std::max(initialSize, 1);
    growth_ = growth;
    root_ = 0;
    count_ = 0;
    nodes_.clear();
    nodes_.resize(static_cast<std::size_t>(initialSize_) + 1);
    OrderIndex.assign(nodes_.size() + 1, 0);
    pool_.emplace().Init(initialSize_, growth_);
}

std::int32_t CStringCollection::Add(std::string_view value, std::string_view key, std::int32_t tag) {
    return Add(value, key, tag, AddOptions());
}

std::int32_t CStringCollection::Add(std::string_view value, std::string_view key, std::int32_t tag,
                                    const AddOptions& options, Existing* existing) {
    if (!pool_) Init(initialSize_, growth_);
    const Place place = placeOf(key, !key.empty() && !AllowDuplicateKeys);
    if (place.equal != 0) {
        const KeyNode& found = node(place.equal);
        if (existing != nullptr) *existing = {place.equal, found.tag, found.value};
        if (!options.raiseOnError) return 0;
        const char* text = compareMode_ != 0 ? "Duplicate KeyA: " : "Duplicate KeyB: ";
        throw Fault(kFaultDuplicate, kAddSource, text + std::string(key));
    }
    const std::int32_t position = positionOfNew(value, options);
    if (position == 0) return 0;

    // Both are copied first, since they may be part of a node that is about to move. After newNumber nothing
    // can fail.
    std::string ownKey(key);
    std::string ownValue(value);
    const std::int32_t number = newNumber();
    node(number) = {0, 0, place.parent, kRed, std::move(ownKey), std::move(ownValue), tag};
    shiftUp(position);
    order(position) = number;
    link(number, place);
    InsertFixup(number);
    return number;
}

// Returns 0 if the item beside which the new one belongs is missing.
std::int32_t CStringCollection::positionOfNew(std::string_view value, const AddOptions& options) const {
    if (options.before) return positionBeside(*options.before, "before", options.raiseOnError);
    if (options.after) {
        const std::int32_t position = positionBeside(*options.after, "after", options.raiseOnError);
        return position == 0 ? 0 : position + 1;
    }
    return options.sorted ? sortedPosition(value, options.compareMode) : count_ + 1;
}

std::int32_t CStringCollection::positionBeside(const KeyOrPosition& key, std::string_view where,
                                               bool raise) const {
    const std::int32_t number = GetKeyIndex(key);
    if (number != 0) return GetIndex(number);
    if (!raise) return 0;
    throw Fault(kFaultMissing, kAddSource, "Key not found " + std::string(where) + ": " + textOf(key));
}

// Returns the position behind the last value that is not greater. Values that arrive in order cost one
// comparison.
std::int32_t CStringCollection::sortedPosition(std::string_view value, std::int32_t mode) const {
    const auto below = [&](std::int32_t position) {
        return compareTexts(value, node(order(position)).value, mode) < 0;
    };
    if (count_ == 0 || !below(count_)) return count_ + 1;
    std::int32_t low = 1;
    std::int32_t high = count_;
    while (low < high) {
        const std::int32_t middle = low + (high - low) / 2;
        if (below(middle)) {
            high = middle;
        } else {
            low = middle + 1;
        }
    }
    return low;
}

// Returns a free node number and makes room for it in both arrays.
std::int32_t CStringCollection::newNumber() {
    const std::int32_t number = pool_->Alloc();
    if (static_cast<std::size_t>(number) < nodes_.size()) return number;
    const auto elements = static_cast<std::size_t>(grownSize(number, growth_, number)) + 1;
    OrderIndex.reserve(elements + 2);  // Without this the vectors would double, whatever the factor.
    OrderIndex.resize(elements + 2);
    nodes_.reserve(elements);
    nodes_.resize(elements);
    return number;
}

void CStringCollection::shiftUp(std::int32_t position) {
    ++count_;
    const auto begin = OrderIndex.begin();
    std::copy_backward(begin + position, begin + count_, begin + count_ + 1);
}

void CStringCollection::shiftDown(std::int32_t position) {
    const auto begin = OrderIndex.begin();
    std::copy(begin + position + 1, begin + count_ + 1, begin + position);
    order(count_) = 0;
    --count_;
}

// Removing

std::int32_t CStringCollection::Remove(const KeyOrPosition& key) {
    const std::int32_t number = GetKeyIndex(key);
    if (number == 0) return 0;
    const bool twoChildren = node(number).left != 0 && node(number).right != 0;
    const std::int32_t gone = twoChildren ? leftmost(node(number).right) : number;
    const std::int32_t child = unlink(gone);
    if (gone != number) takeOver(number, gone);
    if (!isRed(gone)) DeleteFixup(child);
    drop(gone);
    return number;
}

// Swaps the item of `from`, which has left the tree, with that of `number`. Each position keeps its item.
void CStringCollection::takeOver(std::int32_t number, std::int32_t from) {
    std::swap(node(number).key, node(from).key);
    std::swap(node(number).value, node(from).value);
    std::swap(node(number).tag, node(from).tag);
    std::swap(order(GetIndex(number)), order(GetIndex(from)));
}

void CStringCollection::drop(std::int32_t number) {
    node(number) = KeyNode();
    shiftDown(GetIndex(number));
    pool_->Free(number);
}

void CStringCollection::Clear() {
    pool_.reset();
    nodes_ = std::vector<KeyNode>();
    count_ = 0;
}

// Values, tags and keys

void CStringCollection::ChangeValues(const KeyOrPosition& key, std::string_view value, std::int32_t tag) {
    const std::int32_t number = GetKeyIndex(key);
    if (number == 0) raiseMissing("ChangeValues", key);
    node(number).value = value;
    node(number).tag = tag;
}

std::string_view CStringCollection::Item(const KeyOrPosition& key) const {
    const std::int32_t number = GetKeyIndex(key);
    if (number != 0) return node(number).value;
    if (raiseError_) raiseMissing("Get Item", key);
    return {};
}

void CStringCollection::Item(const KeyOrPosition& key, std::string_view value) {
    const std::int32_t number = GetKeyIndex(key);
    if (number == 0) raiseMissing("Let Item", key);
    node(number).value = value;
}

std::int32_t CStringCollection::Tag(const KeyOrPosition& key, bool missingIsNoFault) const {
    const std::int32_t number = GetKeyIndex(key);
    if (number != 0) return node(number).tag;
    if (raiseError_ && !missingIsNoFault) raiseMissing("Get Tag", key);
    return -1;
}

void CStringCollection::Tag(const KeyOrPosition& key, bool missingIsNoFault, std::int32_t tag) {
    const std::int32_t number = GetKeyIndex(key);
    if (number != 0) {
        node(number).tag = tag;
    } else if (raiseError_ && !missingIsNoFault) {
        raiseMissing("Let Tag", key, " NewTag: " + std::to_string(tag));
    }
}

std::string_view CStringCollection::Key(std::int32_t position) const {
    const std::int32_t number = GetKeyIndex(position);
    if (number == 0) throw Fault(kFaultPosition, "Get Key", "Index: " + std::to_string(position));
    return node(number).key;
}

void CStringCollection::Key(std::int32_t position, std::string_view key) {
    const auto raise = [&](std::int64_t fault) {
        throw Fault(fault, "Let Key", "Index: " + std::to_string(position) + " NewKey: " + std::string(key));
    };
    const std::int32_t number = GetKeyIndex(position);
    if (number == 0) raise(kFaultPosition);
    if (FindNode(key) == 0) return;
    if (!AllowDuplicateKeys) raise(kFaultDuplicate);
    node(number).key = key;
}

// The red-black tree
//
// One routine handles both mirrored cases: `side` is where the node hangs below its parent. Only unlink
// writes the sentinel's parent, and only DeleteFixup reads it.

bool CStringCollection::isRed(std::int32_t number) const {
    return node(number).colour == kRed;
}

bool CStringCollection::isLeft(std::int32_t number) const {
    return node(node(number).parent).left == number;
}

std::int32_t CStringCollection::leftmost(std::int32_t number) const {
    while (node(number).left != 0) number = node(number).left;
    return number;
}

void CStringCollection::replaceChild(std::int32_t parent, std::int32_t child, std::int32_t by) {
    if (parent == 0) {
        root_ = by;
    } else if (node(parent).left == child) {
        node(parent).left = by;
    } else {
        node(parent).right = by;
    }
}

void CStringCollection::link(std::int32_t number, const Place& place) {
    if (place.parent == 0) {
        root_ = number;
    } else {
        node(place.parent).*place.side = number;
    }
}

// Takes a node with at most one child out of the tree; the child, perhaps the sentinel, takes its place.
std::int32_t CStringCollection::unlink(std::int32_t number) {
    const KeyNode& gone = node(number);
    const std::int32_t child = gone.left != 0 ? gone.left : gone.right;
    node(child).parent = gone.parent;
    replaceChild(gone.parent, number, child);
    return child;
}

// The child at `up` takes the place of the node, and the node becomes its child at `down`.
void CStringCollection::rotate(std::int32_t number, Link up, Link down) {
    const std::int32_t child = node(number).*up;
    const std::int32_t inner = node(child).*down;
    node(number).*up = inner;
    if (inner != 0) node(inner).parent = number;
    node(child).parent = node(number).parent;
    replaceChild(node(number).parent, number, child);
    node(child).*down = number;
    node(number).parent = child;
}

void CStringCollection::RotateLeft(std::int32_t number) {
    rotate(number, &KeyNode::right, &KeyNode::left);
}

void CStringCollection::RotateRight(std::int32_t number) {
    rotate(number, &KeyNode::left, &KeyNode::right);
}

void CStringCollection::rotateTo(Link side, std::int32_t number) {
    if (side == &KeyNode::left) {
        RotateLeft(number);
    } else {
        RotateRight(number);
    }
}

void CStringCollection::InsertFixup(std::int32_t number) {
    while (isRed(node(number).parent)) {
        number = mendRedPair(number, isLeft(node(number).parent) ? &KeyNode::left : &KeyNode::right);
    }
    node(root_).colour = kBlack;
}

// Mends a red node with a red parent, which hangs at `side`. Returns the node at which to go on.
std::int32_t CStringCollection::mendRedPair(std::int32_t number, Link side) {
    const std::int32_t grandparent = node(node(number).parent).parent;
    const std::int32_t uncle = node(grandparent).*otherSide(side);
    if (isRed(uncle)) {
        node(node(number).parent).colour = kBlack;
        node(uncle).colour = kBlack;
        node(grandparent).colour = kRed;
        return grandparent;
    }
    if (node(node(number).parent).*side != number) {
        number = node(number).parent;
        rotateTo(side, number);
    }
    node(node(number).parent).colour = kBlack;
    node(grandparent).colour = kRed;
    rotateTo(otherSide(side), grandparent);
    return number;
}

// Mends the tree where a black node is missing above `number`, which may be the sentinel.
void CStringCollection::DeleteFixup(std::int32_t number) {
    while (number != root_ && !isRed(number)) {
        number = mendMissingBlack(number, isLeft(number) ? &KeyNode::left : &KeyNode::right);
    }
    node(number).colour = kBlack;
}

// Mends a node at `side` whose ways down have one black node too few. Returns the node that lacks one now, or
// the root if none does.
std::int32_t CStringCollection::mendMissingBlack(std::int32_t number, Link side) {
    const Link far = otherSide(side);
    const std::int32_t parent = node(number).parent;
    std::int32_t sibling = node(parent).*far;
    if (isRed(sibling)) {
        node(sibling).colour = kBlack;
        node(parent).colour = kRed;
        rotateTo(side, parent);
        sibling = node(parent).*far;
    }
    if (!isRed(node(sibling).left) && !isRed(node(sibling).right)) {
        node(sibling).colour = kRed;
        return parent;
    }
    if (!isRed(node(sibling).*far)) {
        node(node(sibling).*side).colour = kBlack;
        node(sibling).colour = kRed;
        rotateTo(far, sibling);
        sibling = node(parent).*far;
    }
    node(sibling).colour = node(parent).colour;
    node(parent).colour = kBlack;
    node(node(sibling).*far).colour = kBlack;
    rotateTo(side, parent);
    return root_;
}

}  // namespace hl
