/*
 * fault_rule.cpp - reading a fault rule from left to right.
 */
#include "softnode/faults/fault_rule.h"

#include "softnode/faults/closed_functions.h"
#include "softnode/faults/spelling.h"
#include "text/quantity.h"

#include <charconv>
#include <limits>

namespace softnode
{

namespace
{

using MaybeProblem = std::optional<FaultProblem>;

constexpr std::int64_t highest_count = std::numeric_limits<std::uint32_t>::max();
constexpr std::int64_t lowest_result = std::numeric_limits<std::int32_t>::min();
constexpr std::int64_t highest_result = std::numeric_limits<std::uint32_t>::max();

constexpr std::string_view latency_word = "latency:";
constexpr std::string_view block_word = "block";
constexpr std::string_view own_thread_word = "own-thread";
constexpr std::string_view timing_unit_prefix = "vorn_tu_";

bool read_number(std::string_view digits, std::int64_t lowest, std::int64_t highest, std::int64_t &number)
{
    const char *end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, number);
    return error == std::errc{} && stop == end && number >= lowest && number <= highest;
}

bool read_count(std::string_view digits, std::uint64_t &count)
{
    std::int64_t number = 0;
    if (!read_number(digits, 1, highest_count, number))
        return false;
    count = static_cast<std::uint64_t>(number);
    return true;
}

/* Cuts `text` off at the separator and yields what is behind it; nothing to yield leaves `text` whole. */
std::optional<std::string_view> cut_off(std::string_view &text, char separator)
{
    const std::size_t place = text.find(separator);
    if (place == std::string_view::npos)
        return std::nullopt;
    const std::string_view rest = text.substr(place + 1);
    text = text.substr(0, place);
    return rest;
}

/* A number and a unit, which is what the number stops at. */
bool read_time(std::string_view written, std::uint64_t &nanoseconds)
{
    const std::size_t digits = std::min(written.find_first_not_of("0123456789"), written.size());
    std::uint64_t count = 0;
    if (!read_count(written.substr(0, digits), count))
        return false;
    const text::unit *const unit = text::find_unit(written.substr(digits), text::duration_units);
    if (!unit)
        return false;
    nanoseconds = count * unit->factor;
    return true;
}

/* A name that is none, and all that are. */
std::string unknown_function(std::string_view name)
{
    std::string what = "no closed function \"" + std::string(name) + "\" returns a code";
    if (const std::string_view meant = closest(name, closed_functions); !meant.empty())
        what.append("; did you mean ").append(meant).append("?");
    return what.append("\nThose that do:\n").append(in_lines(closed_functions));
}

/* Parts of the rule that is being read know their place in it. */
class RuleReader
{
public:
    RuleReader(std::string_view text, FaultRule &rule) : text_(text), rule_(rule)
    {
    }

    MaybeProblem read()
    {
        std::string_view calls = text_;
        const auto effects = cut_off(calls, '=');
        if (!effects)
            return problem(text_, "no effect; a rule is function[:call[*times]]=effect[,effect]");
        if (MaybeProblem wrong = read_calls(calls))
            return wrong;
        return read_effects(*effects);
    }

private:
    MaybeProblem read_calls(std::string_view name)
    {
        auto call = cut_off(name, ':');
        const auto times = call ? cut_off(*call, '*') : std::nullopt;
        const auto function = closed_function(name);
        if (!function)
            return problem(name, unknown_function(name));

        rule_ = {.text = std::string(text_),
                 .function = *function,
                 .times = call ? 1U : std::numeric_limits<std::uint64_t>::max()};
        if (call && !read_count(*call, rule_.first))
            return problem(*call, "the call is not a number from 1 to 4294967295");
        if (times && !read_count(*times, rule_.times))
            return problem(*times, "the number of times is not a number from 1 to 4294967295");
        return std::nullopt;
    }

    MaybeProblem read_effects(std::string_view effects)
    {
        for (std::optional<std::string_view> rest = effects; rest;) {
            std::string_view effect = *rest;
            rest = cut_off(effect, ',');
            if (MaybeProblem wrong = read_effect(effect))
                return wrong;
        }
        if (effects == own_thread_word)
            return problem(effects, "own-thread needs an effect beside it");
        return std::nullopt;
    }

    MaybeProblem read_effect(std::string_view effect)
    {
        if (effect == block_word)
            return read_block(effect);
        if (effect == own_thread_word)
            return read_own_thread(effect);
        if (effect.starts_with(latency_word))
            return read_latency(effect);
        return read_result(effect);
    }

    MaybeProblem read_block(std::string_view effect)
    {
        if (!text_.starts_with(timing_unit_prefix))
            return problem(effect, "only functions of the timing unit, vorn_tu_..., can block: the other libraries "
                                   "return at once");
        if (rule_.effects.block)
            return problem(effect, "block is given twice");
        rule_.effects.block = true;
        return std::nullopt;
    }

    MaybeProblem read_latency(std::string_view effect)
    {
        if (rule_.effects.latency != 0)
            return problem(effect, "the latency is given twice");
        if (!read_time(effect.substr(latency_word.size()), rule_.effects.latency))
            return problem(effect, "the latency is not a number from 1 to 4294967295 with a unit: ns, us, ms or s");
        return std::nullopt;
    }

    MaybeProblem read_own_thread(std::string_view effect)
    {
        if (rule_.own_thread)
            return problem(effect, "own-thread is given twice");
        rule_.own_thread = true;
        return std::nullopt;
    }

    MaybeProblem read_result(std::string_view effect)
    {
        std::int64_t result = 0;
        if (!read_number(effect, lowest_result, highest_result, result))
            return problem(effect, "the effect is not a result (-2147483648 to 4294967295), latency:NUMBER with a "
                                   "unit, or block");
        if (rule_.effects.result)
            return problem(effect, "the result is given twice");
        rule_.effects.result = result;
        return std::nullopt;
    }

    FaultProblem problem(std::string_view part, std::string what) const
    {
        return {static_cast<std::size_t>(part.data() - text_.data()), std::move(what)};
    }

    std::string_view text_;
    FaultRule &rule_;
};

} // namespace

bool FaultRule::hits(std::uint64_t call) const
{
    return call >= first && call - first < times;
}

std::optional<FaultProblem> read_fault_rule(std::string_view text, FaultRule &rule)
{
    return RuleReader(text, rule).read();
}

} // namespace softnode
