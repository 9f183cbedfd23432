/*
 * dot_test.cpp - Graphviz' language: quoting, boxes, edges.
 */
#include "softnode/views/dot.h"

#include <gtest/gtest.h>

using namespace softnode;

namespace
{

bool holds(const std::string &text, const std::string &part)
{
    return text.find(part) != std::string::npos;
}

} // namespace

TEST(Dot, TextIsQuotedForALabel)
{
    EXPECT_EQ(escaped("a <b> & \"c\""), "a &lt;b&gt; &amp; &quot;c&quot;");
    EXPECT_EQ(escaped("100 Mbit/s"), "100 Mbit/s");
    EXPECT_EQ(escaped(""), "");
}

TEST(Dot, ABoxQuotesAllItsTexts)
{
    DotBox box("#123456");
    box.title("<title>", "<right>");
    box.line({{"<plain>"}, {"<faint>", Tone::faint}, {"<alarm>", Tone::alarm}});
    const std::string label = box.label();
    for (const char *text : {"title", "right", "plain", "faint", "alarm"})
        EXPECT_TRUE(holds(label, "&lt;" + std::string(text) + "&gt;")) << text;
}

TEST(Dot, ABoxHasItsColourAndItsWidth)
{
    const std::string label = DotBox("#123456", 77).label();
    EXPECT_TRUE(holds(label, "color=\"#123456\""));
    EXPECT_TRUE(holds(label, "width=\"77\""));
}

TEST(Dot, ALineHasAPortWhenItIsGivenOne)
{
    DotBox box("#123456");
    box.line({{"without"}});
    EXPECT_FALSE(holds(box.label(), "port"));
    box.line({{"with"}}, "there");
    EXPECT_TRUE(holds(box.label(), "port=\"there\""));
}

TEST(Dot, WordsWithoutTextLeaveNoTags)
{
    DotBox box("#123456");
    box.line({{"text"}, {"", Tone::alarm}});
    const std::string with_nothing = box.label();
    DotBox other("#123456");
    other.line({{"text"}});
    EXPECT_EQ(with_nothing, other.label());
}

TEST(Dot, AnEdgeLeavesAtTheRightAndArrivesAtTheLeft)
{
    DotDocument document;
    document.edge({"a"}, {"b b", "p"});
    document.edge({"a", "q"}, {"b b"}, DotLine::dashed);
    EXPECT_TRUE(holds(document.text(), "\n    \"a\":e -> \"b b\":\"p\":w\n"));
    EXPECT_TRUE(holds(document.text(), "\n    \"a\":\"q\":e -> \"b b\":w [style=dashed, dir=none]\n"));
}

TEST(Dot, ColumnsStandFromTheLeftInTheOrderOfOpening)
{
    constexpr DotColumn column{"some", "Some & others", "#123456", "#abcdef"};
    DotDocument document;
    document.open(column);
    document.close();
    for (const char *first : {"a", "b"}) {
        document.open(column);
        document.box(first, DotBox("#123456"));
        document.box(std::string(first) + "2", DotBox("#123456"));
        document.close();
        document.box("beside", DotBox("#123456"));
    }
    EXPECT_TRUE(holds(document.text(), "label=<<b>Some &amp; others</b>>"));
    EXPECT_TRUE(holds(document.text(), "{rank=same; \"a\"; \"a2\"}"));
    EXPECT_TRUE(holds(document.text(), "{rank=same; \"b\"; \"b2\"}\n    \"a\" -> \"b\" [style=invis]"));
}
