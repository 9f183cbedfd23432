/*
 * dot.cpp - writing Graphviz' language: the looks of boxes, columns and edges are decided here.
 */
#include "softnode/views/dot.h"

#include <array>
#include <cstddef>

namespace softnode
{

namespace
{

/* The fonts are taken from what the viewer has; boxes are made for wider ones. */
constexpr const char *head = R"(digraph "node" {
    graph [rankdir=LR, newrank=true, nodesep=0.13, ranksep=0.45, pad=0.1, bgcolor="#ffffff",
           fontname="Helvetica,Arial,sans-serif", fontsize=11, fontcolor="#24313f", labelloc=t, labeljust=l]
    node [shape=plain, fontname="Helvetica,Arial,sans-serif", fontsize=10, fontcolor="#24313f"]
    edge [color="#8794a1", arrowsize=0.55]
)";

/* Around a run of words, each of which begins at a column of its own then. Indexed by Tone. */
struct Tags {
    const char *open;
    const char *close;
};

constexpr std::array<Tags, 3> tags_of{{
    {R"(<font color="#24313f">)", "</font>"},
    {R"(<font color="#6b7885" point-size="9">)", "</font>"},
    {R"(<font color="#b3261e" point-size="9">)", "</font>"},
}};
static_assert(tags_of.size() == static_cast<std::size_t>(Tone::alarm) + 1);

/* Of an edge. Indexed by DotLine. */
constexpr std::array<const char *, 3> attributes_of{"", " [weight=3]", " [style=dashed, dir=none]"};
static_assert(attributes_of.size() == static_cast<std::size_t>(DotLine::dashed) + 1);

/* Keeps text off the frame, which edges have to reach. */
constexpr std::string_view margin = "&#160;";

std::string tagged(const Words &words)
{
    const Tags &tags = tags_of[static_cast<std::size_t>(words.tone)];
    return words.text.empty() ? std::string() : tags.open + escaped(words.text) + tags.close;
}

std::string quoted(std::string_view name)
{
    return std::string("\"").append(name).append("\"");
}

/* Edges leave a box at its right and reach the next one at its left. */
std::string end_text(const DotEnd &end, const char *side)
{
    std::string text = quoted(end.box);
    if (!end.port.empty())
        text.append(":").append(quoted(end.port));
    return text.append(":").append(side);
}

/* The entity for a character that has a meaning between tags. */
struct Entity {
    char character;
    const char *name;
};

constexpr std::array<Entity, 4> entities{{{'&', "&amp;"}, {'<', "&lt;"}, {'>', "&gt;"}, {'"', "&quot;"}}};

std::string safe(char character)
{
    for (const Entity &entity : entities)
        if (entity.character == character)
            return entity.name;
    return {character};
}

} // namespace

DotBox::DotBox(const char *accent, unsigned width) : accent_(accent), width_(width)
{
}

void DotBox::title(std::string_view text, std::string_view right)
{
    rows_.append(R"(<tr><td align="left")").append(right.empty() ? R"( colspan="2")" : "").append(">").append(margin);
    rows_.append("<font color=").append(quoted(accent_)).append("><b>").append(escaped(text)).append("</b></font>");
    rows_.append(margin).append("</td>");
    if (!right.empty())
        rows_.append(R"(<td align="right">)")
            .append(tagged({std::string(right), Tone::faint}))
            .append(margin)
            .append("</td>");
    rows_.append("</tr>");
}

void DotBox::line(const std::vector<Words> &words, std::string_view port)
{
    rows_.append(R"(<tr><td align="left" colspan="2")");
    if (!port.empty())
        rows_.append(" port=").append(quoted(port));
    rows_.append(">").append(margin);
    for (const Words &run : words)
        rows_.append(tagged(run));
    rows_.append(margin).append("</td></tr>");
}

std::string DotBox::label() const
{
    const std::string gap = R"(<tr><td colspan="2" height="3" width=")" + std::to_string(width_) + R"("></td></tr>)";
    return R"(<<table border="1" cellborder="0" cellspacing="0" cellpadding="1" style="rounded" bgcolor="#ffffff")"
           R"( color=")" +
           accent_ + R"(">)" + gap + rows_ + gap + "</table>>";
}

void DotDocument::open(const DotColumn &column)
{
    const std::string name = column.name;
    const std::string ground = quoted(column.ground);
    column_.clear();
    text_ += "    subgraph cluster_" + name + " {\n        label=<<b>" + escaped(column.heading) +
             "</b>>; fontcolor=" + quoted(column.accent) + "; style=\"rounded,filled\"; color=" + ground + "\n";
}

void DotDocument::close()
{
    text_ += "    }\n";
    if (column_.empty())
        return;
    text_ += "    {rank=same";
    for (const std::string &box : column_)
        text_.append("; ").append(quoted(box));
    text_ += "}\n";
    if (!column_before_.empty())
        text_ += "    " + quoted(column_before_) + " -> " + quoted(column_.front()) + " [style=invis]\n";
    column_before_ = column_.front();
    column_.clear();
}

void DotDocument::box(std::string_view name, const DotBox &shown)
{
    column_.emplace_back(name);
    text_ += "        " + quoted(name) + " [label=" + shown.label() + "]\n";
}

void DotDocument::edge(const DotEnd &from, const DotEnd &to, DotLine line)
{
    const std::string edge = "    " + end_text(from, "e") + " -> " + end_text(to, "w") +
                             attributes_of[static_cast<std::size_t>(line)] + "\n";
    if (edges_.insert(edge).second)
        text_ += edge;
}

std::string DotDocument::text() const
{
    return head + text_ + "}\n";
}

std::string escaped(std::string_view text)
{
    std::string written;
    for (const char character : text)
        written += safe(character);
    return written;
}

} // namespace softnode
