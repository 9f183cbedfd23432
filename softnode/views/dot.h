/*
 * dot.h - Graphviz' language, as far as a picture of boxes in columns needs it. Texts are plain; they are quoted here.
 */
#ifndef SOFTNODE_DOT_H
#define SOFTNODE_DOT_H

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace softnode
{

enum class Tone : std::uint8_t { plain, faint, alarm };

/* A run of words in one tone. */
struct Words {
    std::string text;
    Tone tone = Tone::plain;
};

/** The label of a box: lines of text in a frame. */
class DotBox
{
public:
    /**
     * @param accent "#rrggbb", of the frame and the title
     * @param width  in points, at least
     */
    explicit DotBox(const char *accent, unsigned width = 0);

    /** The first line of the box: its object, and at the right its handle or a part of it. */
    void title(std::string_view text, std::string_view right = {});

    /** A line. Edges can end at it by its port, if it has one. */
    void line(const std::vector<Words> &words, std::string_view port = {});

    /** The label with its delimiters. */
    std::string label() const;

private:
    std::string accent_;
    unsigned width_;
    std::string rows_;
};

/* One of the picture's columns. */
struct DotColumn {
    const char *name;
    const char *heading;
    const char *accent; /* of what is in it */
    const char *ground;
};

/* An end of an edge: a box, and one of its lines unless the port is empty. */
struct DotEnd {
    std::string box;
    std::string port{};
};

/* A short one draws its ends together. */
enum class DotLine : std::uint8_t { arrow, short_arrow, dashed };

class DotDocument
{
public:
    /* Between these, boxes go into the column. Columns are ordered from the left as they are opened. */
    void open(const DotColumn &column);
    void close();
    void box(std::string_view name, const DotBox &shown);
    /** The same edge once more adds nothing. */
    void edge(const DotEnd &from, const DotEnd &to, DotLine line = DotLine::arrow);

    std::string text() const;

private:
    std::string text_;
    std::vector<std::string> column_; /* boxes of the one that is open */
    std::string column_before_;       /* a box of the last one that has any */
    std::set<std::string> edges_;
};

/** Text as it is written between the tags of a label. */
std::string escaped(std::string_view text);

} // namespace softnode

#endif
