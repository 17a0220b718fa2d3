#include "scan/rules.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

namespace hl {

namespace {

constexpr std::size_t kWordBytes = sizeof(std::uint64_t);

std::uint64_t load(const char* from, std::size_t bytes) {
    std::uint64_t part = 0;
    std::memcpy(&part, from, bytes);
    return part;
}

std::uint64_t mixed(std::uint64_t hash, std::uint64_t part) {
    hash = (hash ^ part) * 0x9e37'79b9'7f4a'7c15;
    return hash ^ hash >> 32;
}

// Mixes eight bytes at a time; the last eight may overlap those before them.
std::uint64_t hashOf(std::string_view text) {
    const char* const data = text.data();
    const std::size_t size = text.size();
    if (size < kWordBytes) {
        if (size >= 4) return mixed(size, load(data, 4) << 32 | load(data + size - 4, 4));
        return size == 0 ? 0
                         : mixed(size, load(data, 1) << 16 | load(data + size / 2, 1) << 8 |
                                           load(data + size - 1, 1));
    }
    std::uint64_t hash = mixed(size, load(data, kWordBytes));
    for (std::size_t at = kWordBytes; at + kWordBytes < size; at += kWordBytes)
        hash = mixed(hash, load(data + at, kWordBytes));
    return mixed(hash, load(data + size - kWordBytes, kWordBytes));
}

// Returns the last bytes of a name, the last one in the highest place.
std::uint64_t lastBytes(std::string_view name) {
    if (name.size() >= kWordBytes) return load(name.data() + name.size() - kWordBytes, kWordBytes);
    std::uint64_t word = 0;
    for (const char byte : name) word = word >> 8 | std::uint64_t{static_cast<unsigned char>(byte)} << 56;
    return word;
}

/// What stands behind the last dot of a name, if the dot is one of the last eight bytes.
struct ShortEnding {
    std::uint64_t bytes = 0;
    std::size_t size = kWordBytes;  ///< kWordBytes if there is none; then `bytes` are those of the name.
};

// Finds the dot without a branch, which nobody could foretell. The usual way to find a byte in a word may
// also tell of one that differs in its lowest bit; that would be "/", which no name has.
ShortEnding shortEnding(std::string_view name) {
    constexpr std::uint64_t kOnes = 0x0101'0101'0101'0101, kTops = 0x8080'8080'8080'8080;
    const std::uint64_t word = lastBytes(name);
    const std::uint64_t other = word ^ (kOnes * '.');
    const std::uint64_t dots = (other - kOnes) & ~other & kTops;
    const auto size = static_cast<std::size_t>(std::countl_zero(dots)) / 8;
    return {size == 0 ? 0 : word >> (64 - 8 * size), size};
}

}  // namespace

// Open addressing. Hardly any text that is looked for is there: a bit for the highest bits of each hash that
// is there, in a field of which few are set, answers for nearly all others.
template <class Value>
class Rules::Table {
  public:
    bool isEmpty() const { return entries_.empty(); }

    const Value* find(std::uint64_t hash, std::string_view text) const {
        return (bits_[hash >> 40 & bitMask_] >> bitOf(hash) & 1U) == 0 ? nullptr : search(hash, text);
    }

    Value& at(std::uint64_t hash, std::string_view text) {
        if (const Value* there = find(hash, text)) return const_cast<Value&>(*there);
        entries_.push_back({hash, std::string(text), {}});
        if (2 * entries_.size() > slots_.size()) {
            const std::size_t size = std::bit_ceil(std::max<std::size_t>(16, 4 * entries_.size()));
            slots_.assign(size, 0);
            bits_.assign(size / 4, 0);  // 16 bits for a slot.
            bitMask_ = bits_.size() - 1;
            mask_ = size - 1;
            for (std::uint32_t entry = 0; entry < entries_.size(); ++entry) put(entry);
        } else {
            put(static_cast<std::uint32_t>(entries_.size() - 1));
        }
        return entries_.back().value;
    }

  private:
    struct Entry {
        std::uint64_t hash;
        std::string text;
        Value value;
    };

    [[gnu::noinline]] const Value* search(std::uint64_t hash, std::string_view text) const {
        for (std::size_t at = hash & mask_; slots_[at] != 0; at = (at + 1) & mask_) {
            const Entry& entry = entries_[slots_[at] - 1];
            if (entry.hash == hash && entry.text == text) return &entry.value;
        }
        return nullptr;
    }

    static unsigned bitOf(std::uint64_t hash) { return hash >> 34 & 63U; }

    void put(std::uint32_t entry) {
        const std::uint64_t hash = entries_[entry].hash;
        bits_[hash >> 40 & bitMask_] |= std::uint64_t{1} << bitOf(hash);
        std::size_t at = hash & mask_;
        while (slots_[at] != 0) at = (at + 1) & mask_;
        slots_[at] = entry + 1;
    }

    std::vector<std::uint64_t> bits_ = {0};
    std::size_t bitMask_ = 0;
    std::vector<std::uint32_t> slots_;  ///< The index of an entry, from 1 on; 0 if the slot is free.
    std::vector<Entry> entries_;
    std::size_t mask_ = 0;
};

/// A folder on the way to what a path without wildcards names.
struct Rules::PathNode {
    Table<PathNode*> below;
    Last last;  ///< Of the paths that end here.
};

/// A path with wildcards.
struct Rules::Trail {
    std::int32_t rule = kNone;
    bool onlyFolders = false;
    std::vector<RulePart> parts;

    bool isLast(std::size_t part) const { return part + 1 == parts.size(); }
};

/// The paths that lead into a folder or through it.
struct Rules::NamePlace final : Place {
    struct Step {
        const Trail* trail;
        std::size_t part;  ///< What an entry of the folder has to match.
    };

    const PathNode* node = nullptr;
    std::vector<Step> steps;  ///< Those of later rules first.

    // The steps of a trail stand beside each other.
    void add(const Trail& trail, std::size_t part) {
        for (auto step = steps.rbegin(); step != steps.rend() && step->trail == &trail; ++step)
            if (step->part == part) return;
        steps.push_back({&trail, part});
        // Any number of folders may also be none.
        if (trail.parts[part].anyDepth && !trail.isLast(part)) add(trail, part + 1);
    }
};

Rules::Rules()
    : names_(std::make_unique<Table<Last>>()), endings_(std::make_unique<Table<std::vector<Ending>>>()) {
    nodes_.push_back(std::make_unique<PathNode>());
}

Rules::~Rules() = default;

// --- making the list

void Rules::add(Rule rule) {
    const auto number = static_cast<std::int32_t>(texts_.size());
    texts_.push_back(std::move(rule.text));
    takesBack_.push_back(rule.takesBack);
    if (rule.anywhere) return addAnywhere(std::move(rule.parts.front().pattern), number, rule.onlyFolders);
    if (!rule.orParts.empty()) addPath(std::move(rule.orParts), number, rule.onlyFolders);
    addPath(std::move(rule.parts), number, rule.onlyFolders);
}

void Rules::addAnywhere(RulePattern pattern, std::int32_t rule, bool onlyFolders) {
    if (const std::string* name = pattern.literal())
        return names_->at(hashOf(*name), *name).take(rule, onlyFolders);
    const std::string* ending = pattern.ending();
    if (ending != nullptr && ending->find('.') != std::string::npos)
        return addEnding(*ending, rule, onlyFolders);
    tried_.push_back({std::move(pattern), rule, onlyFolders});
}

void Rules::addEnding(const std::string& text, std::int32_t rule, bool onlyFolders) {
    const ShortEnding is = shortEnding(text);
    const std::string_view behindDot = std::string_view(text).substr(text.rfind('.') + 1);
    const std::uint64_t hash = is.size < kWordBytes ? mixed(is.size, is.bytes) : hashOf(behindDot);
    longEndings_ = longEndings_ || is.size == kWordBytes;
    std::vector<Ending>& alike = endings_->at(hash, behindDot);
    alike.push_back({text, {}});
    alike.back().last.take(rule, onlyFolders);
}

void Rules::addPath(std::vector<RulePart> parts, std::int32_t rule, bool onlyFolders) {
    const auto isPlain = [](const RulePart& part) { return part.pattern.literal() != nullptr; };
    if (!std::ranges::all_of(parts, isPlain)) {
        trails_.push_back(std::make_unique<Trail>(Trail{rule, onlyFolders, std::move(parts)}));
        return;
    }
    PathNode* node = nodes_.front().get();
    for (const RulePart& part : parts) {
        const std::string& name = *part.pattern.literal();
        PathNode*& below = node->below.at(hashOf(name), name);
        if (below == nullptr) below = nodes_.emplace_back(std::make_unique<PathNode>()).get();
        node = below;
    }
    node->last.take(rule, onlyFolders);
}

void Rules::takeBack(std::string_view path) {
    Rule folder{.text = std::string(path), .takesBack = true};
    while (!path.empty()) {
        const std::string_view name = path.substr(0, path.find('/'));
        folder.parts.emplace_back();
        for (const char byte : name) folder.parts.back().pattern.addByte(byte);
        path.remove_prefix(std::min(name.size() + 1, path.size()));
    }
    Rule below = folder;
    below.parts.push_back({.anyDepth = true});
    below.parts.back().pattern.addStar();
    add(std::move(folder));
    add(std::move(below));
}

// --- places

LeaveOut::PlacePtr Rules::source() const {
    if (nodes_.front()->below.isEmpty() && trails_.empty()) return nullptr;
    auto place = std::make_shared<NamePlace>();
    place->node = nodes_.front().get();
    for (auto trail = trails_.rbegin(); trail != trails_.rend(); ++trail) place->add(**trail, 0);
    return place;
}

LeaveOut::PlacePtr Rules::below(const PlacePtr& above, std::string_view name) const {
    if (above == nullptr) return nullptr;
    const auto& from = static_cast<const NamePlace&>(*above);
    NamePlace place;
    PathNode* const* node = from.node == nullptr ? nullptr : from.node->below.find(hashOf(name), name);
    if (node != nullptr && !(*node)->below.isEmpty()) place.node = *node;
    for (const NamePlace::Step& step : from.steps) {
        const RulePart& part = step.trail->parts[step.part];
        if (part.anyDepth)
            place.add(*step.trail, step.part);
        else if (!step.trail->isLast(step.part) && part.pattern.matches(name))
            place.add(*step.trail, step.part + 1);
    }
    if (place.node == nullptr && place.steps.empty()) return nullptr;
    return std::make_shared<NamePlace>(std::move(place));
}

std::int32_t Rules::startAt(std::string_view path, bool isFolder) {
    PlacePtr place = source();
    std::int32_t rule = kNone;
    while (!path.empty()) {
        const std::string_view name = path.substr(0, path.find('/'));
        path.remove_prefix(std::min(name.size() + 1, path.size()));
        rule = ruleFor(place.get(), name, isFolder || !path.empty());
        place = below(place, name);
    }
    begun_ = true;
    start_ = std::move(place);
    return rule;
}

// --- asking

std::int32_t Rules::ruleFor(const Place* folder, std::string_view name, bool isFolder) const {
    const auto* place = static_cast<const NamePlace*>(folder);
    std::int32_t best = bestPlain(place == nullptr ? nullptr : place->node, name, isFolder);
    if (!tried_.empty()) best = bestTried(name, isFolder, best);
    if (place != nullptr && !place->steps.empty()) best = bestStep(*place, name, isFolder, best);
    return best == kNone || takesBack_[static_cast<std::size_t>(best)] ? kNone : best;
}

std::int32_t Rules::bestPlain(const PathNode* node, std::string_view name, bool isFolder) const {
    std::int32_t best = kNone;
    if (!names_->isEmpty() || node != nullptr) {
        const std::uint64_t hash = hashOf(name);
        if (const Last* last = names_->find(hash, name)) best = last->of(isFolder);
        if (node != nullptr)
            if (PathNode* const* there = node->below.find(hash, name))
                best = std::max(best, (*there)->last.of(isFolder));
    }
    return endings_->isEmpty() ? best : std::max(best, bestEnding(name, isFolder));
}

std::int32_t Rules::bestEnding(std::string_view name, bool isFolder) const {
    const ShortEnding is = shortEnding(name);
    // Where there is no short ending, nothing has this hash.
    const std::vector<Ending>* alike =
        endings_->find(mixed(is.size, is.bytes), name.substr(name.size() - std::min(is.size, name.size())));
    if (is.size == kWordBytes && longEndings_) {
        const std::string_view ending = name.substr(name.rfind('.') + 1);
        alike = endings_->find(hashOf(ending), ending);
    }
    std::int32_t best = kNone;
    if (alike == nullptr) return best;
    for (const Ending& each : *alike)
        if (name.ends_with(each.text)) best = std::max(best, each.last.of(isFolder));
    return best;
}

std::int32_t Rules::bestTried(std::string_view name, bool isFolder, std::int32_t best) const {
    for (auto each = tried_.rbegin(); each != tried_.rend() && each->rule > best; ++each)
        if ((isFolder || !each->onlyFolders) && each->pattern.matches(name)) return each->rule;
    return best;
}

std::int32_t Rules::bestStep(const NamePlace& place, std::string_view name, bool isFolder,
                             std::int32_t best) {
    for (const NamePlace::Step& step : place.steps) {
        if (step.trail->rule <= best) break;
        if (!step.trail->isLast(step.part) || (step.trail->onlyFolders && !isFolder)) continue;
        if (step.trail->parts[step.part].pattern.matches(name)) return step.trail->rule;
    }
    return best;
}

}  // namespace hl
