#include "views/drive_combo.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "app/setting_keys.h"
#include "scan/records.h"
#include "support/test_texts.h"

namespace hl {
namespace {

const std::vector<Drive> kDrives = {
    {"/boot", DriveType::kFixed, "ext4", "", 0},      {"/", DriveType::kFixed, "ext4", "root", 0},
    {"/net", DriveType::kRemote, "nfs", "nas:/x", 0}, {"/tmp", DriveType::kRam, "tmpfs", "", 0},
    {"/no", DriveType::kNoRoot, "", "", 0},           {"/what", DriveType::kUnknown, "", "", 0}};

struct DriveCombo : testing::Test {
    std::string selected() const { return combo.selected() == nullptr ? "" : combo.selected()->text; }
    std::vector<std::string> saved() const {
        return readNumberedList(texts.store.read(), kSectionComboFolders, kComboFolderSuffix);
    }
    void save(const std::vector<std::string>& folders) {
        texts.store.change(
            [&](IniText& ini) { writeNumberedList(ini, kSectionComboFolders, kComboFolderSuffix, folders); });
    }
    void load(const std::string& comboText) {
        GetAllSavedComboFolders(
            combo, texts.store, kDrives, comboText,
            [&](const std::string& folder) {
                asked.push_back(folder);
                return folder.find("gone") == std::string::npos;
            },
            kPosixPaths);
    }

    test::TestTexts texts;
    SourceCombo combo;
    std::vector<std::string> asked;
};

TEST_F(DriveCombo, ShowsDrivesWithTheirLabels) {
    GetAllDrives(combo, kDrives, "", kPosixPaths);
    std::string shown;
    for (const SourceItem& item : combo.items())
        shown += item.text + "|" + item.key + "|" + item.tag + "|" + std::to_string(item.image) + "\n";
    EXPECT_EQ(shown,
              "/boot|/boot/|/boot/|2\n/ [root]|/|/|2\n/net [nas:/x]|/net/|/net/|3\n/tmp|/tmp/|/tmp/|5\n");
    combo.addOrSelect("/net", kPosixPaths);
    EXPECT_EQ(combo.items().size(), 4U) << "a drive that is typed is the drive";
}

TEST_F(DriveCombo, SelectsTheLastOfTheStoredTextAndTheRoot) {
    const char* const cases[][2] = {
        {"", "/ [root]"}, {"/net [nas:/x]", "/net [nas:/x]"}, {"/boot", "/ [root]"}, {"/net", "/ [root]"}};
    for (const auto& [stored, expected] : cases) {
        combo = {};
        GetAllDrives(combo, kDrives, stored, kPosixPaths);
        EXPECT_EQ(selected(), expected) << stored;
        EXPECT_EQ(combo.text, expected) << stored;
    }
}

TEST_F(DriveCombo, TakesBackSavedFoldersThatExistOnce) {
    save({"/a/", "/gone/", "/net/gone/", "/a/", "/tmp/", "/b \xFF/"});
    GetAllDrives(combo, kDrives, "/tmp/", kPosixPaths);
    load("/a/");
    std::string shown;
    for (std::size_t i = 4; i < combo.items().size(); ++i) shown += combo.items()[i].tag + "|";
    EXPECT_EQ(shown, "/a/|/net/gone/|/b \xFF/|");
    EXPECT_EQ(selected(), "/a/");
    EXPECT_EQ(combo.items()[4].image, kPictureSource);
    EXPECT_EQ(std::count(asked.begin(), asked.end(), "/net/gone/"), 0) << "its server may be dead";
}

TEST_F(DriveCombo, SavesTheLastTenFoldersFromTheEnd) {
    GetAllDrives(combo, kDrives, "", kPosixPaths);
    for (int i = 0; i < 12; ++i) combo.addOrSelect("/f" + std::to_string(i), kPosixPaths);
    combo.add({"  ", "  ", "  ", kPictureSource});
    SaveAllComboFolders(combo, texts.store);
    ASSERT_EQ(saved().size(), 10U);
    EXPECT_EQ(saved().front(), "/f11/");
    EXPECT_EQ(saved().back(), "/f2/");
    SaveAllComboFolders(SourceCombo(), texts.store);
    EXPECT_TRUE(saved().empty());
}

}  // namespace
}  // namespace hl
