// What the grammar (line_parts.h) expects after the words before the cursor. Values that exist on the node are
// known_words.h.
#include "kelctl/language/completion.h"

#include "kelctl/language/command_line.h"
#include "text/nearest.h"
#include "text/wording.h"

#include <fmt/core.h>

#include <algorithm>
#include <utility>

namespace kelctl
{
namespace
{

std::string words_and(std::string_view words, std::string_view next)
{
    return words.empty() ? std::string(next) : fmt::format("{} {}", words, next);
}

class word_completer
{
public:
    word_completer(const command_table &table, const std::vector<word> &before, const std::string &begun,
                   const known_words &known, source where)
        : table_(table), parts_(parts_of(table, before, where)), begun_(begun), known_(known), where_(where)
    {
    }

    completion complete()
    {
        if (parts_.row)
            complete_argument();
        else if (!parts_.unknown)
            complete_command_word();
        return std::move(found_);
    }

private:
    void offer(const std::string &word, const std::string &help = "")
    {
        if (text::same_word(word.substr(0, begun_.size()), begun_))
            found_.candidates.push_back({word, help});
    }

    void complete_command_word()
    {
        offer_words_after(parts_.name);
        if (begun_.starts_with("-"))
            offer_options(shared_options());
    }

    void offer_words_after(const std::string &words)
    {
        for (const std::string_view next : table_.next_words(words, where_))
            offer(std::string(next), help_on(words_and(words, next)));
    }

    std::string help_on(const std::string &words) const
    {
        const std::string_view help = table_.help_on(words);
        return help.empty() ? text::joined(table_.next_words(words, where_), ", ") : std::string(help);
    }

    // A value that is due comes before anything else, whatever the word begins with; then a value behind "=".
    void complete_argument()
    {
        const bool maybe_option = !parts_.options_ended && begun_.starts_with("-");
        if (!parts_.arguments.empty() && parts_.arguments.back().awaits_value())
            offer_values(*parts_.arguments.back().meant);
        else if (const size_t equals = begun_.find('='); maybe_option && equals != std::string::npos)
            offer_values_behind_equals(begun_.substr(0, equals));
        else
            offer_positional_or_options(maybe_option);
    }

    void offer_values(const argument &argument, const std::string &lead = "")
    {
        if (!argument.kind.complete)
            return;
        const candidates possible = argument.kind.complete(known_);
        for (const std::string &word : possible.words)
            offer(lead + word);
        found_.files = possible.files && lead.empty();
        if (possible.commands)
            offer_words_after(positional_words());
    }

    void offer_values_behind_equals(const std::string &name)
    {
        if (const argument *option = parts_.row->find_argument(name))
            offer_values(*option, name + "=");
    }

    // Options are offered when a dash asks for them, and when there is nothing else to offer.
    void offer_positional_or_options(bool maybe_option)
    {
        const auto count = std::count_if(parts_.arguments.begin(), parts_.arguments.end(), is_positional);
        const argument *due = parts_.row->argument_at(static_cast<size_t>(count));
        if (due && !maybe_option)
            offer_values(*due);
        if (!found_.candidates.empty() || found_.files || parts_.options_ended)
            return;
        offer_options(parts_.row->arguments);
        offer_options(shared_options());
    }

    static bool is_positional(const argument_word &one)
    {
        return one.option.empty();
    }

    std::string positional_words() const
    {
        std::string words;
        for (const argument_word &one : parts_.arguments)
            if (is_positional(one))
                words = words_and(words, one.written.text);
        return words;
    }

    void offer_options(const std::vector<argument> &list)
    {
        for (const argument &one : list)
            if (one.is_option() && !was_given(one.name) && !was_given(one.instead) && fits_variant(one))
                offer(one.name, one.help);
    }

    bool was_given(std::string_view option) const
    {
        return !option.empty() &&
               std::ranges::find(parts_.arguments, option, &argument_word::option) != parts_.arguments.end();
    }

    // Of the variant that was given; without one, every option may still come to fit.
    bool fits_variant(const argument &option) const
    {
        const auto given = std::ranges::find(parts_.arguments, "--variant", &argument_word::option);
        return given == parts_.arguments.end() || !given->value || option.only_for.empty() ||
               std::ranges::find(option.only_for, given->value->text) != option.only_for.end();
    }

    const command_table &table_;
    const line_parts parts_;
    const std::string &begun_;
    const known_words &known_;
    source where_;
    completion found_;
};

} // namespace

completion complete(const command_table &table, const std::vector<word> &before, const std::string &begun,
                    const known_words &known, source where)
{
    return word_completer(table, before, begun, known, where).complete();
}

// The last word is being typed unless a blank follows it. Open quotes throw: the word's end is not known.
completion complete(const command_table &table, std::string_view line, const known_words &known, source where)
{
    try {
        std::vector<word> words = words_of(line);
        std::string begun;
        if (!words.empty() && !line.ends_with(' ') && !line.ends_with('\t')) {
            begun = words.back().text;
            words.pop_back();
        }
        return complete(table, words, begun, known, where);
    } catch (const wrong_line &) {
        return {};
    }
}

std::string lines_of(const completion &found)
{
    std::string lines = found.files ? "@files\n" : "";
    for (const auto &[word, help] : found.candidates)
        lines += fmt::format("{}{}{}\n", word, help.empty() ? "" : "\t", help);
    return lines;
}

} // namespace kelctl
