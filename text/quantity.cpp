// Numbers with units, in and out.
#include "text/quantity.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace text
{
namespace
{

constexpr uint64_t largest = std::numeric_limits<uint64_t>::max();

uint64_t saturated_product(uint64_t a, uint64_t b)
{
    uint64_t product = 0;
    return __builtin_mul_overflow(a, b, &product) ? largest : product;
}

const unit &largest_whole_unit(uint64_t value, std::span<const unit> units)
{
    const unit *shown = &units.front();
    for (const unit &candidate : units)
        if (value != 0 && value % candidate.factor == 0)
            shown = &candidate;
    return *shown;
}

std::string in_unit(std::string number, const unit &shown)
{
    return number.append(" ").append(shown.name);
}

} // namespace

const unit *find_unit(std::string_view name, std::span<const unit> units)
{
    const auto found =
        std::find_if(units.begin(), units.end(), [name](const unit &candidate) { return candidate.name == name; });
    return found == units.end() ? nullptr : &*found;
}

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
    const unit *const found = find_unit(name, units);
    if (!found)
        return std::nullopt;
    return saturated_product(number, found->factor);
}

std::string quantity_text(uint64_t value, std::span<const unit> units)
{
    const unit &shown = largest_whole_unit(value, units);
    return in_unit(std::to_string(value / shown.factor), shown);
}

std::string separated_quantity_text(uint64_t value, std::span<const unit> units)
{
    const unit &shown = largest_whole_unit(value, units);
    return in_unit(with_separators(value / shown.factor), shown);
}

std::string with_separators(uint64_t number)
{
    std::string digits = std::to_string(number);
    for (size_t at = digits.size(); at > 3;)
        digits.insert(at -= 3, 1, ',');
    return digits;
}

} // namespace text
