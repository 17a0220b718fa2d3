// The order of pieces; values; strings.
#include "base/json_reader.h"

#include <algorithm>
#include <charconv>

#include "base/text.h"

namespace hl {

namespace {

constexpr char32_t kFirstHigh = 0xD800, kFirstLow = 0xDC00, kBehindLow = 0xE000;

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

template <class Number>
std::optional<Number> wholeOf(std::string_view text) {
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return number;
}

}  // namespace

// --- the order of pieces

JsonReader::Piece JsonReader::next() {
    if (failed_) return Piece::kFault;
    skipBlanks();
    if (want_ == Want::kNothing) return at_ == text_.size() ? Piece::kEnd : fault();
    if (at_ == text_.size()) return fault();
    const char c = text_[at_];
    const bool closes = c == ']' || c == '}';
    if (want_ == Want::kCommaOrEnd) {
        if (closes) return end(c);
        if (c != ',') return fault();
        ++at_;
        skipBlanks();
        want_ = open_.back() ? Want::kKey : Want::kValue;
        if (at_ == text_.size()) return fault();
    } else if (want_ == Want::kFirstOrEnd) {
        if (closes) return end(c);
        want_ = open_.back() ? Want::kKey : Want::kValue;
    }
    return want_ == Want::kKey ? key() : value(text_[at_]);
}

JsonReader::Piece JsonReader::fault() {
    failed_ = true;
    return Piece::kFault;
}

JsonReader::Piece JsonReader::begin(bool isObject) {
    ++at_;
    open_.push_back(isObject);
    want_ = Want::kFirstOrEnd;
    return isObject ? Piece::kObject : Piece::kArray;
}

JsonReader::Piece JsonReader::end(char closing) {
    if (open_.back() != (closing == '}')) return fault();
    ++at_;
    open_.pop_back();
    afterValue();
    return closing == '}' ? Piece::kObjectEnd : Piece::kArrayEnd;
}

void JsonReader::afterValue() {
    want_ = open_.empty() ? Want::kNothing : Want::kCommaOrEnd;
}

void JsonReader::skipBlanks() {
    while (at_ < text_.size() && isBlank(text_[at_])) ++at_;
}

std::optional<std::string_view> JsonReader::rawValue() {
    skipBlanks();
    const std::size_t from = at_;
    if (!skipRestOf(next())) return std::nullopt;
    return text_.substr(from, at_ - from);
}

bool JsonReader::skipRestOf(Piece first) {
    const std::size_t depth = open_.size();
    if (first == Piece::kFault) return false;
    if (first != Piece::kObject && first != Piece::kArray) return true;
    while (open_.size() >= depth)
        if (next() == Piece::kFault) return false;
    return true;
}

// --- values

JsonReader::Piece JsonReader::value(char first) {
    switch (first) {
        case '{':
            return begin(true);
        case '[':
            return begin(false);
        case '"':
            if (!readString()) return fault();
            afterValue();
            return Piece::kString;
        case 't':
            return word("true", Piece::kTrue);
        case 'f':
            return word("false", Piece::kFalse);
        case 'n':
            return word("null", Piece::kNull);
        default:
            return number();
    }
}

JsonReader::Piece JsonReader::key() {
    if (text_[at_] != '"' || !readString()) return fault();
    skipBlanks();
    if (at_ == text_.size() || text_[at_] != ':') return fault();
    ++at_;
    want_ = Want::kValue;
    return Piece::kKey;
}

JsonReader::Piece JsonReader::word(std::string_view expected, Piece piece) {
    if (!text_.substr(at_).starts_with(expected)) return fault();
    at_ += expected.size();
    afterValue();
    return piece;
}

JsonReader::Piece JsonReader::number() {
    const auto isPart = [](char c) {
        return isDigit(c) || c == '.' || c == 'e' || c == 'E' || c == '+' || c == '-';
    };
    const std::size_t from = at_;
    while (at_ < text_.size() && isPart(text_[at_])) ++at_;
    number_ = text_.substr(from, at_ - from);
    double any = 0;
    const auto [end, error] = std::from_chars(number_.data(), number_.data() + number_.size(), any);
    if (number_.empty() || end != number_.data() + number_.size() || error == std::errc::invalid_argument)
        return fault();
    afterValue();
    return Piece::kNumber;
}

std::optional<std::int64_t> JsonReader::whole() const {
    return wholeOf<std::int64_t>(number_);
}

std::optional<std::uint64_t> JsonReader::unsignedWhole() const {
    return wholeOf<std::uint64_t>(number_);
}

// --- strings

bool JsonReader::readString() {
    string_.clear();
    ++at_;
    while (at_ < text_.size()) {
        const auto* const from = text_.data() + at_;
        const auto* const stop = std::find_if(from, text_.data() + text_.size(), [](char c) {
            return c == '"' || c == '\\' || static_cast<unsigned char>(c) < 0x20;
        });
        string_.append(from, stop);
        at_ = static_cast<std::size_t>(stop - text_.data());
        if (at_ == text_.size()) return false;
        const char c = text_[at_++];
        if (c == '"') return true;
        if (c != '\\' || !readEscape()) return false;
    }
    return false;
}

bool JsonReader::readEscape() {
    constexpr std::string_view kNames = "\"\\/bfnrt", kMeant = "\"\\/\b\f\n\r\t";
    if (at_ == text_.size()) return false;
    const char c = text_[at_++];
    if (const std::size_t found = kNames.find(c); found != std::string_view::npos) {
        string_ += kMeant[found];
        return true;
    }
    if (c != 'u') return false;
    const auto first = fourDigits();
    if (!first) return false;
    if (*first < kFirstHigh || *first >= kBehindLow) return appendUtf8(string_, *first), true;
    if (*first >= kFirstLow || !text_.substr(at_).starts_with("\\u")) return false;
    at_ += 2;
    const auto second = fourDigits();
    if (!second || *second < kFirstLow || *second >= kBehindLow) return false;
    appendUtf8(string_, 0x10000 + ((*first - kFirstHigh) << 10) + (*second - kFirstLow));
    return true;
}

std::optional<char32_t> JsonReader::fourDigits() {
    if (text_.size() - at_ < 4) return std::nullopt;
    std::uint32_t number = 0;
    const char* const from = text_.data() + at_;
    const auto [end, error] = std::from_chars(from, from + 4, number, 16);
    if (error != std::errc() || end != from + 4) return std::nullopt;
    at_ += 4;
    return char32_t{number};
}

}  // namespace hl
