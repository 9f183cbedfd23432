// What of a text could be taken for a request.
#include "options/documents/roff.h"

#include <gtest/gtest.h>

namespace options
{
namespace
{

const std::string beginning = ".TH \"PAGE\" 5 \"\" \"kelctl 1.0\" \"kelctl\"\n.SH \"NAME\"\npage \\- about it\n";

TEST(RoffPage, BeginsWithItsName)
{
    EXPECT_EQ(roff_page("page", 5, "kelctl", "1.0", "about it").written(), beginning);
}

TEST(RoffPage, TextIsNoRequest)
{
    roff_page page("page", 5, "kelctl", "1.0", "about it");
    page.text(".SH it is not\n'nor this\na \"word\" \\n --option");
    EXPECT_EQ(page.written(), beginning + "\\&.SH it is not\n\\&'nor this\na \\(dqword\\(dq \\en \\-\\-option\n");
}

TEST(RoffPage, EmptyLineBeginsAParagraph)
{
    roff_page page("page", 5, "kelctl", "1.0", "about it");
    page.section("SECTION");
    page.text("one\n\ntwo");
    page.item("--tag", "first\n\nsecond");
    EXPECT_EQ(page.written(),
              beginning + ".SH \"SECTION\"\none\n.PP\ntwo\n.TP\n\\fB\\-\\-tag\\fR\nfirst\n.IP\nsecond\n");
}

TEST(RoffPage, ExamplesKeepTheirLines)
{
    roff_page page("page", 5, "kelctl", "1.0", "about it");
    page.example("one\n\ntwo");
    EXPECT_EQ(page.written(), beginning + ".PP\n.RS 4\n.EX\none\n\ntwo\n.EE\n.RE\n");
}

} // namespace
} // namespace options
