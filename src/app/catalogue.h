// A language library: texts by their numbers, in a file that a translator can edit.
//
//     # A comment.
//     [3612]
//     de=Speichern
//     en=Save
//
// Each block holds one text; each line in it gives the text in one language, by the language's code.
// Everything behind the "=" belongs to the text. Lines that make no sense are ignored; of two texts for the
// same number the later counts. A catalogue does not change once it is made.
#pragma once

#include <map>
#include <string>
#include <string_view>

namespace hl {

class Catalogue {
  public:
    Catalogue() = default;
    /// Reads the texts of the language `code` from `text`, the content of a file.
    Catalogue(std::string_view text, std::string_view code);

    /// Returns an empty text if there is none for the number.
    std::string_view text(int id) const;
    bool empty() const { return texts_.empty(); }
    const std::map<int, std::string>& texts() const { return texts_; }

    static constexpr int kHighestId = 9999;

  private:
    std::map<int, std::string> texts_;
};

}  // namespace hl
