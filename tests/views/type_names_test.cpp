// views/type_names.h: what a look into a file may cost.
#include "views/type_names.h"

#include <gtest/gtest.h>

#include "platform/linux/files.h"
#include "support/temp_dir.h"
#include "support/whole_files.h"

namespace hl {
namespace {

struct DecidesDots : FileTypes {
    std::optional<std::string> typeName(std::string_view fileName) override {
        if (fileName.find('.') == std::string_view::npos) return std::nullopt;
        return "by name";
    }
    std::string typeName(std::string_view, std::string_view beginning) override {
        return "by " + std::string(beginning);
    }
    std::string iconName(std::string_view) override { return "icon"; }
};

TEST(TypeNames, LookIntoSoManyFilesOfAListWhoseNamesDecideNothing) {
    const test::TempDir folder;
    test::writeFile(folder.path() + "/plain", "content");
    test::writeFile(folder.path() + "/x.y", "content");
    LinuxFiles files;
    DecidesDots types;
    TypeNames names(types, files);
    for (int list = 0; list < 2; ++list) {
        names.restart();
        int looked = 0;
        for (int i = 0; i < TypeNames::kMostLooks + 9; ++i) {
            EXPECT_EQ(names.of(folder.path() + "/x.y"), "by name");
            looked += names.of(folder.path() + "/plain") == "by content" ? 1 : 0;
        }
        EXPECT_EQ(looked, TypeNames::kMostLooks);
    }
    names.restart();
    EXPECT_EQ(names.of(folder.path() + "/missing"), "");
}

}  // namespace
}  // namespace hl
