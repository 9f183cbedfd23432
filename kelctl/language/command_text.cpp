// Values as words, and the quotes that a word needs. What is written here, parse() reads as the same invocation; tests
// compare the two.
#include "kelctl/language/command_text.h"

#include "text/wording.h"

#include <fmt/core.h>

#include <algorithm>
#include <iterator>
#include <sstream>
#include <string_view>
#include <utility>
#include <variant>

namespace kelctl
{
namespace
{

template <typename... Readers> struct overloaded : Readers... {
    using Readers::operator()...;
};
template <typename... Readers> overloaded(Readers...) -> overloaded<Readers...>;

// Characters that end a word or have a meaning in it: a word with one of them is quoted.
constexpr std::string_view special = " \t\n#'\"\\";

std::string quoted(const std::string &word)
{
    if (!word.empty() && word.find_first_of(special) == std::string::npos)
        return word;
    std::string text = "\"";
    for (const char c : word)
        text += c == '"' || c == '\\' ? fmt::format("\\{}", c) : std::string(1, c);
    return text + "\"";
}

// The words of an argument: its name if it is an option, then its values.
std::vector<std::string> words_of(const argument &one, const argument_value &value)
{
    std::vector<std::string> words;
    if (const auto *texts = std::get_if<std::vector<std::string>>(&value))
        words = *texts;
    else if (!one.is_flag())
        words.push_back(word_of(one.kind, value));
    if (one.is_option())
        words.insert(words.begin(), one.name);
    return words;
}

} // namespace

// A flag has no word of its own; a list of texts is written word by word in words_of().
std::string word_of(const argument_kind &kind, const argument_value &value)
{
    const auto write = overloaded{
        [](bool) { return std::string(); },
        [&](int64_t number) { return kind.write ? kind.write(number) : std::to_string(number); },
        [](uint64_t handle) { return fmt::format("0x{:x}", handle); },
        [](const std::string &text) { return text; },
        [](const mac_address &mac) { return to_text(mac); },
        [](const std::vector<uint32_t> &numbers) { return text::joined(numbers, ","); },
        [](const std::vector<std::string> &) { return std::string(); },
    };
    return std::visit(write, value);
}

bool is_default(const argument &one, const argument_value &value)
{
    return !one.otherwise.empty() && one.kind.read(one.otherwise) == value;
}

std::string typed(std::string_view command, source where)
{
    return fmt::format("{}{}", where == source::program ? "kelctl " : "", command);
}

// Positional arguments come before options, as people write them. If one of them looks like an option, all of them go
// to the end, behind "--".
std::vector<std::string> words_of(const invocation &asked)
{
    std::vector<std::string> positional;
    std::vector<std::string> options;
    for (const argument &one : asked.row->arguments)
        if (const argument_value *given = asked.given.find(one.name); given && !is_default(one, *given))
            std::ranges::move(words_of(one, *given), std::back_inserter(one.is_option() ? options : positional));
    std::istringstream name{std::string(asked.row->name)};
    std::vector<std::string> line{std::istream_iterator<std::string>(name), {}};
    if (asked.expected)
        line.insert(line.begin(), {std::string(expect_name), std::to_string(*asked.expected)});
    if (asked.raw)
        line.emplace_back("--raw");
    if (std::ranges::none_of(positional, [](const std::string &word) { return word.starts_with("--"); }))
        std::ranges::move(std::exchange(positional, {}), std::back_inserter(line));
    else
        positional.insert(positional.begin(), "--");
    std::ranges::move(options, std::back_inserter(line));
    std::ranges::move(positional, std::back_inserter(line)); // empty, unless one of them looks like an option
    return line;
}

std::string text_of(const invocation &asked)
{
    std::vector<std::string> words = words_of(asked);
    std::ranges::transform(words, words.begin(), quoted);
    return text::joined(words, " ");
}

} // namespace kelctl
