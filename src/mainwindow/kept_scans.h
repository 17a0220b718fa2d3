// The scans that the window keeps by itself after each reading, so that a source can be compared with what it
// was before: one a day for each source, in the folder "scans" of the settings' folder. For the thread of the
// logic only.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "grid/grid.h"

namespace hl {

struct MainForm;

class KeptScans {
  public:
    explicit KeptScans(MainForm& form) : form_(form) {}

    /// Keeps the source that was just read, if the options want that; one of the same day is replaced. Then
    /// the oldest ones of the source go, until besides it there are no more than the options say.
    void keep(Row source);
    /// Returns why the last source was not kept, and forgets it; empty if it was, or was not to be.
    std::string takeProblem();
    /// Returns the path of the last scan of the source that was kept on a day before it was read; empty if
    /// there is none.
    std::string lastBefore(Row source) const;
    /// Deletes all of them, and returns how many. Files that this program did not write stay.
    std::size_t removeAll();

  private:
    std::string folder() const;
    std::string keyOf(Row source) const;
    bool hasRoom() const;
    bool write(Row source, const std::string& path);
    void removeOld(const std::string& key, const std::string& written);
    bool isOurs(const std::string& path) const;

    MainForm& form_;
    std::string problem_;
};

}  // namespace hl
