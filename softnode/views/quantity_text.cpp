/*
 * quantity_text.cpp - separators between thousands, and units.
 */
#include "softnode/views/quantity_text.h"

#include <algorithm>
#include <array>
#include <span>

namespace softnode
{

namespace
{

struct Unit {
    std::uint64_t size;
    const char *name;
};

/* From the largest; the last one holds any number. */
constexpr std::array<Unit, 3> rate_units{{{1'000'000, " Gbit/s"}, {1'000, " Mbit/s"}, {1, " kbit/s"}}};
constexpr std::array<Unit, 3> size_units{{{1'048'576, " MiB"}, {1'024, " KiB"}, {1, " octets"}}};

std::string in_units(std::uint64_t number, std::span<const Unit> units)
{
    const auto whole = [number](const Unit &unit) { return number >= unit.size && number % unit.size == 0; };
    const auto unit = std::find_if(units.begin(), units.end() - 1, whole);
    return grouped(number / unit->size) + unit->name;
}

} // namespace

std::string grouped(std::uint64_t number)
{
    std::string text = std::to_string(number);
    for (std::size_t place = text.size(); place > 3; place -= 3)
        text.insert(place - 3, 1, ',');
    return text;
}

std::string rate_text(std::uint64_t rate)
{
    return in_units(rate, rate_units);
}

std::string size_text(std::uint64_t octets)
{
    return in_units(octets, size_units);
}

} // namespace softnode
