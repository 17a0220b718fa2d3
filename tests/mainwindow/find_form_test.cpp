#include "mainwindow/find_form.h"

#include "scan/find_terms.h"
#include "support/test_scan.h"

namespace hl::test {
namespace {

TEST(FindForm, WritesBackWhatItReads) {
    TestScan bench;
    const std::pair<const char*, const char*> cases[] = {
        {"", ""},
        {"size>1G size<=2.5T age>=1y age<30d", ""},
        {"  name=*.iso|*.img \t kind=\"disk image\" owner=#0 type=o ",
         "name=*.iso|*.img kind=\"disk image\" owner=#0 type=o"},
        {"name=*part* owner=\"a \\\"b\\\\\"", ""},
        {"word", "name=*word*"},
        {"name=exact", ""},
        {"disk>1M", ""},
        {"type!=l name=a\"b size>1 size>2", "size>1 type!=l name=a\"b size>2"},
        {"\"open quote", ""}};
    for (const auto& [text, same] : cases) {
        const FindForm form(bench.services, text, {});
        EXPECT_EQ(form.filter(), std::string(*same != '\0' ? same : text));
    }
}

TEST(FindForm, TakesAPlainNameForAPartAndAPatternAsItIs) {
    TestScan bench;
    FindForm form(bench.services, "name=*old*", {});
    EXPECT_EQ(form.txtName.text, "old");
    form.txtName.text = "my \"films\"";
    EXPECT_EQ(form.filter(), "name=\"*my \\\"films\\\"*\"");
    form.txtName.text = "*.mkv";
    form.cboType.index = 1;
    EXPECT_EQ(form.filter(), "name=*.mkv type=f");
    form.txtOlder.text = "soon";
    form.cmdOK_Click();
    EXPECT_TRUE(form.loaded);
    EXPECT_TRUE(has(form.lblProblem, "\"age>soon\""));
    form.txtOlder.text = "2w";
    form.cmdOK_Click();
    EXPECT_TRUE(form.accepted() && !form.loaded);
}

}  // namespace
}  // namespace hl::test
