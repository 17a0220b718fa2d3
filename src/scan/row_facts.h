// What is known of the report's folders besides what their rows show: which folders they are, and what kept
// them from being read. Saved scans need it. For the thread of the logic.
//
// A row takes 16 bytes; what few rows have lies in a table beside them.
#pragma once

#include <cstdint>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>

#include "base/result.h"
#include "grid/column.h"
#include "grid/grid.h"
#include "platform/leave_out.h"

namespace hl {

struct SavedScan;

/// Which folder a row is, whatever its name.
struct RowIdentity {
    static constexpr std::int64_t kNoTime = std::numeric_limits<std::int64_t>::min();

    std::uint64_t inode = 0;         ///< 0 if it is not known.
    std::int64_t created = kNoTime;  ///< In seconds since 1970.

    bool operator==(const RowIdentity&) const = default;
};

/// What few folders have.
struct RareFacts {
    std::uint64_t device = 0;  ///< The disk's number, if it is another one than that of the folder above.
    std::optional<Error> error = {};      ///< What kept the folder from being read, or read wholly.
    std::int32_t rule = LeaveOut::kNone;  ///< The number of the rule that leaves it out.
    bool stopped = false;                 ///< It was being read when the reading was stopped.
};

/// Of a source.
struct SourceFacts {
    std::int64_t started = 0, ended = 0;  ///< Its reading, in seconds since 1970.
    std::uint64_t device = 0;
    bool stopped = false;
    std::string options = {};  ///< Those that decide what is found, as a JSON object.
    /// Of a source that was opened from a file: what the file says besides its folders. Else null.
    std::shared_ptr<const SavedScan> saved = nullptr;
};

class RowFacts {
  public:
    /// The row is new, or its folder is read again: forgets what was known.
    void begin(Row row, const RowIdentity& identity) {
        if (!rare_.empty()) rare_.erase(row);
        if (!wantsIdentities_) return;
        rows_.ensure(row);
        rows_[row] = identity;
    }
    RowIdentity identity(Row row) const { return rows_.valueOr(row, {}); }
    /// Returns what can be changed, and makes it if there is none.
    RareFacts& rare(Row row) { return rare_[row]; }
    /// Returns null if the row has nothing of the kind.
    const RareFacts* rareOf(Row row) const {
        const auto found = rare_.find(row);
        return found == rare_.end() ? nullptr : &found->second;
    }

    /// Tells whether any row may have something of the kind.
    bool hasRare() const { return !rare_.empty(); }

    /// Only what keeps folders from being read is wanted, not which folders they are.
    void leaveIdentitiesOut() { wantsIdentities_ = false; }
    bool wantsIdentities() const { return wantsIdentities_; }

    /// Makes it if there is none.
    SourceFacts& source(Row root) { return sources_[root]; }
    const SourceFacts* sourceOf(Row root) const {
        const auto found = sources_.find(root);
        return found == sources_.end() ? nullptr : &found->second;
    }
    void dropSource(Row root) { sources_.erase(root); }
    /// Must be called when the report is emptied.
    void clear() { *this = RowFacts(); }

  private:
    bool wantsIdentities_ = true;
    Column<RowIdentity> rows_;
    std::unordered_map<Row, RareFacts> rare_;
    std::map<Row, SourceFacts> sources_;
};

}  // namespace hl
