// A language library: texts by their numbers, in a file that a translator can edit.
//
//     # A comment.
//     [3612]
//     de=Speichern
//     en=Save
//
// Each block names a text; a line in it gives the text in one language, by the language's code. All that
// stands behind the "=" belongs to the text. Lines that make no sense are passed over; of two texts for the
// same number the later counts.
#pragma once

#include <map>
#include <string>
#include <string_view>

namespace hl {

class Catalogue {
  public:
    Catalogue() = default;
    /// The texts of the language `code` in the file `text`.
    Catalogue(std::string_view text, std::string_view code);

    /// Empty if there is none.
    std::string_view text(int id) const;
    bool empty() const { return texts_.empty(); }
    const std::map<int, std::string>& texts() const { return texts_; }

    static constexpr int kHighestId = 9999;

  private:
    std::map<int, std::string> texts_;
};

}  // namespace hl
