#include "grid/text_store.h"

#include <cstring>
#include <functional>

#include "base/fault.h"
#include "grid/room.h"

namespace hl {

namespace {

std::size_t lengthBytes(std::size_t length) {
    std::size_t bytes = 1;
    for (; length >= 0x80; length >>= 7) ++bytes;
    return bytes;
}

}  // namespace

char* TextStore::reserve(std::size_t bytes) {
    if (bytes > kBlockBytes - fill_) {
        const std::size_t blocks = (bytes + kBlockBytes - 1) / kBlockBytes;
        if (blockStart_.size() + blocks > std::size_t{1} << (32 - kBlockBits)) raiseOverflow("TextStore");
        makeRoom(owned_, 1);
        makeRoom(blockStart_, blocks);
        owned_.push_back(std::make_unique_for_overwrite<char[]>(blocks * kBlockBytes));
        for (std::size_t i = 0; i < blocks; ++i) blockStart_.push_back(owned_.back().get() + i * kBlockBytes);
        fill_ = 0;
        // The rest of a long text's last block stays unused.
        if (blocks > 1) {
            fill_ = kBlockBytes;
            return owned_.back().get();
        }
    }
    char* place = blockStart_.back() + fill_;
    fill_ += bytes;
    return place;
}

TextRef TextStore::add(std::string_view text) {
    if (text.empty()) return 0;
    if (blockStart_.empty()) reserve(1);  // No text may have the reference 0.
    const std::size_t bytes = lengthBytes(text.size()) + text.size();
    const std::size_t blocksBefore = blockStart_.size();
    char* place = reserve(bytes);
    const std::size_t block = blockStart_.size() == blocksBefore ? blocksBefore - 1 : blocksBefore;
    const auto ref =
        static_cast<TextRef>(block << kBlockBits | static_cast<std::size_t>(place - blockStart_[block]));
    for (std::size_t rest = text.size();; rest >>= 7) {
        *place++ = static_cast<char>((rest & 0x7F) | (rest >= 0x80 ? 0x80 : 0));
        if (rest < 0x80) break;
    }
    std::memcpy(place, text.data(), text.size());
    used_ += bytes;
    return ref;
}

TextRef TextStore::addShared(std::string_view text) {
    if (text.empty()) return 0;
    if (recent_.empty()) recent_.resize(kRecent);
    TextRef& recent = recent_[std::hash<std::string_view>()(text) % kRecent];
    if (recent == 0 || get(recent) != text) recent = add(text);
    return recent;
}

std::string_view TextStore::get(TextRef ref) const {
    if (ref == 0) return {};
    const char* place = blockStart_[ref >> kBlockBits] + (ref & (kBlockBytes - 1));
    std::size_t length = 0;
    for (unsigned shift = 0;; shift += 7) {
        const auto byte = static_cast<unsigned char>(*place++);
        length |= static_cast<std::size_t>(byte & 0x7F) << shift;
        if (byte < 0x80) break;
    }
    return {place, length};
}

void TextStore::clear() {
    owned_.clear();
    blockStart_.clear();
    recent_.clear();
    fill_ = kBlockBytes;
    used_ = 0;
}

}  // namespace hl
