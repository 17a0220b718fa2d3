// Reads what other programs write: ncdu's JSON; listings of find.
#include <charconv>
#include <unordered_map>
#include <unordered_set>

#include "base/json_reader.h"
#include "scan/saved/foreign_tree.h"
#include "scan/saved/scan_format.h"

namespace hl {

namespace {

using Piece = JsonReader::Piece;
using Kind = ForeignEntry::Kind;

bool isEntryName(std::string_view name) {
    return !name.empty() && name.size() <= kMostNameBytes && name.find('/') == std::string_view::npos &&
           name.find('\0') == std::string_view::npos;
}

/// Returns the path with one separator at its front, and none at its end.
std::string sourcePath(std::string_view path) {
    while (path.size() > 1 && path.ends_with('/')) path.remove_suffix(1);
    return path.starts_with('/') ? std::string(path) : "/" + std::string(path);
}

// --- ncdu

class NcduReading {
  public:
    NcduReading(std::string_view text, ForeignTree& tree) : json_(text), tree_(tree) {}

    bool run() {
        if (json_.next() != Piece::kArray || !isNumber(1) || json_.next() != Piece::kNumber) return false;
        if (json_.next() != Piece::kObject || !readHead()) return false;
        if (json_.next() != Piece::kArray || !readFolder()) return false;
        while (!open_.empty())
            if (!step()) return false;
        return json_.next() == Piece::kArrayEnd && json_.next() == Piece::kEnd;
    }

  private:
    struct Info {
        ForeignEntry entry;
        std::string name;
        std::string excluded;
        bool unread = false;
        bool notRegular = false;
    };

    bool isNumber(std::int64_t expected) {
        return json_.next() == Piece::kNumber && json_.whole() == expected;
    }

    bool readHead() {
        for (Piece piece = json_.next(); piece == Piece::kKey; piece = json_.next()) {
            const bool isTime = json_.string() == "timestamp";
            const Piece value = json_.next();
            if (isTime && value == Piece::kNumber) tree_.written = json_.whole().value_or(0);
            if (!json_.skipRestOf(value)) return false;
        }
        return json_.depth() == 1;
    }

    // A folder is an array that begins with what is told of it.
    bool readFolder() {
        Info info;
        if (json_.next() != Piece::kObject || !readInfo(info)) return false;
        info.entry.kind = info.unread ? Kind::kUnread : Kind::kFolder;
        return add(info, true);
    }

    bool step() {
        switch (json_.next()) {
            case Piece::kArray:
                return readFolder();
            case Piece::kArrayEnd:
                open_.pop_back();
                return true;
            case Piece::kObject: {
                Info info;
                if (!readInfo(info)) return false;
                if (info.notRegular) info.entry.kind = Kind::kOther;
                if (info.excluded == "othfs" || info.excluded == "otherfs" || info.excluded == "kernfs")
                    info.entry.kind = Kind::kOtherMount;
                else if (!info.excluded.empty())
                    return true;
                return add(info, false);
            }
            default:
                return false;
        }
    }

    bool add(Info& info, bool opens) {
        const bool isSource = tree_.count() == 0;
        if (isSource ? info.name.empty() || info.name.find('\0') != std::string::npos
                     : !isEntryName(info.name))
            return false;
        if (isSource) tree_.source = sourcePath(info.name);
        const std::uint32_t parent = open_.empty() ? ForeignEntry::kNone : open_.back();
        if (info.entry.device == 0 && !isSource) info.entry.device = tree_.at(parent).device;
        const std::uint32_t place = tree_.add(parent, info.entry, isSource ? "" : info.name);
        if (opens) open_.push_back(place);
        return true;
    }

    bool readInfo(Info& info) {
        const std::size_t depth = json_.depth();
        for (Piece piece = json_.next(); piece == Piece::kKey; piece = json_.next())
            if (!readValue(std::string(json_.string()), info)) return false;
        return json_.depth() == depth - 1;
    }

    bool readValue(const std::string& key, Info& info) {
        ForeignEntry& entry = info.entry;
        const Piece value = json_.next();
        if (value == Piece::kString) {
            if (key == "name") info.name = json_.string();
            if (key == "excluded") info.excluded = json_.string();
        } else if (value == Piece::kTrue) {
            info.unread |= key == "read_error";
            info.notRegular |= key == "notreg";
            if (key == "hlnkc" && entry.links < 2) entry.links = 2;
        } else if (value == Piece::kNumber) {
            const auto number = json_.unsignedWhole();
            if (key == "asize") entry.size = number.value_or(0);
            if (key == "dsize") entry.blocks = number.value_or(0) / kBlockBytes;
            if (key == "dev") entry.device = number.value_or(0);
            if (key == "ino") entry.inode = number.value_or(0);
            if (key == "uid") entry.owner = static_cast<std::uint32_t>(number.value_or(0));
            if (key == "mtime") entry.written = json_.whole().value_or(0);
        }
        return json_.skipRestOf(value);
    }

    JsonReader json_;
    ForeignTree& tree_;
    std::vector<std::uint32_t> open_;
};

// --- listings

class ListingReading {
  public:
    explicit ListingReading(ForeignTree& tree) : tree_(tree) {}

    ForeignProblem run(std::string_view text) {
        while (!text.empty()) {
            const std::size_t end = text.find('\0');
            if (end == std::string_view::npos) return ForeignProblem::kRecord;
            const ForeignProblem problem = take(text.substr(0, end));
            if (problem != ForeignProblem::kNone) return problem;
            text.remove_prefix(end + 1);
        }
        return tree_.count() > 0 ? ForeignProblem::kNone : ForeignProblem::kRecord;
    }

  private:
    struct Known {
        std::uint32_t place;
        bool hasRecord;
    };

    template <class Number>
    static bool takeNumber(std::string_view& rest, Number& number, bool hasFraction = false) {
        const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), number);
        if (error != std::errc()) return false;
        rest.remove_prefix(static_cast<std::size_t>(end - rest.data()));
        if (hasFraction && rest.starts_with('.')) rest.remove_prefix(std::min(rest.find(' '), rest.size()));
        if (!rest.starts_with(' ')) return false;
        rest.remove_prefix(1);
        return true;
    }

    ForeignProblem take(std::string_view record) {
        ForeignEntry entry;
        if (!takeNumber(record, entry.size) || !takeNumber(record, entry.blocks) ||
            !takeNumber(record, entry.written, true) || !takeNumber(record, entry.owner))
            return ForeignProblem::kRecord;
        constexpr std::string_view kTypes = "fdlpsbc";
        if (record.size() < 3 || kTypes.find(record[0]) == std::string_view::npos || record[1] != ' ')
            return ForeignProblem::kRecord;
        entry.kind = record[0] == 'd' ? Kind::kFolder : record[0] == 'f' ? Kind::kFile : Kind::kOther;
        return place(entry, record.substr(2));
    }

    ForeignProblem place(const ForeignEntry& entry, std::string_view path) {
        if (tree_.count() == 0) {
            if (entry.kind != Kind::kFolder) return ForeignProblem::kRecord;
            while (path.size() > 1 && path.ends_with('/')) path.remove_suffix(1);
            root_ = path;
            tree_.source = sourcePath(path);
            tree_.add(ForeignEntry::kNone, entry, "");
            return ForeignProblem::kNone;
        }
        const std::size_t skip = root_ == "/" ? 0 : root_.size();
        if (path == root_) return ForeignProblem::kTwice;
        if (!path.starts_with(root_) || path.size() <= skip + 1 || path[skip] != '/')
            return ForeignProblem::kRecord;
        return placeBelow(entry, path.substr(skip + 1));
    }

    // The folders that were made for want of a record become what their own record says.
    ForeignProblem placeBelow(const ForeignEntry& entry, std::string_view path) {
        const std::size_t slash = path.rfind('/');
        const std::string_view name = slash == std::string_view::npos ? path : path.substr(slash + 1);
        if (!isEntryName(name)) return ForeignProblem::kRecord;
        if (const auto known = folders_.find(std::string(path)); known != folders_.end()) {
            if (known->second.hasRecord || entry.kind != Kind::kFolder) return ForeignProblem::kTwice;
            known->second.hasRecord = true;
            ForeignEntry& made = tree_.at(known->second.place);
            made.size = entry.size;
            made.blocks = entry.blocks;
            made.written = entry.written;
            made.owner = entry.owner;
            return ForeignProblem::kNone;
        }
        std::uint32_t parent = 0;
        if (slash != std::string_view::npos && (slash == 0 || !folderOf(path.substr(0, slash), parent)))
            return ForeignProblem::kRecord;
        if (entry.kind != Kind::kFolder && !files_.emplace(path).second) return ForeignProblem::kTwice;
        const std::uint32_t added = tree_.add(parent, entry, name);
        if (entry.kind == Kind::kFolder && files_.contains(std::string(path))) return ForeignProblem::kTwice;
        if (entry.kind == Kind::kFolder) folders_.emplace(path, Known{added, true});
        return ForeignProblem::kNone;
    }

    /// Makes what is missing on the way.
    bool folderOf(std::string_view path, std::uint32_t& place) {
        for (std::size_t at = 0; at < path.size();) {
            const std::size_t end = std::min(path.find('/', at), path.size());
            const std::string whole(path.substr(0, end));
            const std::string_view name = path.substr(at, end - at);
            if (!isEntryName(name) || files_.contains(whole)) return false;
            const auto known = folders_.find(whole);
            if (known == folders_.end()) {
                place = tree_.add(place, {.kind = Kind::kFolder}, name);
                folders_.emplace(whole, Known{place, false});
            } else {
                place = known->second.place;
            }
            at = end + 1;
        }
        return true;
    }

    ForeignTree& tree_;
    std::string root_;
    std::unordered_map<std::string, Known> folders_;
    std::unordered_set<std::string> files_;
};

}  // namespace

ForeignProblem readNcdu(std::string_view text, ForeignTree& tree) {
    return NcduReading(text, tree).run() ? ForeignProblem::kNone : ForeignProblem::kNoJson;
}

ForeignProblem readListing(std::string_view text, ForeignTree& tree) {
    return ListingReading(tree).run(text);
}

}  // namespace hl
