#include "grid/text_store.h"

#include <gtest/gtest.h>

#include "base/fault.h"

namespace hl {
namespace {

TEST(TextStore, GivesBackEveryTextOfWhateverLengthAndMovesNone) {
    TextStore store;
    const std::string_view first = store.get(store.add("first"));
    std::vector<std::string> texts;
    // Around the steps of the length's own length and of a block, and far beyond one.
    for (const std::size_t length :
         {0, 1, 127, 128, 16383, 16384, 65532, 65533, 65534, 65536, 200'000, 5, 65533, 1})
        texts.emplace_back(length, static_cast<char>('a' + texts.size()));
    texts.emplace_back("a\0b\xFF", 4);
    std::vector<TextRef> refs;
    for (const std::string& text : texts) refs.push_back(store.add(text));
    for (std::size_t i = 0; i < texts.size(); ++i) EXPECT_EQ(store.get(refs[i]), texts[i]) << i;
    EXPECT_EQ(first, "first");
}

TEST(TextStore, StoresOnceWhatManyRowsHaveInCommon) {
    TextStore store;
    std::vector<TextRef> refs;
    for (int i = 0; i < 5000; ++i)
        refs.push_back(store.addShared("/a/folder/" + std::to_string(i / 100) + "/"));
    EXPECT_LT(store.bytesUsed(), 1200U);
    for (int i = 0; i < 5000; ++i)
        EXPECT_EQ(store.get(refs[static_cast<std::size_t>(i)]), "/a/folder/" + std::to_string(i / 100) + "/");
    for (int i = 0; i < 5000; ++i)
        EXPECT_EQ(store.get(store.addShared(std::to_string(i))), std::to_string(i));
    store.clear();
    EXPECT_EQ(store.get(store.addShared("/a/folder/1/")), "/a/folder/1/");
    EXPECT_EQ(store.addShared(""), 0U);
}

TEST(TextStore, RaisesOverflowForMoreThanItCanAddressAndStaysUsable) {
    TextStore store;
    const TextRef kept = store.add("kept");
    const std::string_view tooLong("x", std::size_t{5} << 30);  // Refused before a byte of it is read.
    EXPECT_THROW(store.add(tooLong), Fault);
    EXPECT_EQ(store.get(kept), "kept");
    EXPECT_EQ(store.get(store.add("next")), "next");
}

}  // namespace
}  // namespace hl
