// Messages about numbers with units.
#include "kelctl/values/quantity_messages.h"

#include "text/printable.h"

#include <fmt/core.h>

namespace kelctl
{

std::string names_of(std::span<const unit> units)
{
    std::string names(units.front().name);
    for (size_t i = 1; i < units.size(); ++i)
        names += fmt::format("{}{}", i + 1 == units.size() ? " or " : ", ", units[i].name);
    return names;
}

std::string no_quantity(std::string_view written, std::span<const unit> units)
{
    return fmt::format("{} is not a whole number with one of the units {}", text::in_quotes(written), names_of(units));
}

std::string no_multiple(uint64_t octets, uint32_t block)
{
    return fmt::format("{} octets are not a multiple of {} octets", octets, block);
}

} // namespace kelctl
