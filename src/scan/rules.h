// Rules of what a scan leaves out, made ready to be asked for each entry.
//
// The last rule that matches decides. Rules that are a whole name, or "*" and an ending with a dot, are found
// by a hash of the name and one of its ending, however many there are; those that are a path, by a tree of
// paths of which a folder knows its own place; only other wildcards are tried one by one, and those that name
// a place only where they may match. No path is ever built: the place of a folder follows from that of the
// folder above. bench/rules.cpp measures what an entry costs.
//
// Nothing changes once a list is complete, so any thread may ask. Adding to it is for one thread.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/leave_out.h"
#include "scan/rule_text.h"

namespace hl {

class Rules final : public LeaveOut {
  public:
    Rules();
    ~Rules() override;
    Rules(const Rules&) = delete;
    Rules& operator=(const Rules&) = delete;

    /// Adds a rule behind all others; its number is the number of rules so far.
    void add(Rule rule);
    /// Adds rules by which the folder of this path, and all that it holds, is not left out. `path` is
    /// relative to the source.
    void takeBack(std::string_view path);
    /// The reader begins in the folder of this path, relative to the source, instead of in the source itself.
    /// Returns the rule that leaves that folder out, or kNone. REQUIRES: all rules are there, and the path
    /// is not empty.
    std::int32_t startAt(std::string_view path, bool isFolder);
    /// Leaves out folders that hold a CACHEDIR.TAG.
    void leaveCachesOut() { caches_ = true; }

    bool isEmpty() const { return texts_.empty() && !caches_; }
    /// Returns the rule as it was written. REQUIRES: there is one of this number.
    const std::string& text(std::int32_t rule) const { return texts_[static_cast<std::size_t>(rule)]; }

    // LeaveOut
    PlacePtr start() const override { return begun_ ? start_ : source(); }
    PlacePtr below(const PlacePtr& above, std::string_view name) const override;
    std::int32_t ruleFor(const Place* folder, std::string_view name, bool isFolder) const override;
    bool leavesCachesOut() const override { return caches_; }

  private:
    struct NamePlace;
    struct PathNode;
    struct Trail;
    /// The last rule that matches: any entry, and a folder.
    struct Last {
        std::int32_t any = kNone, folder = kNone;
        void take(std::int32_t rule, bool onlyFolders) {
            if (!onlyFolders) any = rule;
            folder = rule;
        }
        std::int32_t of(bool isFolder) const { return isFolder ? folder : any; }
    };
    struct Ending {
        std::string text;
        Last last;
    };
    /// A pattern that is tried.
    struct Tried {
        RulePattern pattern;
        std::int32_t rule;
        bool onlyFolders;
    };

    PlacePtr source() const;
    void addAnywhere(RulePattern pattern, std::int32_t rule, bool onlyFolders);
    void addEnding(const std::string& text, std::int32_t rule, bool onlyFolders);
    void addPath(std::vector<RulePart> parts, std::int32_t rule, bool onlyFolders);
    std::int32_t bestPlain(const PathNode* node, std::string_view name, bool isFolder) const;
    std::int32_t bestEnding(std::string_view name, bool isFolder) const;
    std::int32_t bestTried(std::string_view name, bool isFolder, std::int32_t best) const;
    static std::int32_t bestStep(const NamePlace& place, std::string_view name, bool isFolder,
                                 std::int32_t best);

    /// Finds texts by a hash of their bytes, without allocating.
    template <class Value>
    class Table;

    bool caches_ = false;
    bool begun_ = false;  ///< The reader begins below the source.
    PlacePtr start_;
    std::vector<std::string> texts_;
    std::vector<bool> takesBack_;
    std::unique_ptr<Table<Last>> names_;
    std::unique_ptr<Table<std::vector<Ending>>> endings_;  ///< By what stands behind their last dot.
    bool longEndings_ = false;                    ///< Some have more than seven bytes behind their last dot.
    std::vector<Tried> tried_;                    ///< In their order.
    std::vector<std::unique_ptr<Trail>> trails_;  ///< Paths with wildcards.
    std::vector<std::unique_ptr<PathNode>> nodes_;  ///< Paths without wildcards; the source comes first.
};

}  // namespace hl
