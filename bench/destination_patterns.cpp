#include "destination_patterns.h"

#include <iterator>

namespace
{

constexpr int32_t ports[] = {6,  7,  19, 20, 21, 22, 23, 24, 8,  9,  25, 26, 27, 28, 29, 30, 10,
                             11, 31, 32, 33, 34, 35, 36, 12, 13, 37, 38, 39, 40, 41, 42, 0};
constexpr int32_t first_port = ports[0];

int32_t port_of(uint32_t number)
{
    return ports[number % std::size(ports)];
}

uint8_t octet(uint32_t number, int place)
{
    return static_cast<uint8_t>(number >> 8 * place);
}

// Another number for each number, without a pattern.
uint32_t scattered(uint32_t number)
{
    number = (number ^ number >> 16) * 0x85EBCA6B;
    number = (number ^ number >> 13) * 0xC2B2AE35;
    return number ^ number >> 16;
}

// The third and fourth octet tell the location, which has to be one that a path can lead to.
kel_ebcom_path_config path_to(uint32_t address, int32_t port)
{
    return {{octet(address, 3), octet(address, 2), 0, 2, octet(address, 1), octet(address, 0)}, 0, port, 0, 0, 0};
}

constexpr uint32_t start = 0x02000000; // of a row
constexpr uint32_t row_length = 600;

uint32_t in_rows(uint32_t number)
{
    return scattered(number / row_length) + number % row_length;
}

uint32_t mixed(uint32_t number)
{
    return number % 2 ? scattered(number) : start + number;
}

constexpr destination_pattern patterns[] = {
    {"in a row", [](uint32_t number) { return path_to(start + number, port_of(number)); }, 60000},
    {"in a row, one port", [](uint32_t number) { return path_to(start + number, first_port); }, 60000},
    {"in rows", [](uint32_t number) { return path_to(in_rows(number), port_of(number)); }, 60000},
    {"at random", [](uint32_t number) { return path_to(scattered(number), port_of(number)); }, 60000},
    {"mixed", [](uint32_t number) { return path_to(mixed(number), port_of(number)); }, 60000},
    // Not 65,536 themselves: a port that a removal leaves with as many gives up its queue.
    {"one address", [](uint32_t) { return path_to(start, first_port); }, 65600},
};

} // namespace

std::span<const destination_pattern> destination_patterns()
{
    return patterns;
}

kel_ebcom_path_config stranger(uint32_t number)
{
    constexpr uint32_t beyond_all_patterns = 1000000;
    return path_to(scattered(beyond_all_patterns + number), first_port);
}
