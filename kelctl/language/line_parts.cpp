// Walking along the words of a line. Nothing is refused here: completion needs the parts of a line that is not
// finished.
#include "kelctl/language/line_parts.h"

#include <algorithm>

namespace kelctl
{
namespace
{

constexpr std::string_view end_of_options = "--";

bool is_option(std::string_view text)
{
    return text.starts_with("--") || text == "-h";
}

std::string option_name(const std::string &text)
{
    return text == "-h" ? "--help" : text.substr(0, text.find('='));
}

// With a value it is none: no option that every command has takes one, and the command's own message says so.
const argument *shared_option(const std::string &text)
{
    for (const argument &one : shared_options())
        if (is_option(text) && one.name == option_name(text) && text.find('=') == std::string::npos)
            return &one;
    return nullptr;
}

class line_walker
{
public:
    line_walker(const command_table &table, const std::vector<word> &words, source where)
        : table_(table), words_(words), where_(where)
    {
    }

    line_parts walk()
    {
        take_expected_code();
        take_command_words();
        const command *row = table_.find(parts_.name);
        if (row && row->allowed_in(where_))
            take_arguments(*row);
        else if (more())
            take_unknown();
        return std::move(parts_);
    }

private:
    bool more() const
    {
        return next_ < words_.size();
    }

    // Without a word after it, "expect" is a command as any other: help and completion know it from its row.
    void take_expected_code()
    {
        const command *row = table_.find(expect_name);
        if (!row || !row->allowed_in(where_) || words_.size() < 2 || words_.front().text != expect_name ||
            is_option(words_[1].text))
            return;
        parts_.expected = words_[1];
        next_ = 2;
    }

    // Options that every command has may be before and between these words.
    void take_command_words()
    {
        for (; more(); ++next_) {
            const word &word = words_[next_];
            const std::string name = command_word(word.text);
            const auto known = table_.next_words(parts_.name, where_);
            if (const argument *shared = shared_option(word.text))
                parts_.arguments.push_back({.written = word, .option = shared->name, .meant = shared});
            else if (std::find(known.begin(), known.end(), name) != known.end())
                parts_.name += (parts_.name.empty() ? "" : " ") + name;
            else
                return;
        }
    }

    // The command "version" is asked for by --version as well.
    std::string command_word(const std::string &text) const
    {
        return parts_.name.empty() && text == "--version" ? "version" : text;
    }

    // What every command has, counts behind it all the same.
    void take_unknown()
    {
        parts_.unknown = words_[next_];
        for (; more(); ++next_)
            if (const argument *shared = shared_option(words_[next_].text))
                parts_.arguments.push_back({.written = words_[next_], .option = shared->name, .meant = shared});
    }

    void take_arguments(const command &row)
    {
        parts_.row = &row;
        for (size_t index = 0; more();) {
            const word &word = words_[next_++];
            if (parts_.options_ended || !is_option(word.text))
                parts_.arguments.push_back({.written = word, .meant = row.argument_at(index++), .value = word});
            else if (word.text == end_of_options)
                parts_.options_ended = true;
            else
                take_option(row, word);
        }
    }

    void take_option(const command &row, const word &word)
    {
        argument_word option = {.written = word, .option = option_name(word.text)};
        option.meant = row.find_argument(option.option);
        if (const size_t equals = word.text.find('='); equals != std::string::npos)
            option.value = {word.text.substr(equals + 1), word.column, word.end};
        if (option.awaits_value() && more())
            option.value = words_[next_++];
        parts_.arguments.push_back(std::move(option));
    }

    const command_table &table_;
    const std::vector<word> &words_;
    source where_;
    size_t next_ = 0;
    line_parts parts_;
};

} // namespace

line_parts parts_of(const command_table &table, const std::vector<word> &words, source where)
{
    return line_walker(table, words, where).walk();
}

} // namespace kelctl
