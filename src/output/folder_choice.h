// What saving and printing the report ask alike: which folders, and how many levels of them.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "platform/form.h"

namespace hl {

/// Indexes of the option buttons of both forms.
enum FolderScope : int { kAllFolders, kSelectedFolder };
enum FolderLevels : int { kAllFolderLevels, kSomeFolderLevels, kUnfoldedLevels };

/// The controls, which belong to the form.
struct FolderChoice {
    std::string& question;
    std::array<OptionButton, 2>& scope;
    std::string& levelsQuestion;
    std::array<OptionButton, 3>& levels;
    TextBox& number;
    std::string& unit;
};

/// The rows from 0 to 6 of the form, three columns wide; what else it asks stands below, from kRowsOfChoice
/// on.
std::vector<FormItem> itemsOf(const FolderChoice& choice);
constexpr int kRowsOfChoice = 7;

}  // namespace hl
