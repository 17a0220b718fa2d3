// The question that saving and printing the report have in common: which folders, and how many levels of
// them.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/form.h"

namespace hl {

/// The indexes of the option buttons of both forms.
enum FolderScope : int { kAllFolders, kSelectedFolder };
enum FolderLevels : int { kAllFolderLevels, kSomeFolderLevels, kUnfoldedLevels };

/// The number of levels that stands for all of them.
inline constexpr std::int32_t kAllLevels = 999;

/// The controls of the question; the form owns them.
struct FolderChoice {
    std::string& question;
    std::array<OptionButton, 2>& scope;
    std::string& levelsQuestion;
    std::array<OptionButton, 3>& levels;
    TextBox& number;
    std::string& unit;
};

/// Returns the items of the form's rows 0 to 6, three columns wide; the form's other items begin at row
/// kRowsOfChoice.
std::vector<FormItem> itemsOf(const FolderChoice& choice);
constexpr int kRowsOfChoice = 7;

}  // namespace hl
