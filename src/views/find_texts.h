// What the user is told of a filter that makes no sense. For the thread of the logic.
#pragma once

#include <string>

#include "app/texts.h"
#include "scan/find_filter.h"

namespace hl {

/// Returns one sentence that names the term.
std::string filterProblemText(const Texts& texts, const FilterProblem& problem);

}  // namespace hl
