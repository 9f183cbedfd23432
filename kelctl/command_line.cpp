// Finding the command, and reading its arguments by its row.
#include "kelctl/command_line.h"

#include "kelctl/text.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace kelctl
{
namespace
{

constexpr std::string_view end_of_options = "--";

bool asks_for_help(const word &word)
{
    return word.text == "--help" || word.text == "-h";
}

bool ask_for_help(const std::vector<word> &words)
{
    const auto end =
        std::find_if(words.begin(), words.end(), [](const word &word) { return word.text == end_of_options; });
    return std::any_of(words.begin(), end, asks_for_help);
}

uint32_t column_after(const std::vector<word> &words)
{
    return words.empty() ? 0 : words.back().end;
}

class line_parser
{
public:
    line_parser(const std::vector<word> &words, place where) : words_(words), where_(where)
    {
    }

    invocation parse()
    {
        take_leading_options();
        take_command_words();
        if (ask_for_help(words_))
            return help_on_command_words();
        find_row();
        while (next_ < words_.size())
            take_argument();
        complete();
        return std::move(parsed_);
    }

private:
    bool more() const
    {
        return next_ < words_.size();
    }

    bool take_shared_option(std::string_view name)
    {
        if (name != "--json" && name != "--trace")
            return false;
        (name == "--json" ? parsed_.json : parsed_.trace) = true;
        return true;
    }

    void take_leading_options()
    {
        while (more() && (take_shared_option(words_[next_].text) || asks_for_help(words_[next_])))
            ++next_;
    }

    void take_command_words()
    {
        for (; more(); ++next_) {
            const std::string_view word = next_command_word();
            const auto known = next_words(name_, where_);
            if (std::find(known.begin(), known.end(), word) == known.end())
                return;
            name_ = with_words_before(word);
        }
    }

    // The command "version" is asked for by --version as well.
    std::string_view next_command_word() const
    {
        const std::string_view word = words_[next_].text;
        return name_.empty() && word == "--version" ? word.substr(2) : word;
    }

    invocation help_on_command_words()
    {
        if (more() && !asks_for_help(words_[next_]) && !find_command(name_))
            refuse_word(words_[next_]);
        parsed_.row = find_command("help");
        parsed_.chosen = &parsed_.row->variants.front();
        std::vector<std::string> words;
        for (const word &word : words_of(name_))
            words.push_back(word.text);
        parsed_.given.set("COMMAND", std::move(words));
        return std::move(parsed_);
    }

    void find_row()
    {
        parsed_.row = find_command(name_);
        if (parsed_.row && parsed_.row->allowed_in(where_))
            return;
        if (more())
            refuse_word(words_[next_]);
        if (name_.empty())
            throw wrong_line("A command is required", column_after(words_));
        throw wrong_line(
            fmt::format("\"{}\" is followed by one of these: {}", name_, fmt::join(next_words(name_, where_), ", ")),
            column_after(words_));
    }

    [[noreturn]] void refuse_word(const word &word) const
    {
        if (word.text.starts_with("-"))
            throw wrong_line(fmt::format("there is no option {}", in_quotes(word.text)), word.column);
        const std::string asked = with_words_before(word.text);
        if (const command *elsewhere = find_command(asked); elsewhere && !elsewhere->allowed_in(where_))
            throw wrong_line(fmt::format("{} cannot be used here", in_quotes(asked)), word.column);
        const std::string_view meant = nearest(word.text, next_words(name_, where_));
        const std::string hint =
            meant.empty() ? "" : fmt::format("; did you mean {}?", in_quotes(with_words_before(meant)));
        throw wrong_line(fmt::format("there is no command {}{}", in_quotes(asked), hint), word.column);
    }

    std::string with_words_before(std::string_view last) const
    {
        return name_.empty() ? std::string(last) : fmt::format("{} {}", name_, last);
    }

    void take_argument()
    {
        const word &word = words_[next_++];
        if (!options_ended_ && word.text == end_of_options)
            options_ended_ = true;
        else if (!options_ended_ && word.text.starts_with("--"))
            take_option(word);
        else
            take_positional(word);
    }

    void take_option(const word &word)
    {
        const size_t equals = word.text.find('=');
        const std::string name = word.text.substr(0, equals);
        const argument *option = parsed_.row->find_argument(name);
        if (!option)
            refuse_option(name, word.column);
        if (option->is_flag() && equals != std::string::npos)
            throw wrong_line(fmt::format("{} takes no value", name), word.column);
        if (take_shared_option(name))
            return;
        if (parsed_.given.has(name))
            throw wrong_line(fmt::format("{} is given twice", name), word.column);
        if (option->is_flag())
            parsed_.given.set(name, true);
        else if (equals != std::string::npos)
            take_value(*option, {word.text.substr(equals + 1), word.column, word.end});
        else if (more())
            take_value(*option, words_[next_++]);
        else
            throw wrong_line(fmt::format("{}: a value is missing", name), column_after(words_));
    }

    [[noreturn]] void refuse_option(std::string_view name, uint32_t column) const
    {
        std::vector<std::string_view> known;
        for (const std::vector<argument> *list : {&parsed_.row->arguments, &shared_options()})
            for (const argument &one : *list)
                if (one.is_option())
                    known.emplace_back(one.name);
        throw wrong_line(fmt::format("\"{}\" has no option {}{}", name_, in_quotes(name), did_you_mean(name, known)),
                         column);
    }

    void take_positional(const word &word)
    {
        for (const argument &one : parsed_.row->arguments) {
            if (one.is_option() || (parsed_.given.has(one.name) && !one.repeated))
                continue;
            if (one.repeated)
                repeated_.push_back(word.text);
            else
                take_value(one, word);
            return;
        }
        throw wrong_line(fmt::format("{} is one word too many", in_quotes(word.text)), word.column);
    }

    void take_value(const argument &argument, const word &word)
    {
        try {
            parsed_.given.set(argument.name, argument.kind.read(word.text));
        } catch (const wrong_value &wrong) {
            throw wrong_line(fmt::format("{}: {}", argument.name, wrong.what()), word.column);
        }
    }

    // What was not given, and what must come together.
    void complete()
    {
        for (const argument &one : parsed_.row->arguments) {
            if (one.repeated)
                parsed_.given.set(one.name, repeated_);
            else if (!parsed_.given.has(one.name))
                take_default(one);
            else if (!one.needs.empty() && !parsed_.given.has(one.needs))
                throw wrong_line(fmt::format("{} needs {} as well", one.name, one.needs), column_after(words_));
        }
        choose_variant();
        for (const argument &one : parsed_.row->arguments)
            check_variant(one);
    }

    void take_default(const argument &argument)
    {
        if (!argument.otherwise.empty())
            take_value(argument, {.text = argument.otherwise});
        else if (argument.required && !argument.is_flag())
            throw wrong_line(fmt::format("{} is required", argument.name), column_after(words_));
    }

    void choose_variant()
    {
        const std::vector<variant> &variants = parsed_.row->variants;
        parsed_.chosen = &variants.front();
        if (variants.size() == 1)
            return;
        const std::string &word = parsed_.given.text("--variant");
        parsed_.chosen =
            &*std::find_if(variants.begin(), variants.end(), [&word](const variant &one) { return one.word == word; });
    }

    void check_variant(const argument &argument) const
    {
        const std::string_view word = parsed_.chosen->word;
        const auto &wanted = argument.only_for;
        if (!wanted.empty() && parsed_.given.has(argument.name) &&
            std::find(wanted.begin(), wanted.end(), word) == wanted.end())
            throw wrong_line(fmt::format("{} means nothing to --variant {}", argument.name, word),
                             column_after(words_));
    }

    const std::vector<word> &words_;
    place where_;
    size_t next_ = 0;
    std::string name_; // the command's words so far
    bool options_ended_ = false;
    std::vector<std::string> repeated_;
    invocation parsed_;
};

} // namespace

invocation parse(const std::vector<word> &words, place where)
{
    return line_parser(words, where).parse();
}

} // namespace kelctl
