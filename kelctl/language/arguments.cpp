// The sorted vector. Readers and kinds are argument_kind.h; a row's arguments, command.h.
#include "kelctl/language/arguments.h"

#include <fmt/core.h>

#include <algorithm>
#include <utility>

namespace kelctl
{
namespace
{

constexpr size_t usual_count = 6; // arguments of most commands: one allocation is enough for them

} // namespace

void arguments::set(std::string_view name, argument_value value)
{
    if (values_.empty())
        values_.reserve(usual_count);
    const auto next = std::ranges::lower_bound(values_, name, {}, &given_argument::name);
    if (next != values_.end() && next->name == name)
        next->value = std::move(value);
    else
        values_.insert(next, {name, std::move(value)});
}

void arguments::erase(std::string_view name)
{
    std::erase_if(values_, [name](const given_argument &one) { return one.name == name; });
}

// Searched from the front, without the order: of so few names that is as fast.
const argument_value *arguments::find(std::string_view name) const
{
    const auto found = std::ranges::find(values_, name, &given_argument::name);
    return found == values_.end() ? nullptr : &found->value;
}

const argument_value &arguments::value(std::string_view name) const
{
    if (const argument_value *found = find(name))
        return *found;
    throw std::logic_error(fmt::format("no argument {} was given", name));
}

bool arguments::operator==(const arguments &other) const
{
    return values_ == other.values_;
}

std::strong_ordering arguments::operator<=>(const arguments &other) const
{
    return values_ <=> other.values_;
}

} // namespace kelctl
