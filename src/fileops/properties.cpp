#include "fileops/properties.h"

#include <array>
#include <deque>
#include <utility>

#include "base/date_format.h"
#include "base/path.h"
#include "base/size_text.h"
#include "base/text.h"
#include "grid/mask.h"
#include "scan/file_columns.h"
#include "scan/on_disk.h"
#include "scan/records.h"
#include "scan/report_changes.h"
#include "views/column_masks.h"

namespace hl {

namespace {

constexpr std::uint32_t kKindOfMode = 0170000, kFolderMode = 0040000;

class PropertiesForm {
  public:
    explicit PropertiesForm(const FileOps& ops) : ops_(ops), texts_(ops.scan.texts) {}

    void show(const std::vector<std::string>& paths);

  private:
    struct Line {
        std::string caption;
        TextBox value;
    };

    std::string bytes(std::uint64_t count) const;
    void add(std::string caption, std::string value, int lines = 1);
    void addSizes(std::uint64_t size, std::uint64_t space);
    void addTime(std::string caption, std::int64_t seconds);
    void addOne(const std::string& path, const FileFacts& facts);
    void addFolder(const std::string& path);
    void addNames(const std::string& path, std::uint32_t count);
    void addSums(const std::vector<std::string>& paths);
    void open();

    const FileOps& ops_;
    const Texts& texts_;
    std::deque<Line> lines_;  ///< The form has pointers to them.
};

/// Returns "rwxr-x---", with "s" and "t" as the system's own list of files has them, and the number.
std::string rightsText(std::uint32_t mode) {
    constexpr std::string_view kLetters = "rwxrwxrwx";
    std::string text;
    for (std::size_t i = 0; i < kLetters.size(); ++i)
        text += (mode >> (kLetters.size() - 1 - i) & 1U) != 0 ? kLetters[i] : '-';
    constexpr std::array<std::pair<std::uint32_t, std::size_t>, 3> kSpecial = {
        {{04000, 2}, {02000, 5}, {01000, 8}}};
    for (const auto& [bit, at] : kSpecial)
        if ((mode & bit) != 0)
            text[at] = static_cast<char>((at == 8 ? 't' : 's') - (text[at] == '-' ? 32 : 0));
    std::string digits;
    for (int shift = 9; shift >= 0; shift -= 3) digits += static_cast<char>('0' + (mode >> shift & 7U));
    return text + " (" + digits + ")";
}

// --- the lines

std::string PropertiesForm::bytes(std::uint64_t count) const {
    const SizeValue size = SizeValue::fromBytes(count);
    const NumberFormat& numbers = ops_.scan.numbers;
    const std::string exact = FormatSizeForMode(kModeBytes, size, true, false, numbers);
    const std::string rounded = FormatSizeAuto(size, true, numbers);
    return count < 1024 ? exact : rounded + " (" + exact + ")";
}

void PropertiesForm::add(std::string caption, std::string value, int lines) {
    if (value.empty()) return;
    TextBox box{.text = std::move(value), .readOnly = true, .multiLine = lines > 1, .lines = lines};
    lines_.push_back({std::move(caption), std::move(box)});
}

void PropertiesForm::addSizes(std::uint64_t size, std::uint64_t space) {
    add(texts_.TL(3623, "Größe"), bytes(size));
    add(texts_.TL(9762, "Auf dem Datenträger"), bytes(space));
}

void PropertiesForm::addTime(std::string caption, std::int64_t seconds) {
    const auto mask = parseMask(dateMask(ops_.scan.options.DateFormat));
    if (seconds != 0 && mask) add(std::move(caption), maskedDate(*mask, localTime(seconds)));
}

void PropertiesForm::addOne(const std::string& path, const FileFacts& facts) {
    add(texts_.TL(3626, "Pfad"), visible(path));
    add(texts_.TL(9104, "Typ"), facts.type);
    const bool folder = (facts.mode & kKindOfMode) == kFolderMode;
    if (folder) {
        addFolder(path);
    } else {
        addSizes(facts.size, facts.space);
    }
    addTime(texts_.TL(9106, "Änderungsdatum"), facts.modified);
    addTime(texts_.TL(9107, "Erstellungsdatum"), facts.created);
    addTime(texts_.TL(9108, "Zugriffsdatum"), facts.accessed);
    add(texts_.TL(9763, "Eigentümer"), facts.owner + (facts.group.empty() ? "" : " : " + facts.group));
    add(texts_.TL(9764, "Rechte"), rightsText(facts.mode));
    if (!folder && facts.links > 1) addNames(path, facts.links);
}

// What the report knows of a folder; the system knows nothing of what is in it.
void PropertiesForm::addFolder(const std::string& path) {
    const Grid& report = ops_.scan.tvwPL;
    for (Row root = firstLiveSource(ops_.scan); root != kNoRow; root = nextLiveSource(ops_.scan, root)) {
        const Row row = rowOfFolder(report, root, path, ops_.scan.paths);
        if (row == kNoRow) continue;
        const auto count = [&](CellId cell) {
            return formatNumber(report.number(row, cell), {}, ops_.scan.numbers);
        };
        add(texts_.TL(3623, "Größe"), bytes(static_cast<std::uint64_t>(report.number(row, kSize))));
        add(texts_.TL(9765, "Inhalt"),
            texts_.TL(9766, "Dateien: %1, Ordner: %2", {count(kFiles), count(kFolders)}));
        return;
    }
}

// The list of hardlinks may have the file's other names.
void PropertiesForm::addNames(const std::string& path, std::uint32_t count) {
    const Grid& list = ops_.scan.lvwHardlinks;
    const auto pathOf = [&](Row row) {
        return std::string(list.cellText(row, kFilePath)).append(list.text(row));
    };
    const auto fileOf = [&](Row row) {
        return std::pair(list.number(row, kFileDevice), list.cellText(row, kFileId));
    };
    Row own = list.firstRoot();
    while (own != kNoRow && pathOf(own) != path) own = list.nextSibling(own);
    std::string names;
    for (Row row = list.firstRoot(); own != kNoRow && row != kNoRow; row = list.nextSibling(row))
        if (row != own && fileOf(row) == fileOf(own))
            names += (names.empty() ? "" : "\n") + visible(pathOf(row));
    constexpr int kLines = 4;
    add(texts_.TL(3740, "Hardlinks"), std::to_string(count));
    add(texts_.TL(9767, "Weitere Namen"), names, kLines);
}

void PropertiesForm::addSums(const std::vector<std::string>& paths) {
    std::uint64_t size = 0, space = 0;
    std::size_t found = 0;
    for (const std::string& path : paths) {
        const auto facts = ops_.window.desktop.facts(path);
        if (ops_.host.closed()) return;
        if (!facts) continue;
        ++found;
        size += facts->size;
        space += facts->space;
    }
    if (found == 0) return;
    add(texts_.TL(9768, "Ausgewählt"), formatNumber(static_cast<double>(found), {}, ops_.scan.numbers));
    addSizes(size, space);
}

// --- the form

void PropertiesForm::show(const std::vector<std::string>& paths) {
    if (paths.size() > 1) {
        addSums(paths);
    } else if (const auto facts = ops_.window.desktop.facts(paths.front())) {
        addOne(paths.front(), *facts);
    }
    if (!lines_.empty() && !ops_.host.closed()) open();
}

void PropertiesForm::open() {
    CommandButton OKButton{texts_.TL(3610, "OK")};
    bool loaded = true;
    Form form;
    form.name = "frmProperties";
    form.caption = texts_.TL(9566, "Eigenschaften");
    for (Line& line : lines_) {
        const int row = static_cast<int>(form.items.size()) / 2;
        form.items.push_back({.control = &line.caption, .row = row});
        form.items.push_back({.control = &line.value, .row = row, .column = 1, .name = line.caption});
    }
    form.buttons = {{.control = &OKButton, .changed = [&] { loaded = false; }}};
    form.cancel = [&] { loaded = false; };
    form.loaded = &loaded;
    ops_.window.dialogs.showForm(form);
}

}  // namespace

void showProperties(const FileOps& ops, const std::vector<std::string>& paths) {
    PropertiesForm(ops).show(paths);
}

}  // namespace hl
