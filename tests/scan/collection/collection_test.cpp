#include "scan/collection/collection.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <limits>
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
        if (c_.nodes_.empty()) return fault_;
        if (c_.isRed(0) || c_.isRed(c_.root_)) return "sentinel or root is red";
        blackHeight(c_.root_);
        std::vector<std::int32_t> order(c_.OrderIndex.begin() + 1, c_.OrderIndex.begin() + 1 + c_.Count());
        std::sort(order.begin(), order.end());
        std::sort(inOrder_.begin(), inOrder_.end());
        return order == inOrder_ ? fault_ : "positions and tree name different nodes";
    }
    std::size_t nodeSlots() const { return c_.nodes_.size(); }

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
        inOrder_.push_back(number);
        if (left != blackHeight(node.right)) fault_ = "black heights differ";
        return left + (c_.isRed(number) ? 0 : 1);
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
std::string faultOf(const std::function<void()>& call) {
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

TEST(StringCollection, AnswersForAMissingItemWithoutAFaultUnlessAsked) {
    CStringCollection used = threeItems(), fresh, cleared = threeItems(), begunAgain = threeItems();
    cleared.Clear();
    begunAgain.Init(10, 2);
    const KeyOrPosition missing[] = {"x", "", 0, 4, -1, INT32_MIN, INT32_MAX};
    for (CStringCollection* collection : {&used, &fresh, &cleared, &begunAgain}) {
        EXPECT_EQ(collection->Count(), collection == &used ? 3 : 0);
        for (const KeyOrPosition& key : missing) {
            EXPECT_EQ(collection->Item(key), "");
            EXPECT_EQ(collection->Tag(key), -1);
            collection->Tag(key, false, 9);
            EXPECT_EQ(collection->Remove(key), 0);
        }
        EXPECT_NE(collection->Add("new", "n"), 0);
        EXPECT_EQ(valuesOf(*collection), collection == &used ? "one two three new " : "new ");
        EXPECT_EQ(healthOf(*collection), "");
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
}

TEST(StringCollection, PlacesAnItemBesideAnotherAndNowhereIfThatIsMissing) {
    const std::pair<Options, const char*> cases[] = {
        {{.before = "a"}, "new one two three "},
        {{.after = "a"}, "one new two three "},
        {{.before = 1, .after = 3}, "new one two three "},
        {{.after = 1, .sorted = true}, "one new two three "},
        {{.before = "x"}, "one two three "},
        {{.after = 4}, "one two three "},
    };
    for (const auto& [options, order] : cases) {
        CStringCollection collection = threeItems();
        collection.Add("new", "n", 0, options);
        EXPECT_EQ(valuesOf(collection), order);
        EXPECT_EQ(healthOf(collection), "");
    }
}

TEST(StringCollection, SortsByValueAndKeepsEqualOnesInOrderOfArrival) {
    CStringCollection folding, exact;
    for (const char* value : {"m", "b", "z", "M", "a", "q", "B", "m", "zz", "A"}) {
        folding.Add(value, "", 0, {.sorted = true});
        exact.Add(value, "", 0, {.sorted = true, .compareMode = 0});
    }
    EXPECT_EQ(valuesOf(folding), "a A b B m M m q z zz ");
    EXPECT_EQ(valuesOf(exact), "A B M a b m m q z zz ");
}

TEST(StringCollection, RaisesItsFaultsWithNumberSourceAndText) {
    CStringCollection strict = threeItems(), exact = threeItems(), quiet = threeItems();
    strict.RaiseError(true);
    exact.CompareMode(0);
    const Options raise = {.raiseOnError = true};
    const Options before = {.before = "x", .raiseOnError = true};
    const Options after = {.after = 7, .raiseOnError = true};
    const std::pair<std::function<void()>, const char*> cases[] = {
        {[&] { quiet.Add("", "B", 0, raise); }, "8 CStringCollection.Add: Duplicate KeyA: B"},
        {[&] { exact.Add("", "b", 0, raise); }, "8 CStringCollection.Add: Duplicate KeyB: b"},
        {[&] { quiet.Add("", "n", 0, before); }, "2 CStringCollection.Add: Key not found before: x"},
        {[&] { quiet.Add("", "n", 0, after); }, "2 CStringCollection.Add: Key not found after: 7"},
        {[&] { quiet.ChangeValues("x", "", 0); }, "2 ChangeValues: Key: x"},
        {[&] { strict.Item("x"); }, "2 Get Item: Key: x"},
        {[&] { quiet.Item(4, "v"); }, "2 Let Item: Key: 4"},
        {[&] { strict.Tag("x"); }, "2 Get Tag: Key: x"},
        {[&] { strict.Tag("x", true); }, "none"},
        {[&] { strict.Tag("x", false, 5); }, "2 Let Tag: Key: x NewTag: 5"},
        {[&] { strict.Tag("x", true, 5); }, "none"},
        {[&] { strict.Remove("x"); }, "none"},
        {[&] { quiet.Key(0); }, "1 Get Key: Index: 0"},
        {[&] { quiet.Key(4, "n"); }, "1 Let Key: Index: 4 NewKey: n"},
        {[&] { quiet.Key(1, "b"); }, "8 Let Key: Index: 1 NewKey: b"},
    };
    for (const auto& [call, fault] : cases) EXPECT_EQ(faultOf(call), fault);
    EXPECT_EQ(valuesOf(quiet), "one two three ");
}

TEST(StringCollection, ChangesAnItemInPlaceAndGivesItOnlyAKeyThatIsInUse) {
    CStringCollection collection = threeItems();
    collection.ChangeValues("b", "zwei", 22);
    collection.Item(1, "eins");
    collection.Tag("c", false, 33);
    EXPECT_EQ(valuesOf(collection), "eins zwei three ");
    EXPECT_EQ(collection.Tag(2) + collection.Tag(3), 22 + 33);
    collection.Key(1, "new");
    EXPECT_EQ(collection.Key(1), "a");
    collection.AllowDuplicateKeys = true;
    collection.Key(1, "b");
    EXPECT_EQ(collection.Key(1), "b");
}

TEST(StringCollection, TakesTextsOutOfItselfWhileItGrowsWithAnyFactor) {
    for (const float growth : {1.5F, 1.0F, -3.0F}) {
        CStringCollection collection;
        collection.Init(0, growth);
        collection.Add("short", "0");
        for (int i = 1; i < 300; ++i) ASSERT_NE(collection.Add(collection.Item(i), std::to_string(i), i), 0);
        for (int i = 1; i < 300; ++i) ASSERT_EQ(collection.Tag(std::to_string(i)), i);
        EXPECT_EQ(collection.Item(300), "short");
    }
}

TEST(StringCollection, UsesFreedNodesAgain) {
    CStringCollection collection;
    for (int i = 0; i < 1100; ++i) {
        collection.Add("", std::to_string(i));
        if (i >= 99) collection.Remove(1);
    }
    EXPECT_EQ(CollectionInspector(collection).nodeSlots(), 101U);
}

// A collection and, beside it, a model of what it should hold, driven by the same random calls.
class RandomUse {
  public:
    RandomUse(unsigned seed, std::int32_t compareMode) : random_(seed) {
        collection_.Init(4, 1.3F);
        collection_.CompareMode(compareMode);
    }

    void step() {
        const int kind = below(10);
        if (kind < 5) add();
        if (kind == 5 || kind == 6) remove(position());
        if (kind == 7) remove(newKey());
    }

    void check() {
        ASSERT_EQ(healthOf(collection_), "");
        ASSERT_EQ(collection_.Count(), static_cast<std::int32_t>(model_.size()));
        for (std::int32_t at = 1; at <= collection_.Count(); ++at) {
            const Entry& entry = model_[static_cast<std::size_t>(at - 1)];
            ASSERT_EQ(collection_.Key(at), entry.key);
            ASSERT_EQ(collection_.Item(at), entry.value);
            ASSERT_EQ(collection_.Tag(at), entry.tag);
            ASSERT_TRUE(collection_.ExistKey(folded(entry.key)));
            if (entry.key.empty()) continue;  // Which of them is open.
            ASSERT_EQ(collection_.Tag(entry.key), entry.tag);
        }
    }

  private:
    struct Entry {
        std::string key, value;
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
        const std::int32_t beside = position();
        const int kind = below(4);
        Options options;
        if (kind == 0) options.before = beside;
        if (kind == 1) options.after = beside;
        const bool free = entry.key.empty() || find(entry.key) == model_.end();
        const bool fits = free && (kind > 1 || holds(beside));
        ASSERT_EQ(collection_.Add(entry.value, entry.key, entry.tag, options) != 0, fits);
        if (!fits) return;
        model_.insert(kind > 1 ? model_.end() : model_.begin() + beside - (kind == 0 ? 1 : 0), entry);
    }
    void remove(std::int32_t at) {
        ASSERT_EQ(collection_.Remove(at) != 0, holds(at));
        if (holds(at)) model_.erase(model_.begin() + at - 1);
    }
    void remove(const std::string& key) {
        if (key.empty()) return;  // Which of them is open.
        const auto entry = find(key);
        ASSERT_EQ(collection_.Remove(key) != 0, entry != model_.end());
        if (entry != model_.end()) model_.erase(entry);
    }
    std::mt19937 random_;
    CStringCollection collection_;
    std::vector<Entry> model_;
};

TEST(StringCollection, BehavesLikeAListWithUniqueKeysInEveryOrderOfCalls) {
    for (unsigned seed = 1; seed <= 40; ++seed) {
        RandomUse run(seed, static_cast<std::int32_t>(seed % 2));
        for (int i = 0; i < 1500; ++i) {
            run.step();
            if (i % 7 == 0) run.check();
            ASSERT_FALSE(testing::Test::HasFatalFailure()) << "seed " << seed << ", step " << i;
        }
    }
}

TEST(NodePool, GrowsByAFactorWithinBounds) {
    EXPECT_EQ(grownSize(150, 1.5F, 151), 225);
    EXPECT_EQ(grownSize(100, 0.5F, 101), 101);
    EXPECT_EQ(grownSize(2'000'000'000, 1.5F, 2'000'000'001), INT32_MAX);
    EXPECT_EQ(grownSize(100, std::numeric_limits<float>::quiet_NaN(), 101), 101);
}

}  // namespace
}  // namespace hl
