// Strings that are found by key and by position.
//
// A red-black tree over the keys finds an item in logarithmic time. OrderIndex keeps the user's order: that
// of arrival, unless an item is placed before or after another or by its value. Nodes are in one array and
// have numbers, so that growth costs one resize, and an item allocates only its strings. Node 0 is the
// sentinel that stands for every missing child.
//
// One thread only. Looking up allocates nothing. A string_view that a call returns or hands out is valid
// until the next change of the collection.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "base/node_pool.h"

namespace hl {

/// A number is a position, 1 to Count; a text is a key.
using KeyOrPosition = std::variant<std::int32_t, std::string_view>;

struct KeyNode {
    std::int32_t left = 0;
    std::int32_t right = 0;
    std::int32_t parent = 0;
    std::int32_t colour = 0;  ///< 0 black, 1 red.
    std::string key;
    std::string value;
    std::int32_t tag = 0;  ///< For the caller's use.
};

class CStringCollection {
  public:
    struct AddOptions {
        std::optional<KeyOrPosition> before = {};  ///< Has precedence over `after`, and that over `sorted`.
        std::optional<KeyOrPosition> after = {};
        bool raiseOnError = false;
        bool sorted = false;  ///< Places the item by its value, behind equal ones. REQUIRES: all earlier
                              ///< items were placed so too.
        std::int32_t compareMode = 1;  ///< How values are compared for `sorted`; see CompareMode.
    };
    /// The item whose key kept a new item out.
    struct Existing {
        std::int32_t node = 0;
        std::int32_t tag = 0;
        std::string_view value;
    };

    /// If true, Add does not test for an existing key; which one of several equal keys is then found is
    /// undefined.
    bool AllowDuplicateKeys = false;

    /// Drops all items and makes room for `initialSize`, at least 1; both values are kept for later. The
    /// first Add calls it if nobody did.
    void Init(std::int32_t initialSize, float growth);

    /// Adds an item and returns the number of its node. Returns 0 and changes nothing if the key exists
    /// (`existing`, if given, receives the item) or if the item beside which it belongs is missing; with
    /// raiseOnError these are faults 8 and 2. An empty key is never tested, so many items may have one.
    std::int32_t Add(std::string_view value, std::string_view key, std::int32_t tag,
                     const AddOptions& options, Existing* existing = nullptr);
    std::int32_t Add(std::string_view value, std::string_view key, std::int32_t tag = 0);

    /// Removes an item; the others keep their order. Returns the number of the node that held it, or 0 if it
    /// is missing. Another item may move into that node from its own.
    std::int32_t Remove(const KeyOrPosition& key);

    /// Drops all items and frees their memory.
    void Clear();

    std::int32_t Count() const { return count_; }

    /// Raises fault 2 if the item is missing.
    void ChangeValues(const KeyOrPosition& key, std::string_view value, std::int32_t tag);

    /// Returns an empty text if the item is missing, or raises fault 2 with RaiseError.
    std::string_view Item(const KeyOrPosition& key) const;
    /// Raises fault 2 if the item is missing.
    void Item(const KeyOrPosition& key, std::string_view value);

    /// Returns -1 if the item is missing, or raises fault 2 with RaiseError and without `missingIsNoFault`.
    std::int32_t Tag(const KeyOrPosition& key, bool missingIsNoFault = false) const;
    /// Sets the tag. If the item is missing, it does nothing, or raises fault 2 with RaiseError and without
    /// `missingIsNoFault`.
    void Tag(const KeyOrPosition& key, bool missingIsNoFault, std::int32_t tag);

    /// Raises fault 1 for a position out of range.
    std::string_view Key(std::int32_t position) const;
    /// Gives the item at `position` a key that another item has already: that is fault 8, unless
    /// AllowDuplicateKeys is set; then the old key no longer finds the item. A key that no item has changes
    /// nothing. Raises fault 1 for a position out of range.
    void Key(std::int32_t position, std::string_view key);

    /// 0 compares keys byte by byte; any other number ignores case.
    std::int32_t CompareMode() const { return compareMode_; }
    /// REQUIRES: the collection is empty, or its keys are in the same order under both modes.
    void CompareMode(std::int32_t mode) { compareMode_ = mode; }

    /// Tells whether Item and Tag raise a fault for a missing item.
    bool RaiseError() const { return raiseError_; }
    void RaiseError(bool raise) { raiseError_ = raise; }

  private:
    friend class CollectionInspector;  ///< A class of the tests that looks at the tree.

    using Link = std::int32_t KeyNode::*;

    /// Where a key belongs in the tree.
    struct Place {
        std::int32_t parent = 0;
        Link side = &KeyNode::left;
        std::int32_t equal = 0;  ///< The node that has the key, if the search was to stop there.
    };

    KeyNode& node(std::int32_t number) { return nodes_[static_cast<std::size_t>(number)]; }
    const KeyNode& node(std::int32_t number) const { return nodes_[static_cast<std::size_t>(number)]; }
    std::int32_t& order(std::int32_t position) { return OrderIndex[static_cast<std::size_t>(position)]; }
    std::int32_t order(std::int32_t position) const { return OrderIndex[static_cast<std::size_t>(position)]; }

    std::int32_t GetKeyIndex(const KeyOrPosition& key) const;
    std::int32_t GetIndex(std::int32_t number) const;
    std::int32_t FindNode(std::string_view key) const;
    Place placeOf(std::string_view key, bool stopAtEqual) const;

    std::int32_t positionOfNew(std::string_view value, const AddOptions& options) const;
    std::int32_t positionBeside(const KeyOrPosition& key, std::string_view where, bool raise) const;
    std::int32_t sortedPosition(std::string_view value, std::int32_t mode) const;
    std::int32_t newNumber();
    void shiftUp(std::int32_t position);
    void shiftDown(std::int32_t position);

    void link(std::int32_t number, const Place& place);
    std::int32_t unlink(std::int32_t number);
    void takeOver(std::int32_t number, std::int32_t from);
    void drop(std::int32_t number);

    bool isRed(std::int32_t number) const;
    bool isLeft(std::int32_t number) const;
    std::int32_t leftmost(std::int32_t number) const;
    void replaceChild(std::int32_t parent, std::int32_t child, std::int32_t by);
    void rotate(std::int32_t number, Link up, Link down);
    void RotateLeft(std::int32_t number);
    void RotateRight(std::int32_t number);
    void rotateTo(Link side, std::int32_t number);
    void InsertFixup(std::int32_t number);
    std::int32_t mendRedPair(std::int32_t number, Link side);
    void DeleteFixup(std::int32_t number);
    std::int32_t mendMissingBlack(std::int32_t number, Link side);

    std::vector<KeyNode> nodes_;           ///< Empty until the first Add; then it holds the sentinel and the
                                           ///< nodes.
    std::vector<std::int32_t> OrderIndex;  ///< The node numbers of the positions 1 to Count; element 0 is
                                           ///< unused.
    std::optional<CNode> pool_;            ///< Nothing until the first Add.
    std::int32_t root_ = 0;
    std::int32_t count_ = 0;
    std::int32_t compareMode_ = 1;
    std::int32_t initialSize_ = 100;
    float growth_ = 1.5F;
    bool raiseError_ = false;
};

}  // namespace hl
