// The kinds of files by the shared MIME database of the desktop.
#pragma once

#include <QHash>
#include <QMimeDatabase>
#include <QRegularExpression>
#include <QSet>

#include "platform/file_types.h"

namespace hl {

/// The database is read at the first question. What a name's ending says is asked for once: a question costs
/// about 30 microseconds, an answer that is known less than one. Thread of the logic only.
class DesktopFileTypes final : public FileTypes {
  public:
    std::optional<std::string> typeName(std::string_view fileName) override;
    std::string typeName(std::string_view fileName, std::string_view beginning) override;
    std::string iconName(std::string_view fileName) override;

  private:
    /// What the names with one ending have in common.
    struct Kind {
        bool decided = false;  ///< The ending leaves no doubt.
        std::string name;      ///< "PNG image"; empty if not decided.
        std::string icon;      ///< By the likeliest type.
    };

    const Kind& kindOf(std::string_view fileName);
    void readPatterns();
    bool wholeNameDecides(const QString& fileName) const;

    QMimeDatabase database_;
    QHash<QString, Kind> kinds_;
    /// Patterns of names that are no plain endings: "makefile", "README*".
    QSet<QString> literals_;
    QRegularExpression patterns_;
};

}  // namespace hl
