/*
 * fault_text.cpp - taking a text of fault rules apart, and telling where in it something is wrong.
 */
#include "softnode/faults/fault_text.h"

#include "text/printable.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <optional>
#include <utility>

namespace softnode
{

namespace
{

/* A rule of the text that cannot be read. */
struct BadRule {
    std::string_view rule;
    FaultProblem problem;
};

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view blanks = " \t\r";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/* Takes the text up to the separator off its front, and the separator. */
std::string_view take_front(std::string_view &text, char separator)
{
    const std::string_view front = text.substr(0, text.find(separator));
    text.remove_prefix(std::min(front.size() + 1, text.size()));
    return front;
}

std::optional<BadRule> read_line(std::string_view line, std::vector<FaultRule> &rules)
{
    line = line.substr(0, line.find('#'));
    while (!line.empty()) {
        const std::string_view text = trimmed(take_front(line, ';'));
        if (text.empty())
            continue;
        FaultRule rule;
        if (auto problem = read_fault_rule(text, rule))
            return BadRule{text, std::move(*problem)};
        rules.push_back(std::move(rule));
    }
    return std::nullopt;
}

std::optional<BadRule> read_lines(std::string_view text, std::vector<FaultRule> &rules)
{
    while (!text.empty())
        if (auto bad = read_line(take_front(text, '\n'), rules))
            return bad;
    return std::nullopt;
}

constexpr std::size_t largest_file = std::size_t{16} * 1024 * 1024;

/* Nothing, with errno telling why, for a file that cannot be read. EFBIG for one that is too large. */
std::optional<std::string> contents_of(const std::string &file)
{
    const std::unique_ptr<std::FILE, int (*)(std::FILE *)> stream(std::fopen(file.c_str(), "re"), std::fclose);
    if (!stream)
        return std::nullopt;

    std::string text;
    std::array<char, 4096> piece;
    while (const std::size_t octets = std::fread(piece.data(), 1, piece.size(), stream.get())) {
        text.append(piece.data(), octets);
        if (text.size() > largest_file) {
            errno = EFBIG;
            return std::nullopt;
        }
    }
    if (std::ferror(stream.get()))
        return std::nullopt;
    return text;
}

} // namespace

std::optional<FaultTextProblem> read_fault_text(std::string_view text, std::vector<FaultRule> &rules)
{
    if (text.starts_with(text::byte_order_mark))
        text.remove_prefix(text::byte_order_mark.size());
    const auto bad = read_lines(text, rules);
    if (!bad)
        return std::nullopt;
    const std::size_t at = static_cast<std::size_t>(bad->rule.data() - text.data()) + bad->problem.at;
    const std::string_view before = text.substr(0, at);
    return FaultTextProblem{.rule = std::string(bad->rule),
                            .line = static_cast<std::uint32_t>(std::count(before.begin(), before.end(), '\n') + 1),
                            .column = static_cast<std::uint32_t>(at - before.rfind('\n')),
                            .what = bad->problem.what};
}

std::string read_given_faults(std::string_view text, std::vector<FaultRule> &rules)
{
    const auto wrong = read_fault_text(text, rules);
    return wrong ? "\"" + wrong->rule + "\": " + wrong->what : "";
}

std::string read_fault_file(const std::string &file, std::vector<FaultRule> &rules)
{
    const auto text = contents_of(file);
    if (!text)
        return file + ": " + std::strerror(errno);
    const auto wrong = read_fault_text(*text, rules);
    if (!wrong)
        return {};
    return file + ":" + std::to_string(wrong->line) + ":" + std::to_string(wrong->column) + ": " + wrong->what;
}

} // namespace softnode
