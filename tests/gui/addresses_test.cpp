// Tests which addresses the window offers, in a build in which all are set and in one in which none is.

#include "gui/window_fixture.h"
#include "mainwindow/about_form.h"

namespace hl::test {
namespace {

struct AddressesTest : testing::TestWithParam<Addresses> {
    TempDir home;
};

TEST_P(AddressesTest, AreOfferedInBarAndAboutBoxWithNoGapForThoseThatAreMissing) {
    const Addresses& pages = GetParam();
    Session s(home.path(), pages);
    s.start();
    EXPECT_EQ(s.frame().findChild<QWidget*>(entryName(Command::kHomepage)) != nullptr,
              !pages.homepage.empty());
    s.answers.add([&](QDialog& dialog) {
        int links = 0;
        for (const auto* label : dialog.findChildren<QLabel*>())
            links += label->focusPolicy() == Qt::StrongFocus ? 1 : 0;
        EXPECT_EQ(links, !pages.homepage.empty() + !pages.forum.empty() + !pages.donation.empty());
        dialog.reject();
    });
    s.click(Command::kInfo);
}

TEST_P(AddressesTest, StandSideBySideAndAreOpenedByTheirLinks) {
    const Addresses& pages = GetParam();
    Logic logic(home.path());
    std::vector<std::string> opened, named;
    for (const std::string& page : {pages.homepage, pages.forum, pages.donation})
        if (!page.empty()) named.push_back(page);
    AboutForm about({logic.texts(), pages, "1.0", [&](const std::string& url) { opened.push_back(url); }});
    int row = 3, column = 0;
    for (const FormItem& item : about.form().items) {
        if (item.row < 4) continue;
        EXPECT_TRUE(item.row == row ? item.column == column + 1 : item.row == row + 1 && item.column == 0);
        row = item.row, column = item.column;
        item.changed();
    }
    EXPECT_EQ(opened, named);
}

INSTANTIATE_TEST_SUITE_P(Builds, AddressesTest,
                         testing::Values(Addresses(), kAllAddresses,
                                         Addresses{"", "forum.test", "give.test", ""},
                                         Addresses{"home.test", "", "give.test", ""}));

}  // namespace
}  // namespace hl::test
