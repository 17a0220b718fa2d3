#include "scan/collection/collection.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <map>
#include <random>

#include "base/fault.h"
#include "base/text.h"

namespace hl {

// Looks at the tree behind a collection: counts what no use of the collection may ever break.
class CollectionInspector {
  public:
    explicit CollectionInspector(const CStringCollection& collection) : c_(collection) {}

    /// What is wrong with the tree or the order, or empty.
    std::string fault() {
        if (c_.Count() == 0) return c_.root_ == 0 || !c_.pool_ ? "" : "an empty tree has a root";
        if (c_.isRed(0) || c_.isRed(c_.root_)) return "sentinel or root is red";
        if (c_.node(c_.root_).parent != 0) return "the root has a parent";
        blackHeight(c_.root_);
        if (fault_.empty() && inOrder_.size() != static_cast<std::size_t>(c_.Count()))
            fault_ = "the tree lost a node";
        if (fault_.empty()) checkOrder();
        return fault_;
    }
    std::size_t nodeSlots() const { return c_.nodes_.size(); }
    std::int32_t depth() const { return depth(c_.root_); }

  private:
    int blackHeight(std::int32_t number) {
        if (number == 0) return 1;
        const KeyNode& node = c_.node(number);
        for (const std::int32_t child : {node.left, node.right}) {
            if (child == 0) continue;
            if (c_.node(child).parent != number) fault_ = "a child does not know its parent";
            if (c_.isRed(number) && c_.isRed(child)) fault_ = "a red node has a red child";
        }
        const int left = blackHeight(node.left);
        if (!inOrder_.empty() && compare(c_.node(inOrder_.back()).key, node.key) > 0)
            fault_ = "keys out of order";
        inOrder_.push_back(number);
        if (left != blackHeight(node.right)) fault_ = "black heights differ";
        return left + (c_.isRed(number) ? 0 : 1);
    }

    void checkOrder() {
        std::vector<std::int32_t> order(c_.OrderIndex.begin() + 1, c_.OrderIndex.begin() + 1 + c_.Count());
        std::sort(order.begin(), order.end());
        std::sort(inOrder_.begin(), inOrder_.end());
        if (order != inOrder_) fault_ = "positions and tree name different nodes";
        if (c_.order(c_.Count() + 1) != 0) fault_ = "a position behind the end is in use";
    }

    std::int32_t depth(std::int32_t number) const {
        if (number == 0) return 0;
        return 1 + std::max(depth(c_.node(number).left), depth(c_.node(number).right));
    }

    int compare(std::string_view a, std::string_view b) const {
        return c_.CompareMode() != 0 ? compareFolded(a, b) : a.compare(b);
    }

    const CStringCollection& c_;
    std::vector<std::int32_t> inOrder_;
    std::string fault_;
};

namespace {

using Options = CStringCollection::AddOptions;

std::string valuesOf(const CStringCollection& collection) {
    std::string all;
    for (std::int32_t i = 1; i <= collection.Count(); ++i) all.append(collection.Item(i)).append(" ");
    return all;
}

std::string healthOf(const CStringCollection& collection) {
    return CollectionInspector(collection).fault();
}

// The fault that `call` raises, as "number source: description".
template <class F>
std::string faultOf(F call) {
    try {
        call();
    } catch (const Fault& fault) {
        return std::to_string(fault.number()) + " " + fault.source() + ": " + fault.description();
    }
    return "none";
}

CStringCollection threeItems() {
    CStringCollection collection;
    collection.Add("one", "a", 1);
    collection.Add("two", "b", 2);
    collection.Add("three", "c", 3);
    return collection;
}

TEST(StringCollection, FindsByKeyAndByPosition) {
    const CStringCollection collection = threeItems();
    EXPECT_EQ(collection.Count(), 3);
    EXPECT_EQ(collection.Item("b"), "two");
    EXPECT_EQ(collection.Item(3), "three");
    EXPECT_EQ(collection.Tag("a"), 1);
    EXPECT_EQ(collection.Tag(2), 2);
    EXPECT_EQ(collection.Key(1), "a");
    EXPECT_TRUE(collection.ExistKey("c"));
    EXPECT_FALSE(collection.ExistKey("d"));
    EXPECT_FALSE(collection.ExistKey("1"));
}

TEST(StringCollection, TakesNumbersOfEveryWidthForPositions) {
    const CStringCollection collection = threeItems();
    EXPECT_EQ(collection.Item(std::uint8_t{2}), "two");
    EXPECT_EQ(collection.Item(std::int16_t{2}), "two");
    EXPECT_EQ(collection.Item(std::string("b")), "two");
}

TEST(StringCollection, AnswersForAMissingItemWithoutAFaultUnlessAsked) {
    CStringCollection collection = threeItems();
    const KeyOrPosition missing[] = {"x", "", 0, 4, -1, INT32_MIN, INT32_MAX};
    for (const KeyOrPosition& key : missing) {
        EXPECT_EQ(collection.Item(key), "");
        EXPECT_EQ(collection.Tag(key), -1);
        collection.Tag(key, false, 9);
        EXPECT_EQ(collection.Remove(key), 0);
    }
    EXPECT_EQ(valuesOf(collection), "one two three ");
}

TEST(StringCollection, AnswersBeforeTheFirstAddAndAfterClear) {
    CStringCollection collection;
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(collection.Count(), 0);
        EXPECT_FALSE(collection.ExistKey("a"));
        EXPECT_EQ(collection.Item(1), "");
        EXPECT_EQ(collection.Remove("a"), 0);
        EXPECT_NE(collection.Add("value", "a"), 0);
        EXPECT_EQ(collection.Item(1), "value");
        EXPECT_EQ(healthOf(collection), "");
        collection.Clear();
    }
}

TEST(StringCollection, LeavesAnExistingKeyAloneAndTellsItsItem) {
    CStringCollection collection = threeItems();
    CStringCollection::Existing existing;
    EXPECT_EQ(collection.Add("new", "B", 9, Options(), &existing), 0);
    EXPECT_EQ(existing.tag, 2);
    EXPECT_EQ(existing.value, "two");
    EXPECT_EQ(existing.node, 2);
    EXPECT_EQ(valuesOf(collection), "one two three ");
    EXPECT_EQ(collection.Tag("b"), 2);
}

TEST(StringCollection, FoldsCaseUnlessKeysCompareByteByByte) {
    CStringCollection folding;
    EXPECT_NE(folding.Add("1", "Größe"), 0);
    EXPECT_NE(folding.Add("2", "GRÖSSE"), 0);
    EXPECT_EQ(folding.Add("3", "GRÖßE"), 0);
    EXPECT_EQ(folding.Item("grÖße"), "1");

    CStringCollection exact;
    exact.CompareMode(0);
    EXPECT_NE(exact.Add("1", "a"), 0);
    EXPECT_NE(exact.Add("2", "A"), 0);
    EXPECT_EQ(exact.Item("a"), "1");
    EXPECT_EQ(exact.Item("A"), "2");
    EXPECT_EQ(exact.Add("3", "A"), 0);
}

TEST(StringCollection, KeepsManyItemsWithAnEmptyKeyAndAllOthersReachable) {
    CStringCollection collection = threeItems();
    EXPECT_NE(collection.Add("four", ""), 0);
    EXPECT_NE(collection.Add("five", ""), 0);
    EXPECT_EQ(valuesOf(collection), "one two three four five ");
    EXPECT_EQ(healthOf(collection), "");
    for (const char* key : {"a", "b", "c", ""}) EXPECT_TRUE(collection.ExistKey(key)) << key;
    collection.Remove(4);
    collection.Remove(4);
    EXPECT_EQ(valuesOf(collection), "one two three ");
    EXPECT_FALSE(collection.ExistKey(""));
}

TEST(StringCollection, PlacesAnItemBeforeOrAfterAnother) {
    struct Case {
        Options options;
        const char* order;
    };
    const Case cases[] = {
        {{.before = "a"}, "new one two three "},
        {{.before = 3}, "one two new three "},
        {{.after = "a"}, "one new two three "},
        {{.after = 3}, "one two three new "},
        {{.before = 1, .after = 3}, "new one two three "},
        {{.after = 1, .sorted = true}, "one new two three "},
    };
    for (const Case& c : cases) {
        CStringCollection collection = threeItems();
        EXPECT_NE(collection.Add("new", "n", 0, c.options), 0);
        EXPECT_EQ(valuesOf(collection), c.order);
        EXPECT_EQ(healthOf(collection), "");
    }
}

TEST(StringCollection, ChangesNothingIfTheItemToStandBesideIsMissing) {
    CStringCollection collection = threeItems();
    EXPECT_EQ(collection.Add("new", "n", 0, {.before = "x"}), 0);
    EXPECT_EQ(collection.Add("new", "n", 0, {.after = 4}), 0);
    EXPECT_EQ(collection.Count(), 3);
    EXPECT_FALSE(collection.ExistKey("n"));
    EXPECT_EQ(healthOf(collection), "");
}

TEST(StringCollection, SortsByValueAndKeepsEqualOnesInOrderOfArrival) {
    CStringCollection collection;
    const char* values[] = {"m", "b", "z", "M", "a", "q", "B", "m", "zz", "A"};
    std::int32_t tag = 0;
    for (const char* value : values) collection.Add(value, "", ++tag, {.sorted = true});
    EXPECT_EQ(valuesOf(collection), "a A b B m M m q z zz ");
    EXPECT_LT(collection.Tag(5), collection.Tag(7));

    CStringCollection exact;
    for (const char* value : values) exact.Add(value, "", 0, {.sorted = true, .compareMode = 0});
    EXPECT_EQ(valuesOf(exact), "A B M a b m m q z zz ");
}

TEST(StringCollection, RaisesItsFaultsWithNumberSourceAndText) {
    CStringCollection collection = threeItems();
    collection.RaiseError(true);
    const Options raise = {.raiseOnError = true};
    const Options before = {.before = "x", .raiseOnError = true};
    const Options after = {.after = 7, .raiseOnError = true};
    CStringCollection exact = threeItems();
    exact.CompareMode(0);

    EXPECT_EQ(faultOf([&] { collection.Add("", "B", 0, raise); }),
              "8 CStringCollection.Add: Duplicate KeyA: B");
    EXPECT_EQ(faultOf([&] { exact.Add("", "b", 0, raise); }), "8 CStringCollection.Add: Duplicate KeyB: b");
    EXPECT_EQ(faultOf([&] { collection.Add("", "n", 0, before); }),
              "2 CStringCollection.Add: Key not found before: x");
    EXPECT_EQ(faultOf([&] { collection.Add("", "n", 0, after); }),
              "2 CStringCollection.Add: Key not found after: 7");
    EXPECT_EQ(faultOf([&] { collection.ChangeValues("x", "", 0); }), "2 ChangeValues: Key: x");
    EXPECT_EQ(faultOf([&] { collection.Item("x"); }), "2 Get Item: Key: x");
    EXPECT_EQ(faultOf([&] { collection.Item(4, "v"); }), "2 Let Item: Key: 4");
    EXPECT_EQ(faultOf([&] { collection.Tag("x"); }), "2 Get Tag: Key: x");
    EXPECT_EQ(faultOf([&] { collection.Tag("x", false, 5); }), "2 Let Tag: Key: x NewTag: 5");
    EXPECT_EQ(faultOf([&] { collection.Key(0); }), "1 Get Key: Index: 0");
    EXPECT_EQ(faultOf([&] { collection.Key(4, "n"); }), "1 Let Key: Index: 4 NewKey: n");
    EXPECT_EQ(faultOf([&] { collection.Key(1, "b"); }), "8 Let Key: Index: 1 NewKey: b");
    EXPECT_EQ(valuesOf(collection), "one two three ");
    EXPECT_EQ(healthOf(collection), "");
}

TEST(StringCollection, RaisesSomeFaultsWhateverItWasTold) {
    CStringCollection collection = threeItems();
    EXPECT_NE(faultOf([&] { collection.ChangeValues("x", "", 0); }), "none");
    EXPECT_NE(faultOf([&] { collection.Item("x", "v"); }), "none");
    EXPECT_NE(faultOf([&] { collection.Key(9); }), "none");
    collection.RaiseError(true);
    EXPECT_EQ(collection.Tag("x", true), -1);
    EXPECT_EQ(faultOf([&] { collection.Tag("x", true, 5); }), "none");
    EXPECT_EQ(faultOf([&] { collection.Remove("x"); }), "none");
}

TEST(StringCollection, ChangesValuesAndTagsInPlace) {
    CStringCollection collection = threeItems();
    collection.ChangeValues("b", "zwei", 22);
    collection.Item(1, "eins");
    collection.Tag("c", false, 33);
    EXPECT_EQ(valuesOf(collection), "eins zwei three ");
    EXPECT_EQ(collection.Tag(2), 22);
    EXPECT_EQ(collection.Tag(3), 33);
}

TEST(StringCollection, GivesAnItemOnlyAKeyThatIsInUse) {
    CStringCollection collection = threeItems();
    collection.Key(1, "new");
    EXPECT_EQ(collection.Key(1), "a");
    EXPECT_FALSE(collection.ExistKey("new"));
    collection.AllowDuplicateKeys = true;
    collection.Key(1, "b");
    EXPECT_EQ(collection.Key(1), "b");
}

TEST(StringCollection, TakesTextsOutOfItselfWhileItGrows) {
    CStringCollection collection;
    collection.Init(1, 1.5F);
    collection.Add("short", "0");
    for (int i = 1; i < 50; ++i) {
        ASSERT_NE(collection.Add(collection.Item(i), std::to_string(i)), 0);
        ASSERT_EQ(collection.Item(i + 1), "short");
    }
}

TEST(StringCollection, KeepsAllItemsWhenItGrowsWithAnyFactor) {
    for (const float growth : {1.5F, 2.0F, 1.0F, 0.0F, -3.0F}) {
        for (const std::int32_t size : {0, 1, 2, 100}) {
            CStringCollection collection;
            collection.Init(size, growth);
            for (int i = 0; i < 500; ++i)
                ASSERT_NE(collection.Add(std::to_string(i), "T" + std::to_string(i), i), 0);
            ASSERT_EQ(healthOf(collection), "");
            for (int i = 0; i < 500; ++i) {
                ASSERT_EQ(collection.Tag("T" + std::to_string(i)), i);
                ASSERT_EQ(collection.Tag(i + 1), i);
            }
        }
    }
}

TEST(StringCollection, GrowsByItsFactorAndUsesFreedNodesAgain) {
    CStringCollection collection;
    for (int i = 0; i < 100; ++i) collection.Add("", std::to_string(i));
    EXPECT_EQ(CollectionInspector(collection).nodeSlots(), 101U);
    for (int i = 0; i < 1000; ++i) {
        collection.Remove(1);
        collection.Add("", std::to_string(100 + i));
    }
    EXPECT_EQ(CollectionInspector(collection).nodeSlots(), 101U);
    collection.Add("", "one more");
    EXPECT_EQ(CollectionInspector(collection).nodeSlots(), 152U);
    EXPECT_EQ(healthOf(collection), "");
}

TEST(StringCollection, StaysFlatWhenKeysArriveInOrder) {
    CStringCollection collection;
    for (int i = 0; i < 10000; ++i) collection.Add("", std::to_string(100000 + i));
    EXPECT_LE(CollectionInspector(collection).depth(), 2 * 14);  // Twice the binary logarithm of the count.
    EXPECT_EQ(healthOf(collection), "");
}

TEST(StringCollection, ForgetsAllWhenInitIsCalledAgain) {
    CStringCollection collection = threeItems();
    collection.Init(10, 2);
    EXPECT_EQ(collection.Count(), 0);
    EXPECT_FALSE(collection.ExistKey("a"));
    EXPECT_NE(collection.Add("one", "a"), 0);
    EXPECT_EQ(valuesOf(collection), "one ");
}

// A collection and, beside it, a model of what it should hold, driven by the same random calls.
class RandomUse {
  public:
    RandomUse(unsigned seed, std::int32_t compareMode, bool duplicates)
        : random_(seed), duplicates_(duplicates) {
        collection_.Init(4, 1.3F);
        collection_.CompareMode(compareMode);
        collection_.AllowDuplicateKeys = duplicates;
    }

    void step() {
        const int kind = below(10);
        if (kind < 5) {
            add();
        } else if (kind < 7) {
            removeAt(position());
        } else if (kind == 7 && !duplicates_) {
            removeKey(newKey());
        } else if (kind == 8 && !model_.empty()) {
            change(position());
        } else if (below(200) == 0) {
            collection_.Clear();
            model_.clear();
        }
    }

    void check() {
        ASSERT_EQ(healthOf(collection_), "");
        ASSERT_EQ(collection_.Count(), static_cast<std::int32_t>(model_.size()));
        std::map<std::string, const Entry*> byKey;
        for (std::size_t i = 0; i < model_.size(); ++i) {
            const auto at = static_cast<std::int32_t>(i + 1);
            ASSERT_EQ(collection_.Key(at), model_[i].key);
            ASSERT_EQ(collection_.Item(at), model_[i].value);
            ASSERT_EQ(collection_.Tag(at), model_[i].tag);
            byKey[folded(model_[i].key)] = &model_[i];
        }
        for (const auto& [key, entry] : byKey) {
            ASSERT_TRUE(collection_.ExistKey(key));
            if (duplicates_ || key.empty()) continue;  // Which of them is open.
            ASSERT_EQ(collection_.Tag(entry->key), entry->tag);
        }
    }

  private:
    struct Entry {
        std::string key;
        std::string value;
        std::int32_t tag;
    };

    int below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }
    std::string folded(std::string_view key) const {
        return collection_.CompareMode() != 0 ? lowerCase(key) : std::string(key);
    }
    std::string newKey() {
        static constexpr std::string_view kLetters[] = {"a", "A", "b", "Ö", "ö", "ж", "Ж", "\xFF", "z"};
        std::string key;
        for (int length = below(5); length > 0; --length) key += kLetters[below(std::size(kLetters))];
        return key;
    }
    std::int32_t position() { return below(static_cast<int>(model_.size()) + 2); }
    bool holds(std::int32_t at) const { return at >= 1 && at <= static_cast<std::int32_t>(model_.size()); }
    auto find(std::string_view key) {
        return std::find_if(model_.begin(), model_.end(),
                            [&](const Entry& e) { return folded(e.key) == folded(key); });
    }

    void add() {
        const Entry entry = {newKey(), std::to_string(below(1000)), below(1000)};
        Options options;
        std::size_t at = model_.size();
        const std::int32_t beside = position();
        const int kind = below(4);
        if (kind == 0) options.before = beside;
        if (kind == 1) options.after = beside;
        const bool free = entry.key.empty() || duplicates_ || find(entry.key) == model_.end();
        const bool placed = kind > 1 || holds(beside);
        if (kind < 2 && placed) at = static_cast<std::size_t>(beside - (kind == 0 ? 1 : 0));
        const std::int32_t node = collection_.Add(entry.value, entry.key, entry.tag, options);
        ASSERT_EQ(node != 0, free && placed);
        if (node != 0) model_.insert(model_.begin() + static_cast<std::ptrdiff_t>(at), entry);
    }
    void removeAt(std::int32_t at) {
        ASSERT_EQ(collection_.Remove(at) != 0, holds(at));
        if (holds(at)) model_.erase(model_.begin() + at - 1);
    }
    void removeKey(const std::string& key) {
        if (key.empty()) return;  // Which of them is open.
        const auto entry = find(key);
        ASSERT_EQ(collection_.Remove(key) != 0, entry != model_.end());
        if (entry != model_.end()) model_.erase(entry);
    }
    void change(std::int32_t at) {
        if (!holds(at)) return;
        Entry& entry = model_[static_cast<std::size_t>(at - 1)];
        entry.value = std::to_string(below(1000));
        entry.tag = below(1000);
        collection_.ChangeValues(at, entry.value, entry.tag);
    }

    std::mt19937 random_;
    bool duplicates_;
    CStringCollection collection_;
    std::vector<Entry> model_;
};

TEST(StringCollection, BehavesLikeAListWithUniqueKeysInEveryOrderOfCalls) {
    for (unsigned seed = 1; seed <= 40; ++seed) {
        RandomUse run(seed, static_cast<std::int32_t>(seed % 2), seed % 4 == 3);
        for (int i = 0; i < 1500; ++i) {
            run.step();
            if (i % 7 == 0) run.check();
            ASSERT_FALSE(testing::Test::HasFatalFailure()) << "seed " << seed << ", step " << i;
        }
    }
}

TEST(NodePool, GivesTheNumbersInOrderAndTheFreedOnesFirst) {
    CNode pool;
    pool.Init(3, 1.5F);
    for (std::int32_t expected = 1; expected <= 3; ++expected) EXPECT_EQ(pool.Alloc(), expected);
    pool.Free(2);
    pool.Free(1);
    EXPECT_EQ(pool.Alloc(), 1);
    EXPECT_EQ(pool.Alloc(), 2);
    for (std::int32_t expected = 4; expected <= 100; ++expected) EXPECT_EQ(pool.Alloc(), expected);
    pool.Init(3, 1.5F);
    EXPECT_EQ(pool.Alloc(), 1);
}

TEST(NodePool, GrowsByAFactorWithinBounds) {
    EXPECT_EQ(grownSize(100, 1.5F, 101), 150);
    EXPECT_EQ(grownSize(150, 1.5F, 151), 225);
    EXPECT_EQ(grownSize(1, 1.5F, 2), 2);
    EXPECT_EQ(grownSize(100, 0.5F, 101), 101);
    EXPECT_EQ(grownSize(INT32_MAX - 1, 1.5F, INT32_MAX), INT32_MAX);
    EXPECT_EQ(grownSize(2'000'000'000, 1.5F, 2'000'000'001), INT32_MAX);
    EXPECT_EQ(grownSize(100, std::numeric_limits<float>::quiet_NaN(), 101), 101);
}

}  // namespace
}  // namespace hl
