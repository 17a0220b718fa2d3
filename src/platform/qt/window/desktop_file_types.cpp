#include "platform/qt/window/desktop_file_types.h"

#include <QFile>
#include <QIcon>
#include <QMimeType>
#include <QStandardPaths>
#include <algorithm>

#include "platform/qt/common/qt_convert.h"

namespace hl {

namespace {

constexpr int kLongestFirstEnding = 4;

/// Returns "tar.gz" for "x.tar.gz", else the part behind the last dot; empty for a name without a dot.
QString endingOf(const QString& name) {
    const auto last = name.lastIndexOf(QLatin1Char('.'));
    if (last < 0) return {};
    if (last == 0) return QLatin1Char('/') + name;  // A file ".gz" is not of the type of "x.gz".
    const auto first = name.lastIndexOf(QLatin1Char('.'), last - 1);
    const auto between = QStringView(name).mid(first + 1, last - first - 1);
    const bool letters = std::all_of(between.begin(), between.end(), [](QChar c) { return c.isLetter(); });
    const bool both = first > 0 && letters && between.size() <= kLongestFirstEnding;
    return name.mid(both ? first : last);
}

bool isPlainEnding(const QString& pattern) {
    static const QRegularExpression kPlain(QStringLiteral("^\\*\\.[^*?\\[.]+(\\.[^*?\\[.]+)?$"));
    return kPlain.match(pattern).hasMatch();
}

std::string iconOf(const QMimeType& type) {
    for (const QString& name : {type.iconName(), type.genericIconName()})
        if (QIcon::hasThemeIcon(name)) return name.toStdString();
    return FilePictures::kAnyFile;
}

}  // namespace

std::optional<std::string> DesktopFileTypes::typeName(std::string_view fileName) {
    const Kind& kind = kindOf(fileName);
    return kind.decided ? std::optional(kind.name) : std::nullopt;
}

std::string DesktopFileTypes::typeName(std::string_view fileName, std::string_view beginning) {
    const QByteArray bytes(beginning.data(), static_cast<qsizetype>(beginning.size()));
    const QMimeType type = database_.mimeTypeForFileNameAndData(qtText(fileName), bytes);
    return type.isDefault() ? std::string() : type.comment().toStdString();
}

std::string DesktopFileTypes::iconName(std::string_view fileName) {
    return kindOf(fileName).icon;
}

// Names that decide as a whole are also kept, up to a limit. All other names without an extension are alike.
const DesktopFileTypes::Kind& DesktopFileTypes::kindOf(std::string_view fileName) {
    constexpr qsizetype kMostKinds = 20'000;
    if (kinds_.isEmpty() && literals_.isEmpty()) readPatterns();
    const QString name = qtText(fileName);
    QString key = wholeNameDecides(name) ? name : endingOf(name);
    if (key.isEmpty() && literals_.isEmpty()) key = name;  // Without a list, any name may decide.
    if (const auto found = kinds_.find(key); found != kinds_.end()) return *found;
    if (kinds_.size() >= kMostKinds) kinds_.clear();
    const QList<QMimeType> types = database_.mimeTypesForFileName(name);
    Kind kind;
    kind.decided = types.size() == 1;
    if (kind.decided) kind.name = types.front().comment().toStdString();
    kind.icon = types.isEmpty() ? std::string(FilePictures::kAnyFile) : iconOf(types.front());
    return *kinds_.insert(key, kind);
}

// The lines of the list are "weight:type:pattern[:flags]". Nearly all patterns are plain extensions, "*.png".
void DesktopFileTypes::readPatterns() {
    const auto lists =
        QStandardPaths::locateAll(QStandardPaths::GenericDataLocation, QStringLiteral("mime/globs2"));
    QStringList others;
    for (const QString& list : lists) {
        QFile file(list);
        if (!file.open(QIODevice::ReadOnly)) continue;
        for (const QByteArray& line : file.readAll().split('\n')) {
            const QString pattern = QString::fromUtf8(line.split(':').value(2));
            if (pattern.isEmpty() || line.startsWith('#') || isPlainEnding(pattern)) continue;
            if (pattern.contains(QLatin1Char('*')) || pattern.contains(QLatin1Char('[')))
                others.append(QRegularExpression::wildcardToRegularExpression(pattern));
            else
                literals_.insert(pattern.toLower());
        }
    }
    others.removeDuplicates();
    patterns_.setPattern(others.join(QLatin1Char('|')));
    patterns_.setPatternOptions(QRegularExpression::CaseInsensitiveOption);
}

bool DesktopFileTypes::wholeNameDecides(const QString& fileName) const {
    return literals_.contains(fileName.toLower()) ||
           (!patterns_.pattern().isEmpty() && patterns_.match(fileName).hasMatch());
}

}  // namespace hl
