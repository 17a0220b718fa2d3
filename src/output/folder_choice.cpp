#include "output/folder_choice.h"

namespace hl {

std::vector<FormItem> itemsOf(const FolderChoice& choice) {
    enum Group { kScope = 1, kLevels };
    return {{.control = &choice.question, .columnSpan = 3},
            {.control = &choice.scope[kAllFolders], .row = 1, .columnSpan = 3, .group = kScope},
            {.control = &choice.scope[kSelectedFolder], .row = 2, .columnSpan = 3, .group = kScope},
            {.control = &choice.levelsQuestion, .row = 3, .columnSpan = 3},
            {.control = &choice.levels[kAllFolderLevels], .row = 4, .columnSpan = 3, .group = kLevels},
            {.control = &choice.levels[kSomeFolderLevels], .row = 5, .group = kLevels, .name = choice.unit},
            {.control = &choice.number, .row = 5, .column = 1, .keyPress = digitKey, .name = choice.unit},
            {.control = &choice.unit, .row = 5, .column = 2},
            {.control = &choice.levels[kUnfoldedLevels], .row = 6, .columnSpan = 3, .group = kLevels}};
}

}  // namespace hl
