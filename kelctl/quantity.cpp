// Numbers with units, in and out.
#include "kelctl/quantity.h"

#include "kelctl/text.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <limits>

namespace kelctl
{
namespace
{

constexpr uint64_t largest = std::numeric_limits<uint64_t>::max();

uint64_t saturated_product(uint64_t a, uint64_t b)
{
    uint64_t product = 0;
    return __builtin_mul_overflow(a, b, &product) ? largest : product;
}

} // namespace

std::optional<uint64_t> parse_quantity(std::string_view text, std::span<const unit> units)
{
    uint64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error == std::errc::invalid_argument)
        return std::nullopt;
    if (error == std::errc::result_out_of_range)
        number = largest;

    std::string_view name = text.substr(static_cast<size_t>(end - text.data()));
    name.remove_prefix(std::min(name.find_first_not_of(' '), name.size()));
    const auto *const found = std::find_if(units.data(), units.data() + units.size(),
                                           [name](const unit &candidate) { return candidate.name == name; });
    if (found == units.data() + units.size())
        return std::nullopt;
    return saturated_product(number, found->factor);
}

std::string quantity_text(uint64_t value, std::span<const unit> units)
{
    const unit *shown = &units.front();
    for (const unit &candidate : units)
        if (value != 0 && value % candidate.factor == 0)
            shown = &candidate;
    return fmt::format("{} {}", value / shown->factor, shown->name);
}

std::string names_of(std::span<const unit> units)
{
    std::string names(units.front().name);
    for (size_t i = 1; i < units.size(); ++i)
        names += fmt::format("{}{}", i + 1 == units.size() ? " or " : ", ", units[i].name);
    return names;
}

std::string no_quantity(std::string_view written, std::span<const unit> units)
{
    return fmt::format("{} is not a whole number with one of the units {}", in_quotes(written), names_of(units));
}

std::string no_multiple(uint64_t octets, uint32_t block)
{
    return fmt::format("{} octets are not a multiple of {} octets", octets, block);
}

} // namespace kelctl
