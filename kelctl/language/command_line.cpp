// Finding the command, and reading its arguments by its row. Which word is what is decided in line_parts.cpp; here are
// the messages for what does not fit.
#include "kelctl/language/command_line.h"

#include "kelctl/language/command_text.h"
#include "text/nearest.h"
#include "text/printable.h"
#include "text/wording.h"

#include <fmt/core.h>

#include <algorithm>
#include <utility>

namespace kelctl
{
namespace
{

constexpr struct {
    std::string_view option;
    bool manner::*set;
} manners[] = {
    {"--json", &manner::json},   {"--trace", &manner::trace}, {"--brief", &manner::brief},
    {"--quiet", &manner::quiet}, {"--all", &manner::all},
};

// Where something is missing: behind the last word.
uint32_t column_after(const std::vector<word> &words)
{
    return words.empty() ? 0 : words.back().end;
}

bool has_flag(const line_parts &parts, std::string_view name)
{
    return std::any_of(parts.arguments.begin(), parts.arguments.end(),
                       [name](const argument_word &one) { return one.option == name && !one.value; });
}

bool is_shared(const argument &option)
{
    return std::ranges::find(shared_options(), option.name, &argument::name) != shared_options().end();
}

// Reads one line and is done: members are the state between its steps. The first mistake ends it, in the order in which
// a person reads the line.
class line_parser
{
public:
    line_parser(const command_table &table, const std::vector<word> &words, source where)
        : table_(table), words_(words), where_(where), parts_(parts_of(table, words, where))
    {
    }

    invocation parse()
    {
        take_expected_code();
        if (parts_.unknown)
            refuse_word(*parts_.unknown);
        if (has_flag(parts_, "--help"))
            return help_on_command_words();
        if (!parts_.row)
            ask_for_more_words();
        parsed_.row = parts_.row;
        parsed_.shown = manner_of(parts_);
        parsed_.raw = has_flag(parts_, "--raw");
        for (const argument_word &one : parts_.arguments)
            one.option.empty() ? take_positional(one) : take_option(one);
        complete();
        check_expected_code();
        return std::move(parsed_);
    }

private:
    // "ebcom path --help" is "help ebcom path".
    invocation help_on_command_words()
    {
        invocation help = kelctl::parse(table_, words_of("help " + parts_.name), where_);
        help.shown = manner_of(parts_);
        return help;
    }

    [[noreturn]] void ask_for_more_words() const
    {
        if (parts_.name.empty())
            throw wrong_line("A command is required", column_after(words_));
        throw wrong_line(fmt::format("\"{}\" requires one of these words: {}", parts_.name,
                                     text::joined(table_.next_words(parts_.name, where_), ", ")),
                         column_after(words_));
    }

    // From the most likely mistake to the least: a misspelt option, quotation marks too many, a command that is
    // allowed elsewhere, a misspelt word.
    [[noreturn]] void refuse_word(const word &word) const
    {
        if (word.text.starts_with("-"))
            throw wrong_line(fmt::format("unknown option {}", text::in_quotes(word.text)), word.column);
        const std::string asked = with_words_before(word.text);
        if (holds_command_words(word.text))
            throw wrong_line(fmt::format("{} is one word; write the words of a command without quotation marks: {}",
                                         text::in_quotes(word.text), typed(asked, where_)),
                             word.column);
        if (table_.find(asked))
            throw wrong_line(fmt::format("{} cannot be used here", text::in_quotes(asked)), word.column);
        const std::string_view meant = text::nearest(word.text, table_.next_words(parts_.name, where_));
        const std::string hint =
            meant.empty() ? "" : fmt::format("; did you mean {}?", text::in_quotes(with_words_before(meant)));
        throw wrong_line(fmt::format("unknown command {}{}", text::in_quotes(asked), hint), word.column);
    }

    // Words of a command that quotation marks made one.
    bool holds_command_words(std::string_view text) const
    {
        const auto known = table_.next_words(parts_.name, where_);
        return text.find(' ') != text.npos && std::ranges::find(known, text.substr(0, text.find(' '))) != known.end();
    }

    std::string with_words_before(std::string_view last) const
    {
        return parts_.name.empty() ? std::string(last) : fmt::format("{} {}", parts_.name, last);
    }

    // An option that every command has is already counted (manner_of), and may be given twice.
    void take_option(const argument_word &given)
    {
        if (!given.meant)
            refuse_option(given);
        if (given.meant->is_flag() && given.value)
            throw wrong_line(fmt::format("{} takes no value", given.option), given.written.column);
        if (is_shared(*given.meant))
            return;
        if (parsed_.given.has(given.option))
            throw wrong_line(fmt::format("{} is given twice", given.option), given.written.column);
        if (given.awaits_value())
            throw wrong_line(fmt::format("{} requires a value", given.option), column_after(words_));
        if (given.value)
            take_value(*given.meant, *given.value);
        else
            parsed_.given.set(given.meant->name, true);
    }

    [[noreturn]] void refuse_option(const argument_word &given) const
    {
        std::vector<std::string_view> known;
        for (const std::vector<argument> *list : {&parsed_.row->arguments, &shared_options()})
            for (const argument &one : *list)
                if (one.is_option())
                    known.emplace_back(one.name);
        throw wrong_line(fmt::format("\"{}\" has no option {}{}", parts_.name, text::in_quotes(given.option),
                                     text::did_you_mean(given.option, known)),
                         given.written.column);
    }

    void take_positional(const argument_word &given)
    {
        if (!given.meant)
            throw wrong_line(fmt::format("unexpected argument {}", text::in_quotes(given.written.text)),
                             given.written.column);
        if (given.meant->repeated)
            repeated_.push_back(given.written.text);
        else
            take_value(*given.meant, given.written);
    }

    void take_value(const argument &argument, const word &word)
    {
        parsed_.given.set(argument.name, value_of(argument, word));
    }

    // A kind's message says nothing of the argument's name, which it does not know.
    argument_value value_of(const argument &argument, const word &word) const
    {
        try {
            const bool raw = argument.kind.read_raw && parsed_.raw;
            return (raw ? argument.kind.read_raw : argument.kind.read)(word.text);
        } catch (const wrong_value &wrong) {
            throw wrong_line(fmt::format("{}: {}", argument.name, wrong.what()), word.column);
        }
    }

    // What was not given, and what must come together.
    void complete()
    {
        const command &row = *parsed_.row;
        for (const argument &one : row.arguments)
            if (one.repeated)
                parsed_.given.set(one.name, repeated_);
        for (const mistake &one : mistakes_in(
                 row, [&](const argument &any) { return parsed_.given.has(any.name); },
                 [](const argument &any) -> std::string_view { return any.name; }))
            throw wrong_line(one.message, column_after(words_));
        set_defaults(row, parsed_.given);
        choose_variant();
        for (const argument &one : row.arguments)
            check_variant(one);
        if (const auto wrong = row.check ? row.check(parsed_.given) : std::nullopt)
            throw wrong_line(fmt::format("{}: {}", wrong->argument, wrong->what), column_of(wrong->argument));
    }

    void take_expected_code()
    {
        if (!parts_.expected)
            return;
        const argument &code = table_.find(expect_name)->arguments.front();
        parsed_.expected = static_cast<uint32_t>(std::get<int64_t>(value_of(code, *parts_.expected)));
    }

    void check_expected_code() const
    {
        if (parsed_.expected && parsed_.chosen->function.empty())
            throw wrong_line(
                fmt::format("\"{}\" calls no function of the library, and has no code to expect", parts_.name),
                parts_.expected->column);
    }

    uint32_t column_of(std::string_view name) const
    {
        const auto found = std::ranges::find_if(parts_.arguments,
                                                [name](const argument_word &one) { return one.meant->name == name; });
        return found == parts_.arguments.end() || !found->value ? column_after(words_) : found->value->column;
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
            throw wrong_line(fmt::format("{} cannot be used with --variant {}", argument.name, word),
                             column_after(words_));
    }

    const command_table &table_;
    const std::vector<word> &words_;
    source where_;
    const line_parts parts_;
    std::vector<std::string> repeated_;
    invocation parsed_;
};

} // namespace

manner manner_of(const line_parts &parts)
{
    manner asked;
    for (const auto &[option, set] : manners)
        asked.*set = has_flag(parts, option);
    return asked;
}

std::optional<std::string> take_option_before_command(std::vector<word> &words, std::string_view name)
{
    const auto begins_command = [](const word &one) { return !one.text.starts_with("-"); };
    const auto is_option = [name](const word &one) { return one.text.substr(0, one.text.find('=')) == name; };
    const auto option = std::find_if(words.begin(), std::ranges::find_if(words, begins_command), is_option);
    if (option == words.end() || begins_command(*option))
        return std::nullopt;
    auto end = std::next(option);
    const size_t equals = option->text.find('=');
    if (equals == std::string::npos && end == words.end())
        throw wrong_line(fmt::format("{}: a value is missing", name), 0);
    std::string value = equals == std::string::npos ? (end++)->text : option->text.substr(equals + 1);
    words.erase(option, end);
    return value;
}

invocation parse(const command_table &table, const std::vector<word> &words, source where)
{
    return line_parser(table, words, where).parse();
}

} // namespace kelctl
