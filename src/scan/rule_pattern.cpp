#include "scan/rule_pattern.h"

#include <cstring>
#include <utility>

namespace hl {

void RulePattern::addOne(char byte, std::shared_ptr<const ByteSet> set) {
    Piece& piece = pieces_.back();
    if (set != nullptr) {
        piece.sets.resize(piece.bytes.size());
        plain_ = false;
    }
    last_ = set != nullptr ? -1 : static_cast<unsigned char>(byte);
    if (length_ == 0 && stars_ == 0) first_ = last_;
    if (set != nullptr || !piece.sets.empty()) piece.sets.push_back(std::move(set));
    piece.bytes.push_back(byte);
    ++length_;
}

void RulePattern::addByte(char byte) {
    addOne(byte, nullptr);
}

void RulePattern::addAny() {
    addSet(ByteSet().set());
}

void RulePattern::addSet(const ByteSet& set) {
    addOne('\0', std::make_shared<ByteSet>(set));
}

// Several stars in a row are one.
void RulePattern::addStar() {
    if (stars_ > 0 && pieces_.back().bytes.empty()) return;
    ++stars_;
    last_ = -1;
    pieces_.emplace_back();
}

const std::string* RulePattern::ending() const {
    return stars_ == 1 && plain_ && pieces_.front().bytes.empty() ? &pieces_.back().bytes : nullptr;
}

bool RulePattern::Piece::fits(const char* at) const {
    if (sets.empty())
        return bytes.empty() || (*at == bytes.front() && std::memcmp(at, bytes.data(), bytes.size()) == 0);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const bool fit =
            sets[i] == nullptr ? at[i] == bytes[i] : sets[i]->test(static_cast<unsigned char>(at[i]));
        if (!fit) return false;
    }
    return true;
}

const char* RulePattern::Piece::findIn(const char* at, const char* end) const {
    if (sets.empty()) {
        const std::size_t found = std::string_view(at, end).find(bytes);
        return found == std::string_view::npos ? nullptr : at + found + bytes.size();
    }
    const auto size = static_cast<std::ptrdiff_t>(bytes.size());
    for (; end - at >= size; ++at)
        if (fits(at)) return at + size;
    return nullptr;
}

bool RulePattern::matches(std::string_view name) const {
    const auto isNot = [](int wanted, char byte) {
        return wanted >= 0 && wanted != static_cast<unsigned char>(byte);
    };
    if (name.size() < length_) return false;
    if (!name.empty() && (isNot(first_, name.front()) || isNot(last_, name.back()))) return false;
    const std::string& first = pieces_.front().bytes;
    if (stars_ == 0) return name.size() == first.size() && pieces_.front().fits(name.data());
    if (!pieces_.front().fits(name.data())) return false;
    const Piece& last = pieces_.back();
    const char* at = name.data() + first.size();
    const char* const end = name.data() + name.size() - last.bytes.size();
    if (!last.fits(end)) return false;
    for (std::size_t i = 1; i + 1 < pieces_.size() && at != nullptr; ++i) at = pieces_[i].findIn(at, end);
    return at != nullptr;
}

}  // namespace hl
