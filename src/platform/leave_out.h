// What a reader of folders asks to learn which entries it leaves out. Nothing in it changes once it is made,
// so any thread may ask.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

namespace hl {

class LeaveOut {
  public:
    /// What is known of a folder: the rules that name a place, as far as they may still match below it.
    class Place {
      public:
        virtual ~Place() = default;
    };
    /// Null if no such rule can match there, which costs nothing.
    using PlacePtr = std::shared_ptr<const Place>;

    // Answers that are no rule's number.
    static constexpr std::int32_t kNone = -1;      ///< The entry is not left out.
    static constexpr std::int32_t kCacheTag = -2;  ///< The folder is marked as a cache.

    virtual ~LeaveOut() = default;

    /// Returns the place of the folder where the reader begins.
    virtual PlacePtr start() const = 0;
    /// Returns the place of the folder `name`, which lies in a folder with the place `above`.
    virtual PlacePtr below(const PlacePtr& above, std::string_view name) const = 0;
    /// Returns the number of the rule that leaves the entry out, or kNone. A link is no folder. `folder` is
    /// the place of the folder that the entry lies in.
    virtual std::int32_t ruleFor(const Place* folder, std::string_view name, bool isFolder) const = 0;
    /// Tells whether folders below the source that hold a CACHEDIR.TAG are left out.
    virtual bool leavesCachesOut() const = 0;
};

}  // namespace hl
