/*
 * spelling_test.cpp - which name was probably meant, and lists of names in lines.
 */
#include "softnode/faults/spelling.h"

#include "softnode/faults/closed_functions.h"

#include <gtest/gtest.h>

#include <array>
#include <sstream>

using namespace softnode;

namespace
{

std::string_view meant(std::string_view name)
{
    return closest(name, closed_functions);
}

} // namespace

TEST(Spelling, FindsTheNameWithALetterTooFewTooManyOrWrong)
{
    EXPECT_EQ(meant("kel_init_atach"), "kel_init_attach");
    EXPECT_EQ(meant("kel_init_attachh"), "kel_init_attach");
    EXPECT_EQ(meant("kel_init_attacc"), "kel_init_attach");
    EXPECT_EQ(meant("ork_unbnd"), "ork_unbind");
    EXPECT_EQ(meant("ork_bxxd"), "ork_bind") << "a quarter of the letters";
}

TEST(Spelling, PrefersTheNearestName)
{
    EXPECT_EQ(meant("ork_ebcom_interface_creat"), "ork_ebcom_interface_create");
    EXPECT_EQ(meant("ork_qos_scheduler_delet"), "ork_qos_scheduler_delete");
}

TEST(Spelling, GuessesNothingWhenTooMuchIsWrong)
{
    for (const char *name :
         {"", "x", "attach", "softnode_reset", "a name that is far longer than any of those known here"})
        EXPECT_EQ(meant(name), "") << name;
}

TEST(Spelling, ListsNamesInLinesThatAreNotTooLong)
{
    std::istringstream lines(in_lines(closed_functions));
    std::size_t count = 0;
    for (std::string line; std::getline(lines, line); ++count) {
        EXPECT_LE(line.size(), 100U);
        EXPECT_EQ(line.find("  "), 0U);
    }
    EXPECT_GT(count, 5U);
    EXPECT_LT(count, closed_functions.size());
}

TEST(Spelling, BreaksALineWhereTheNextNameNoLongerFits)
{
    const std::string half(47, 'a');
    const std::string fits(48, 'b'); /* with its comma, to the hundredth column */
    const std::string more(49, 'c');
    EXPECT_EQ(in_lines(std::array<std::string_view, 3>{half, fits, more}), "  " + half + ", " + fits + ",\n  " + more);
    EXPECT_EQ(in_lines(std::array<std::string_view, 2>{half, more}), "  " + half + ",\n  " + more);
    const std::string longest(120, 'd');
    EXPECT_EQ(in_lines(std::array<std::string_view, 1>{longest}), "  " + longest);
}
