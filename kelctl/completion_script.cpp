// Scripts of two parts: the shell's code, and tables for it, by the words of a command.
#include "kelctl/completion_script.h"

#include "kelctl/command.h"
#include "kelctl/help.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <set>
#include <string_view>
#include <vector>

namespace kelctl
{
namespace
{

// In single quotes, which only themselves end.
std::string in_single_quotes(std::string_view text)
{
    std::string made = "'";
    for (const char c : text)
        made += c == '\'' ? "'\\''" : std::string(1, c);
    return made + "'";
}

candidates candidates_of(const argument &argument)
{
    return argument.kind.complete ? argument.kind.complete({}) : candidates{};
}

std::vector<const command *> program_commands()
{
    std::vector<const command *> rows;
    for (const command &row : commands())
        if (row.allowed_in(place::program))
            rows.push_back(&row);
    return rows;
}

// All that words follow: nothing, "ebcom", "ebcom path".
std::set<std::string> beginnings()
{
    std::set<std::string> all = {""};
    for (const command *row : program_commands())
        for (size_t blank = row->name.find(' '); blank != std::string_view::npos;
             blank = row->name.find(' ', blank + 1))
            all.emplace(row->name.substr(0, blank));
    return all;
}

// A table of both shells, by the words of a command. They have no empty keys: - stands for no words.
class shell_table
{
public:
    explicit shell_table(std::string_view name) : name_(name)
    {
    }

    void add(std::string_view words, std::string_view value)
    {
        entries_ += fmt::format("[{}]={}\n", in_single_quotes(words.empty() ? "-" : words), in_single_quotes(value));
    }

    std::string written() const
    {
        return fmt::format("{}=(\n{})\n", name_, entries_);
    }

private:
    std::string_view name_;
    std::string entries_;
};

std::string next_words_after(std::string_view words)
{
    return fmt::format("{}", fmt::join(next_words(words, place::program), " "));
}

// ---- bash ----

constexpr std::string_view bash_code = R"(
_kelctl()
{
    local current=${COMP_WORDS[COMP_CWORD]} name='' word wanted='' place=0 i
    for ((i = 1; i < COMP_CWORD; ++i)); do
        word=${COMP_WORDS[i]}
        [[ -n ${_kelctl_next[${name:--}]:-} ]] || break
        [[ $word == -* ]] && continue
        [[ " ${_kelctl_next[${name:--}]:-} " == *" $word "* ]] || break
        name=${name:+$name }$word
    done
    COMPREPLY=()
    [[ i -lt COMP_CWORD && -n ${_kelctl_next[${name:--}]:-} ]] && return # no command begins so
    for (( ; i < COMP_CWORD; ++i)); do # what is left are the command's arguments
        word=${COMP_WORDS[i]}
        if [[ $word == --* ]]; then
            [[ -n ${_kelctl_values["$name $word"]+set} ]] && wanted="$name $word" || wanted=''
        elif [[ $word == = ]]; then
            continue
        elif [[ -n $wanted ]]; then
            wanted=''
        else
            ((++place))
        fi
    done
    [[ $current == = ]] && current=''

    if [[ -n ${_kelctl_next[${name:--}]:-} ]]; then
        mapfile -t COMPREPLY < <(compgen -W "${_kelctl_next[${name:--}]:-} $_kelctl_shared" -- "$current")
        return
    fi
    if [[ -z $wanted && $current == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "${_kelctl_options[$name]:-} $_kelctl_shared" -- "$current")
        return
    fi
    word=${_kelctl_values[${wanted:-$name $((place + 1))}]:-}
    if [[ $word == @files ]]; then
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
    else
        mapfile -t COMPREPLY < <(compgen -W "$word" -- "$current")
    fi
}
complete -F _kelctl kelctl
)";

std::string bash_values(const argument &argument)
{
    const candidates offered = candidates_of(argument);
    return offered.files ? "@files" : fmt::format("{}", fmt::join(offered.words, " "));
}

// By the option, or by the place among the other words.
void add_bash_values(const command &row, shell_table &values)
{
    size_t place = 0;
    for (const argument &one : row.arguments) {
        place += one.is_option() ? 0 : 1;
        const std::string which = one.is_option() ? one.name : fmt::to_string(place);
        if (!one.is_flag())
            values.add(fmt::format("{} {}", row.name, which), bash_values(one));
    }
}

std::string option_names(const std::vector<argument> &arguments)
{
    std::vector<std::string> names;
    for (const argument &one : arguments)
        if (one.is_option())
            names.push_back(one.name);
    return fmt::format("{}", fmt::join(names, " "));
}

std::string bash_tables()
{
    shell_table next("_kelctl_next");
    shell_table options("_kelctl_options");
    shell_table values("_kelctl_values");
    for (const std::string &words : beginnings())
        next.add(words, next_words_after(words));
    for (const command *row : program_commands()) {
        options.add(row->name, option_names(row->arguments));
        add_bash_values(*row, values);
    }
    return fmt::format("declare -A _kelctl_next _kelctl_options _kelctl_values\n_kelctl_shared={}\n{}{}{}",
                       in_single_quotes(option_names(shared_options())), next.written(), options.written(),
                       values.written());
}

// ---- zsh ----

constexpr std::string_view zsh_code = R"(
_kelctl()
{
    local name= word
    local -a offered
    while (( CURRENT > 2 )); do
        [[ -n ${_kelctl_next[${name:--}]} ]] || break
        word=${words[2]}
        if [[ $word != -* ]]; then
            [[ " ${_kelctl_next[${name:--}]} " == *" $word "* ]] || break
            name=${name:+$name }$word
        fi
        shift words
        (( CURRENT-- ))
    done
    if [[ -n ${_kelctl_next[${name:--}]} ]]; then
        (( CURRENT > 2 )) && return 1 # no command begins so
        offered=("${(@f)_kelctl_described[${name:--}]}")
        _describe -t commands 'kelctl command' offered
        return
    fi
    offered=("${(@f)_kelctl_arguments[$name]}")
    _arguments $offered
}
)";

// Brackets and colons part a description from what it is of.
std::string zsh_escaped(std::string_view text)
{
    std::string made;
    for (const char c : text)
        made += (c == ':' || c == '[' || c == ']' || c == '\\') ? fmt::format("\\{}", c) : std::string(1, c);
    return made;
}

std::string zsh_action(const argument &argument)
{
    const candidates offered = candidates_of(argument);
    return offered.files ? "_files" : offered.words.empty() ? " " : fmt::format("({})", fmt::join(offered.words, " "));
}

std::string zsh_argument(const argument &argument)
{
    const std::string help = zsh_escaped(argument.help);
    if (argument.is_flag())
        return fmt::format("{}[{}]", argument.name, help);
    if (argument.is_option())
        return fmt::format("{}=[{}]:{}:{}", argument.name, help, argument.kind.placeholder, zsh_action(argument));
    return fmt::format("{}:{}:{}", argument.repeated ? "*" : argument.required ? "" : ":", help, zsh_action(argument));
}

std::string zsh_arguments(const command &row)
{
    std::vector<std::string> lines;
    for (const std::vector<argument> *list : {&row.arguments, &shared_options()})
        for (const argument &one : *list)
            lines.push_back(zsh_argument(one));
    return fmt::format("{}", fmt::join(lines, "\n"));
}

// What a word after these ones leads to.
std::string_view description_of(const std::string &words)
{
    if (const command *row = find_command(words))
        return row->help;
    for (const command_group &group : command_groups())
        if (group.name == words)
            return group.help;
    return "";
}

std::string zsh_described(const std::string &words)
{
    std::vector<std::string> lines;
    for (const std::string_view next : next_words(words, place::program)) {
        const std::string whole = words.empty() ? std::string(next) : fmt::format("{} {}", words, next);
        lines.push_back(fmt::format("{}:{}", next, zsh_escaped(description_of(whole))));
    }
    return fmt::format("{}", fmt::join(lines, "\n"));
}

std::string zsh_tables()
{
    shell_table next("_kelctl_next");
    shell_table described("_kelctl_described");
    shell_table arguments("_kelctl_arguments");
    for (const std::string &words : beginnings()) {
        next.add(words, next_words_after(words));
        described.add(words, zsh_described(words));
    }
    for (const command *row : program_commands())
        arguments.add(row->name, zsh_arguments(*row));
    return fmt::format("typeset -gA _kelctl_next _kelctl_described _kelctl_arguments\n{}{}{}", next.written(),
                       described.written(), arguments.written());
}

} // namespace

std::string bash_completion()
{
    return fmt::format("# bash completion for kelctl. Made from its table of commands.\n{}{}", bash_tables(),
                       bash_code);
}

std::string zsh_completion()
{
    return fmt::format("#compdef kelctl\n# Made from kelctl's table of commands.\n{}{}\n_kelctl \"$@\"\n", zsh_tables(),
                       zsh_code);
}

} // namespace kelctl
