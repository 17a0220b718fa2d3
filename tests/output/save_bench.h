// A report grid made by hand, and everything needed to save it.
#pragma once

#include "output/save_report.h"
#include "support/test_scan.h"

namespace hl::test {

/// Is returned in place of a report that was not written.
inline constexpr const char* kNotWritten = "NOT WRITTEN";

/// Uses German, sizes in megabytes with decimals, and paths with "/", unless a test changes that.
struct SaveBench : TestScan, SaveDialog {
    explicit SaveBench(const std::string& locale = "de_DE.UTF-8") : TestScan(locale) {
        options.FileSizeFormat = 2;
        options.SizeFormatNachkommastellenFolders = 1;
    }

    Row folder(Row parent, std::string_view name, std::int64_t size, int fileCount, int folderCount) {
        const Row row = filesRow(parent, name, size, fileCount);
        report.setNumber(row, kIsFolder, 1);
        report.setNumber(row, kFolders, folderCount);
        return row;
    }
    Row filesRow(Row parent, std::string_view name, std::int64_t size, int fileCount) {
        const Row row = report.addRow(parent, name);
        report.setNumber(row, kSize, static_cast<double>(size));
        report.setNumber(row, kFiles, fileCount);
        return row;
    }
    /// Makes a small tree of three levels and returns its folder "Bilder".
    Row sampleTree(std::string_view rootText, std::string_view filesText = "Dateien") {
        const Row root = folder(kNoRow, rootText, 1302383820, 1337, 5);
        folder(root, "Musik", 1288490188, 1310, 1);
        const Row bilder = folder(root, "Bilder", 13107200, 25, 3);
        const Row urlaub = folder(bilder, "Urlaub", 10485760, 20, 1);
        filesRow(urlaub, filesText, 5242881, 11);
        folder(urlaub, "2023", 5242879, 9, 0);
        filesRow(bilder, filesText, 2621440, 5);
        filesRow(root, filesText, 786432, 2);
        return bilder;
    }
    /// Makes `count` folders, each inside the one before.
    void chain(std::size_t count) {
        for (Row row = folder(kNoRow, "/c", 1024, 1, 1); count > 1; --count)
            row = folder(row, "f", 1024, 1, 1);
    }

    std::string pathOf(const std::string& name) const { return dir.path() + "/" + name; }
    std::string askSavePath(const SaveQuestion& question) override {
        asked.push_back(question);
        return answer;
    }
    /// Saves the report as a run without a window does and returns it.
    std::string saved(const std::string& name, std::int32_t levels = 0, std::int32_t delimiter = -1) {
        SilentOrder line;
        line.outputFile = pathOf(name);
        line.levels = levels;
        line.delimiterIndex = delimiter;
        const auto target = files.replace(line.outputFile);
        return SPEICHERN(scan, orderOf(line), **target).written ? contentOf(line.outputFile) : kNotWritten;
    }
    /// Saves the report as the form's controls say, and returns it.
    std::string savedBy(SaveForm& frmSave, const std::string& name) {
        answer = pathOf(name);
        return frmSave.SPEICHERN() ? contentOf(answer) : kNotWritten;
    }

    std::string answer;               ///< The path that the dialog answers.
    std::vector<SaveQuestion> asked;  ///< What the dialog was asked.
};

}  // namespace hl::test
