// Tests the table of pictures against the drawings in data/icons.
#include "platform/icons.h"

namespace {

namespace fs = std::filesystem;

const fs::path kFolder = fs::path(HARBORLANTERN_SOURCE_DIR) / "data" / "icons";

/// Returns what a drawing of 16 pixels must not have, or an empty text if it suits both palettes and needs no
/// other file.
std::string faultOf(const std::string& svg) {
    if (!svg.starts_with("<svg xmlns=\"http://www.w3.org/2000/svg\"")) return "no SVG";
    if (!svg.ends_with("</svg>\n")) return "cut off";
    if (svg.find(" viewBox=\"0 0 16 16\"") == std::string::npos) return "another grid than 16x16";
    static const std::regex foreign(
        "<(text|image|use|style|script|filter|\\w+Gradient)|href|url\\(|@import|<!");
    std::smatch match;
    if (std::regex_search(svg, match, foreign)) return "has " + match.str();
    // For dark palettes the strokes are recoloured by their exact colour; another grey would be invisible
    // there.
    static const std::regex paint(
        "(?:fill|stroke)=\"(?!none\"|#303030\"|#2f6fb5\"|#c0392b\"|#3a8f4d\")[^\"]*\"");
    if (std::regex_search(svg, match, paint)) return "has " + match.str();
    static const std::regex bare("<(?:path|circle|ellipse|rect)(?![^>]*fill=)[^>]*>");
    return std::regex_search(svg, match, bare) ? "black by default: " + match.str() : "";
}

TEST(Icons, EachNumberHasADrawingOfItsOwn) {
    std::vector<int> numbers = {hl::kIconDriveRemovable, hl::kIconDriveFixed,  hl::kIconDriveNetwork,
                                hl::kIconDriveDisc,      hl::kIconDriveOther,  hl::kIconSource,
                                hl::kIconFolder,         hl::kIconLink,        hl::kIconFilesRow,
                                hl::kIconMountPoint,     hl::kIconAccessError, hl::kIconIncomplete,
                                hl::kIconSnapshot,       hl::kIconLeftOut};
    for (int command = hl::kIconNew; command <= hl::kIconLast; ++command) numbers.push_back(command);
    std::set<std::string> used;
    for (const int number : numbers) {
        const hl::IconNames* names = hl::iconNames(number);
        ASSERT_NE(names, nullptr) << number;
        EXPECT_EQ(names->number, number);
        EXPECT_TRUE(used.insert(names->own).second) << names->own << " stands for two";
        const fs::path file = kFolder / (std::string(names->own) + ".svg");
        ASSERT_TRUE(fs::is_regular_file(file)) << file;
        EXPECT_EQ(faultOf(hl::test::contentOf(file)), "") << file;
    }
    for (const int number : {-1, 0, 9, 24, hl::kIconNew - 1, hl::kIconLast + 1, 9999})
        EXPECT_EQ(hl::iconNames(number), nullptr) << number;
}

}  // namespace
