// The search for files in the window: what the filter's box says, where to search, and the title of the list.
// For the thread of the logic only.
#pragma once

#include <string>
#include <vector>

#include "grid/row_tree.h"
#include "scan/find_filter.h"
#include "scan/find_walk.h"

namespace hl {

struct MainForm;

/// A folder to search.
struct FindPlace {
    std::string folder;       ///< With a separator at the end.
    std::uint32_t level = 0;  ///< How many levels it lies below its source.
    SubvolumesMet elsewhere;  ///< The subvolumes of its source outside of it.
};

class FindControl {
  public:
    /// More rows the list does not get.
    static constexpr std::size_t kMostRows = 1'000'000;

    explicit FindControl(MainForm& form) : form_(form) {}

    /// Finds what the filter in the bar's box takes, below the selected row of the report or in all sources.
    /// The window is locked except for Stop; the rows appear while it runs. If the filter makes no sense, the
    /// box says why.
    void start();
    /// Puts a filter into the box, shows the list and finds.
    void startWith(const std::string& filter);
    /// Opens the form for the filter, and finds if the user accepts it.
    void showForm();

    /// Returns how many files were found, and where, and whether that is all; empty before the first search.
    std::string title() const;
    bool hasSearched() const { return searched_; }

    /// Asks the system's table for a user's number.
    FindFilter::OwnerNumber ownerNumbers() const;

  private:
    std::vector<FindPlace> places() const;
    FindPlace placeOf(Row row) const;
    void refuse(const FilterProblem& problem);
    void find(FindFilter filter, const std::vector<FindPlace>& places);

    MainForm& form_;
    // Of the last search.
    bool searched_ = false;
    std::string place_;  ///< The folder; empty for all sources.
    bool stopped_ = false, more_ = false;
};

}  // namespace hl
