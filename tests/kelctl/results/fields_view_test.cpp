// Named values as text.
#include "kelctl/results/fields_view.h"

#include "terminal/terminal.h"

#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

std::string plain(const fields &shown, std::optional<size_t> width = {})
{
    return fields_text(shown, {terminal::painter(false), width});
}

TEST(FieldsView, NothingIsNoText)
{
    EXPECT_EQ(plain(fields::object()), "");
}

TEST(FieldsView, NamesLoseTheirUnderscoresAndValuesStandBelowEachOther)
{
    EXPECT_EQ(plain({{"queue_handle", "0x5d"}, {"vsi", 258}, {"bound", true}, {"rate", nullptr}}),
              "queue handle  0x5d\n"
              "vsi           258\n"
              "bound         yes\n"
              "rate          -\n");
}

TEST(FieldsView, ListsAreTakenIntoALine)
{
    EXPECT_EQ(plain({{"members", fields::array({1, 2})}, {"none", fields::array()}}), "members  1, 2\nnone     none\n");
}

TEST(FieldsView, RowsAreATableWithNumbersAtTheRight)
{
    const fields rows = fields::array({{{"name", "RLU1P"}, {"queue", 0}}, {{"name", "MZ"}, {"queue", nullptr}}});
    EXPECT_EQ(plain({{"count", 2}, {"ports", rows}}), "count  2\n"
                                                      "\n"
                                                      "name   queue\n"
                                                      "RLU1P      0\n"
                                                      "MZ         -\n");
}

TEST(FieldsView, LinesEndWithoutBlanks)
{
    const fields rows = fields::array({{{"a", 1}, {"b", "longer"}}, {{"a", 2}, {"b", "x"}}});
    EXPECT_EQ(plain({{"rows", rows}}), "a  b\n1  longer\n2  x\n");
}

TEST(FieldsView, NamedValuesUnderANameFollowIt)
{
    EXPECT_EQ(plain({{"outer", {{"inner", 1}}}}), "outer\ninner  1\n");
}

TEST(FieldsView, TextIsShownAsItIsAndEndsItsLine)
{
    EXPECT_EQ(plain(""), "");
    EXPECT_EQ(plain("a_b  c"), "a_b  c\n");
    EXPECT_EQ(plain("a\nb\n"), "a\nb\n");
}

TEST(FieldsView, TableThatIsTooWideGoesOnInFurtherOnes)
{
    const fields rows = fields::array({{{"id", 1}, {"first_name", "abc"}, {"second_name", "def"}},
                                       {{"id", 2}, {"first_name", "ghi"}, {"second_name", "jkl"}}});
    EXPECT_EQ(plain({{"rows", rows}}, 24), "    first  second\n"
                                           "id  name   name\n"
                                           " 1  abc    def\n"
                                           " 2  ghi    jkl\n");
    EXPECT_EQ(plain({{"rows", rows}}, 12), "    first\n"
                                           "id  name\n"
                                           " 1  abc\n"
                                           " 2  ghi\n"
                                           "\n"
                                           "    second\n"
                                           "id  name\n"
                                           " 1  def\n"
                                           " 2  jkl\n");
}

TEST(FieldsView, LinesAreFolded)
{
    EXPECT_EQ(plain({{"text", "some words here"}}, 14), "text  some\n    words here\n");
    const fields rows = fields::array({{{"id", 1}, {"text", "some words here"}}});
    EXPECT_EQ(plain({{"rows", rows}}, 14), "id  text\n 1  some words\n     here\n");
}

TEST(FieldsView, ValueThatARowHasNotIsNone)
{
    EXPECT_EQ(plain({{"rows", fields::array({{{"a", 1}, {"b", 2}}, {{"a", 3}}})}}), "a  b\n1  2\n3  -\n");
}

TEST(FieldsView, NamesArePainted)
{
    EXPECT_EQ(fields_text({{"vsi", 1}}, {terminal::painter(true)}), "\x1b[1mvsi\x1b[0m  1\n");
    EXPECT_EQ(fields_text({{"rows", fields::array({{{"a", 1}}})}}, {terminal::painter(true)}), "\x1b[1ma\x1b[0m\n1\n");
}

} // namespace
} // namespace kelctl
