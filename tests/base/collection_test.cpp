#include "base/collection.h"

#include "base/fault.h"
#include "base/text.h"

namespace hl {

// Checks what must always hold within the collection, which no caller can see.
class CollectionInspector {
  public:
    static bool isRedBlackTree(const CStringCollection& c) {
        return c.nodes_.empty() || (!c.isRed(0) && !c.isRed(c.root_) && blackHeight(c, c.root_) > 0);
    }

  private:
    static int blackHeight(const CStringCollection& c, std::int32_t number) {
        constexpr int kBroken = -1000;
        if (number == 0) return 1;
        const KeyNode& node = c.node(number);
        for (const std::int32_t child : {node.left, node.right})
            if (child != 0 && (c.node(child).parent != number || (c.isRed(number) && c.isRed(child))))
                return kBroken;
        const int left = blackHeight(c, node.left);
        return left == blackHeight(c, node.right) ? left + (c.isRed(number) ? 0 : 1) : kBroken;
    }
};

namespace {

using Options = CStringCollection::AddOptions;

std::string valuesOf(const CStringCollection& collection) {
    std::string all;
    for (std::int32_t i = 1; i <= collection.Count(); ++i) all.append(collection.Item(i)).append(" ");
    return all;
}

// Returns the fault that `call` raises, as "number source: description".
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
    CStringCollection used = threeItems(), cleared = threeItems(), begunAgain = threeItems();
    cleared.Clear();
    begunAgain.Init(10, 2);
    const KeyOrPosition missing[] = {"x", "", 0, 4, -1, INT32_MAX};
    for (CStringCollection* collection : {&used, &cleared, &begunAgain}) {
        EXPECT_EQ(collection->Count(), collection == &used ? 3 : 0);
        for (const KeyOrPosition& key : missing) {
            EXPECT_EQ(collection->Item(key), "");
            EXPECT_EQ(collection->Tag(key), -1);
            collection->Tag(key, false, 9);
            EXPECT_EQ(collection->Remove(key), 0);
        }
        EXPECT_NE(collection->Add("new", "n"), 0);
        EXPECT_EQ(valuesOf(*collection), collection == &used ? "one two three new " : "new ");
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
    const std::pair<std::function<void()>, const char*> cases[] = {
        {[&] { quiet.Add("", "B", 0, raise); }, "8 CStringCollection.Add: Duplicate KeyA: B"},
        {[&] { exact.Add("", "b", 0, raise); }, "8 CStringCollection.Add: Duplicate KeyB: b"},
        {[&] { quiet.Add("", "n", 0, before); }, "2 CStringCollection.Add: Key not found before: x"},
        {[&] { quiet.ChangeValues("x", "", 0); }, "2 ChangeValues: Key: x"},
        {[&] { strict.Tag("x"); }, "2 Get Tag: Key: x"},
        {[&] { quiet.Key(1, "b"); }, "8 Let Key: Index: 1 NewKey: b"}};
    for (const auto& [call, fault] : cases) EXPECT_EQ(faultOf(call), fault);
    EXPECT_EQ(valuesOf(quiet), "one two three ");
}

TEST(StringCollection, ChangesAnItemInPlaceAndGivesItOnlyAKeyThatIsInUse) {
    CStringCollection collection = threeItems();
    CStringCollection::Existing existing;
    EXPECT_EQ(collection.Add("new", "B", 9, Options(), &existing), 0);
    EXPECT_TRUE(existing.value == "two" && existing.tag == 2 && existing.node == 2);
    EXPECT_NE(collection.Add("gone", "n", 0, {.before = "a", .after = 3}), 0);
    EXPECT_EQ(collection.Remove(1), 4) << "the first of the two places counts";
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

std::string folded(std::string_view key, unsigned mode) {
    return mode != 0 ? lowerCase(key) : std::string(key);
}

// Makes the same random calls to a collection and to a plain list of what it should hold.
void useAtRandom(unsigned seed) {
    std::mt19937 random(seed);
    const unsigned mode = seed % 2;
    CStringCollection collection;
    collection.Init(4, 1.3F);
    collection.CompareMode(static_cast<std::int32_t>(mode));
    std::vector<std::pair<std::string, std::string>> model;  // The keys and values.
    for (int step = 0; step < 1500; ++step) {
        static constexpr std::string_view kLetters[] = {"a", "A", "b", "Ö", "ö", "ж", "Ж", "\xFF", "z"};
        std::string key;
        for (auto length = random() % 5; length > 0; --length)
            key += kLetters[random() % std::size(kLetters)];
        const auto found = std::find_if(model.begin(), model.end(), [&](const auto& entry) {
            return folded(entry.first, mode) == folded(key, mode);
        });
        const auto at = static_cast<std::int32_t>(random() % (model.size() + 2));
        const bool holds = at >= 1 && static_cast<std::size_t>(at) <= model.size();
        const auto kind = random() % 7;
        const bool free = key.empty() || found == model.end();
        const std::string value = std::to_string(step);
        if (kind < 2) {
            const Options options = kind == 0 ? Options{.before = at} : Options{.after = at};
            ASSERT_EQ(collection.Add(value, key, 0, options) != 0, free && holds);
            if (free && holds) model.insert(model.begin() + at - (kind == 0 ? 1 : 0), {key, value});
        } else if (kind < 4) {
            ASSERT_EQ(collection.Add(value, key) != 0, free);
            if (free) model.emplace_back(key, value);
        } else if (kind < 6) {
            ASSERT_EQ(collection.Remove(at) != 0, holds);
            if (holds) model.erase(model.begin() + at - 1);
        } else if (!key.empty()) {
            ASSERT_EQ(collection.Remove(key) != 0, found != model.end());
            if (found != model.end()) model.erase(found);
        }
        ASSERT_TRUE(CollectionInspector::isRedBlackTree(collection));
        ASSERT_EQ(collection.Count(), static_cast<std::int32_t>(model.size()));
        for (std::int32_t position = 1; position <= collection.Count(); ++position) {
            const auto& [heldKey, heldValue] = model[static_cast<std::size_t>(position - 1)];
            ASSERT_EQ(collection.Key(position), heldKey);
            ASSERT_EQ(collection.Item(position), heldValue);
            ASSERT_TRUE(heldKey.empty() || collection.Item(folded(heldKey, mode)) == heldValue);
        }
    }
}

TEST(StringCollection, BehavesLikeAListWithUniqueKeysInEveryOrderOfCalls) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        useAtRandom(seed);
        ASSERT_FALSE(testing::Test::HasFatalFailure()) << "seed " << seed;
    }
}

}  // namespace
}  // namespace hl
