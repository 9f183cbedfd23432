// Splitting a line into words: blanks, quotes, backslashes, comments. There are no variables, patterns or continued
// lines as a shell has them.
#include "kelctl/language/command_line.h"

namespace kelctl
{
namespace
{

bool is_blank(char c)
{
    return c == ' ' || c == '\t' || c == '\r';
}

class line_reader
{
public:
    explicit line_reader(std::string_view line) : line_(line)
    {
    }

    std::vector<word> read()
    {
        std::vector<word> words;
        for (skip_blanks(); !at_end() && peek() != '#'; skip_blanks())
            words.push_back(read_word());
        return words;
    }

private:
    bool at_end() const
    {
        return at_ == line_.size();
    }

    char peek() const
    {
        return line_[at_];
    }

    // Continuation octets of UTF-8 do not count as characters.
    char take()
    {
        const char c = line_[at_++];
        if ((static_cast<unsigned char>(c) & 0xC0) != 0x80)
            ++column_;
        return c;
    }

    void skip_blanks()
    {
        while (!at_end() && is_blank(peek()))
            take();
    }

    // A word may have quoted and plain parts: a"b c"d is one word.
    word read_word()
    {
        word read{.text = "", .column = column_};
        while (!at_end() && !is_blank(peek())) {
            const uint32_t column = column_;
            const char c = take();
            if (c == '\'' || c == '"')
                take_quoted(c, column, read.text);
            else
                read.text += c == '\\' ? escaped(column) : c;
        }
        read.end = column_;
        return read;
    }

    void take_quoted(char quote, uint32_t opened, std::string &text)
    {
        while (!at_end()) {
            const uint32_t column = column_;
            const char c = take();
            if (c == quote)
                return;
            text += c == '\\' && quote == '"' ? escaped(column) : c;
        }
        throw wrong_line("the closing quotation mark is missing", opened);
    }

    // The character after a backslash, whatever it is.
    char escaped(uint32_t column)
    {
        if (at_end())
            throw wrong_line("nothing follows the backslash", column);
        return take();
    }

    std::string_view line_;
    size_t at_ = 0;
    uint32_t column_ = 1;
};

} // namespace

std::vector<word> words_of(std::string_view line)
{
    return line_reader(line).read();
}

} // namespace kelctl
