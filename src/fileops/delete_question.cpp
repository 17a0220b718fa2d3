#include "fileops/delete_question.h"

#include <algorithm>
#include <set>
#include <utility>

#include "base/size_text.h"
#include "base/text.h"
#include "fileops/freed_texts.h"
#include "scan/file_columns.h"
#include "scan/left_out.h"
#include "scan/records.h"
#include "scan/rollup.h"
#include "views/list_view.h"

namespace hl {

namespace {

constexpr std::size_t kMostNames = 8;

std::string leftOutToo(const ToDelete& what, const Texts& texts, const NumberFormat& numbers) {
    if (what.leftOut == Unshown()) return {};
    return "\n" +
           texts.TL(9935,
                    "Mit gelöscht wird, was durch Regeln ausgelassen ist: %1 Ordner, %2 Dateien und "
                    "was darin liegt.",
                    {formatCount(what.leftOut.folders, numbers), formatCount(what.leftOut.files, numbers)});
}

std::string countedNames(const ToDelete& what, const Texts& texts, const NumberFormat& numbers) {
    std::string all;
    for (std::size_t i = 0; i < std::min(kMostNames, what.names.size()); ++i)
        all += "\n" + visible(what.names[i]);
    if (what.names.size() > kMostNames)
        all += "\n" +
               texts.TL(9555, "... und %1 weitere", {formatCount(what.names.size() - kMostNames, numbers)});
    return all;
}

using Paths = std::set<std::string, std::less<>>;

/// `paths` are those of folders.
bool liesBelow(std::string path, const Paths& paths) {
    for (std::size_t slash = path.rfind('/'); slash != std::string::npos && slash > 0;
         slash = path.rfind('/')) {
        path.resize(slash);
        if (paths.contains(path)) return true;
    }
    return false;
}

}  // namespace

// Two sources may show the same folder. Of a link, or of what is mounted on a folder, nothing goes but
// itself.
ToDelete foldersOf(const FileOps& ops, const std::vector<Row>& rows) {
    ToDelete what{.folders = true};
    const Grid& report = ops.scan.tvwPL;
    const auto pathOf = [&](Row row) { return Report_GetFullpathOfNode(report, row, false, ops.scan.paths); };
    Paths paths, told;
    for (const Row row : rows) paths.insert(pathOf(row));
    for (const Row row : rows) {
        const std::string path = pathOf(row);
        if (liesBelow(path, paths) || !told.insert(path).second) continue;
        what.names.emplace_back(report.text(row));
        what.paths.push_back(path);
        const int picture = report.picture(row);
        if (picture == kPictureLink || picture == kPictureMountPoint) continue;
        what.files += report.number(row, kFiles);
        what.bytes += report.number(row, kSize);
        const Unshown leftOut = leftOutWith(report, row);
        what.leftOut.folders += leftOut.folders;
        what.leftOut.files += leftOut.files;
    }
    return what;
}

ToDelete filesOf(const ListView& list) {
    ToDelete what{.paths = list.menuPaths()};
    const Grid& grid = list.grid();
    for (const Row row : grid.selectedRows()) {
        what.names.emplace_back(grid.text(row));
        ++what.files;
        what.bytes += grid.number(row, kFileSize);
    }
    return what;
}

std::unique_ptr<FreedSurvey> beginSurvey(const FileOps& ops, const ToDelete& what) {
    if (ops.surveys == nullptr) return nullptr;
    std::vector<FilePlace> places;
    for (const std::string& path : what.paths) places.push_back(placeOf(ops.scan, path));
    return ops.surveys->begin(std::move(places));
}

bool wantsToDelete(const FileOps& ops, const ToDelete& what) {
    if (ops.scan.options.AskBeforeDelete == 0) return true;
    const Texts& texts = ops.scan.texts;
    const NumberFormat& numbers = ops.scan.numbers;
    const std::string files = formatNumber(what.files, {}, numbers);
    const double most = static_cast<double>(SizeValue::kMaxBytes);
    const std::string bytes = FormatSizeAuto(
        SizeValue::fromBytes(static_cast<std::uint64_t>(std::min(what.bytes, most))), true, numbers);
    const std::string asked = what.folders
                                  ? texts.TL(9804, "%1 Ordner mit %2 Datei(en), %3, für immer löschen?",
                                             {formatCount(what.names.size(), numbers), files, bytes})
                                  : texts.TL(9805, "%1 Datei(en), %2, für immer löschen?", {files, bytes});
    const auto survey = beginSurvey(ops, what);
    const FreedTexts freed{texts, numbers};
    const auto live = [&] { return freed.summary(survey->figures()); };
    return ops.window.dialogs.confirm(
        asked + leftOutToo(what, texts, numbers) + "\n" + countedNames(what, texts, numbers),
        texts.TL(9271, "Löschen"), survey ? Dialogs::LiveText(live) : nullptr);
}

}  // namespace hl
