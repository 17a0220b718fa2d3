// Tests output/save_files.h with real files.
#include "output/save_files.h"

#include "support/fake_window.h"
#include "support/test_scan.h"
#include "views/list_columns.h"

namespace hl::test {
namespace {

struct SaveFiles : testing::Test, TestScan, SaveDialog {
    Grid list{kFileCells};
    std::string path = dir.path() + "/list.txt";
    std::string extension;  ///< The extension that the dialog was given.

    SaveFiles() {
        options.DateFormat = "dd.MM.yyyy hh:nn:ss";
        options.FileColumn = {1, 0, 1, 0, 1, 0, 1};
        Init_List(list, kFilesTable, options, texts);
        options.FileSizeFormatFiles = 1;
        showSizes(list, kFilesTable, options, texts);
    }
    std::string askSavePath(const SaveQuestion& question) override {
        extension = question.defaultExtension;
        return path;
    }
    void addFile(std::string_view name, double size) {
        const Row row = list.addRow(kNoRow, name);
        list.setNumber(row, kFileSize, size);
        list.setCellText(row, kFileType, "Text");
    }
    std::string saved(SaveFormat format) {
        SaveFilesForm frmSaveFiles(services, list, *this);
        frmSaveFiles.cboFormat.index = format;
        frmSaveFiles.cboFormat_Click();
        EXPECT_EQ(frmSaveFiles.cboDelimiter.index,
                  format == kFormatTxt ? kDelimiterTab : kDelimiterSemicolon);
        EXPECT_TRUE(frmSaveFiles.SPEICHERN() && !(frmSaveFiles.loaded || frmSaveFiles.hourglass));
        return contentOf(path);
    }
};

// The column of the last access is visible, too, but is never written.
TEST_F(SaveFiles, WritesTheVisibleColumnsButTheLastAccessInTheFormatChosen) {
    addFile("b\n\xFF.txt", 1536);
    addFile("c \"q\"", 0);
    list.setNumber(list.rowAt(0), kFileDate, 86400 * 365 + 43200);
    const std::string date = formatDate(localTime(86400 * 365 + 43200), options.DateFormat);
    const std::string odd = "\xEF\xBF\xBD";
    EXPECT_EQ(saved(kFormatTxt), "b" + odd + odd + ".txt\t1,5\tText\t" + date + "\r\nc \"q\"\t0\tText\t\r\n");
    EXPECT_EQ(extension, "txt");
    EXPECT_EQ(saved(kFormatCsv), "\"Dateiname\";\"Größe (KB)\";\"Typ\";\"Änderungsdatum\"\r\n\"b\n" + odd +
                                     ".txt\";\"1,5\";\"Text\";\"" + date +
                                     "\"\r\n\"c \"q\"\";\"0\";\"Text\";\"\"\r\n")
        << "also to a name that ends in .txt";
    EXPECT_EQ(extension, "csv");
}

TEST_F(SaveFiles, SizesOfTheUnitThatFitsThemAreWrittenAsBytes) {
    addFile("a", 1536);
    std::string bytes;
    for (const std::uint8_t mode : {std::uint8_t{0}, std::uint8_t{6}}) {
        options.FileSizeFormatFiles = mode;
        options.SizeFormatNachkommastellenFiles = mode == 0 ? 0 : 1;
        showSizes(list, kFilesTable, options, texts);
        const std::string text = saved(kFormatCsv) + saved(kFormatTxt);
        if (mode == 0) bytes = text;
        EXPECT_EQ(text, bytes);
    }
}

TEST_F(SaveFiles, CsvMakesNoTextAFormulaWhenAskedToAndKeepsThat) {
    const std::string names[] = {"=1+1", "+1", "-1", "@a", "\tb", "\rc", "a=", "'d"};
    for (const std::string& name : names) addFile(name, 0);
    list.setCellText(list.rowAt(0), kFileType, "=T");
    const auto startsAs = [&](SaveFormat format, const std::string& mark) {
        const std::string all = saved(format);
        for (const std::string& name : names) {
            const bool formula = name != "a=" && name != "'d";
            EXPECT_TRUE(has(all, "\n\"" + (formula ? mark : "") + name + "\";\"0\";"));
        }
        EXPECT_TRUE(has(all, "\"" + mark + "=T\""));
    };
    startsAs(kFormatCsv, "");
    SaveFilesForm form(services, list, *this);
    EXPECT_FALSE(form.chkFormulas.checked || form.chkFormulas.enabled);
    form.cboFormat.index = kFormatCsv;
    form.cboFormat_Click();
    EXPECT_TRUE(form.chkFormulas.enabled);
    form.chkFormulas.checked = true;
    EXPECT_TRUE(form.SPEICHERN());
    startsAs(kFormatCsv, "'");
    EXPECT_TRUE(saved(kFormatTxt).starts_with("=1+1\t"));
}

TEST_F(SaveFiles, WritesNothingWithoutAPathAndReportsOneThatCannotBeWritten) {
    addFile("a", 1);
    path.clear();
    SaveFilesForm cancelled(services, list, *this);
    EXPECT_FALSE(cancelled.SPEICHERN() || cancelled.loaded || cancelled.hourglass);
    EXPECT_EQ(reports("SPEICHERN"), 0U);
    path = dir.path() + "/nowhere/list.txt";
    SaveFilesForm refused(services, list, *this);
    EXPECT_FALSE(refused.SPEICHERN());
    EXPECT_EQ(reports("SPEICHERN"), 1U);
}

TEST_F(SaveFiles, AsksNothingForAListWithoutRows) {
    FakeWindow window;
    Save_Files(services, list, *this, window);
    EXPECT_TRUE(window.calls.empty());
    addFile("a", 1);
    Save_Files(services, list, *this, window);
    EXPECT_EQ(window.calls, std::vector<std::string>{"form"});
}

}  // namespace
}  // namespace hl::test
