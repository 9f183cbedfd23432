// Looking arguments up.
#include "kelctl/language/arguments.h"

#include <fmt/core.h>

#include <utility>

namespace kelctl
{

void arguments::set(std::string_view name, argument_value value)
{
    values_.insert_or_assign(std::string(name), std::move(value));
}

void arguments::erase(std::string_view name)
{
    if (const auto found = values_.find(name); found != values_.end())
        values_.erase(found);
}

bool arguments::has(std::string_view name) const
{
    return values_.find(name) != values_.end();
}

const argument_value &arguments::value(std::string_view name) const
{
    const auto found = values_.find(name);
    if (found == values_.end())
        throw std::logic_error(fmt::format("no argument {} was given", name));
    return found->second;
}

} // namespace kelctl
