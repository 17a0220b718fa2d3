#include "views/find_texts.h"

#include "base/text.h"

namespace hl {

std::string filterProblemText(const Texts& texts, const FilterProblem& problem) {
    const std::string term = visible(problem.term);
    switch (problem.kind) {
        case FilterProblemKind::kNoField:
            return texts.TL(9957,
                            "In \"%1\" steht kein Feld eines Filters. Es gibt size, disk, age, name, kind, "
                            "owner und type.",
                            {term});
        case FilterProblemKind::kNoOperator:
            return texts.TL(9958, "In \"%1\" passt das Vergleichszeichen nicht zum Feld.", {term});
        case FilterProblemKind::kNoValue:
            return texts.TL(9959, "In \"%1\" fehlt der Wert, oder er passt nicht zum Feld.", {term});
        case FilterProblemKind::kNoSuchOwner:
            return texts.TL(9960, "Den Benutzer in \"%1\" gibt es nicht.", {term});
        case FilterProblemKind::kQuoteIsOpen:
            return texts.TL(9961,
                            "In \"%1\" ist ein Anführungszeichen nicht geschlossen, oder dahinter fehlt ein "
                            "Leerzeichen.",
                            {term});
        case FilterProblemKind::kBracketIsOpen:
            return texts.TL(9962, "In \"%1\" ist eine eckige Klammer nicht geschlossen.", {term});
    }
    return {};
}

}  // namespace hl
