/*
 * records_test.cpp - the form of the driver kit's records, bit by bit.
 */
#include "softnode/node/records.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

using namespace softnode;

namespace
{

/* Octets of a record that may hold anything, or those of their bits that may. */
struct Free {
    std::size_t first;
    std::size_t last;
    std::uint8_t bits = 0xff;
};

bool is_free(const std::vector<Free> &places, std::size_t octet, std::uint8_t bit)
{
    for (const Free &place : places)
        if (octet >= place.first && octet <= place.last && (place.bits & bit) != 0)
            return true;
    return false;
}

/* Turns every bit of a well-formed record, one at a time. */
template <class Record> void expect_free_only(const Record &good, const std::vector<Free> &places)
{
    ASSERT_TRUE(well_formed(good));
    for (std::size_t octet = 0; octet < sizeof good; ++octet)
        for (unsigned shift = 0; shift < 8; ++shift) {
            const auto bit = static_cast<std::uint8_t>(1U << shift);
            std::array<std::uint8_t, sizeof good> octets;
            std::memcpy(octets.data(), &good, sizeof good);
            octets[octet] ^= bit;
            Record turned;
            std::memcpy(&turned, octets.data(), sizeof turned);
            EXPECT_EQ(well_formed(turned), is_free(places, octet, bit)) << "octet " << octet << ", bit " << shift;
        }
}

} // namespace

TEST(Records, APcepHasAddressesVlanIdsAndOneWordToChoose)
{
    ork_ebcom_pcep_params pcep{};
    pcep.byte28 = 1;
    expect_free_only(pcep, {{0, 11}, {12, 12}, {13, 13, 0x7f}, {16, 18}, {20, 25}});
}

TEST(Records, ABindingHasTwoHandlesAndAPcepToChoose)
{
    ork_bind_params binding{};
    binding.word0 = 4;
    binding.word4 = 1;
    binding.word8 = 1;
    binding.word36 = 2;
    binding.word60 = 2;
    binding.byte84 = 1;
    expect_free_only(binding, {{16, 23}, {32, 35}, {40, 47}});
}

TEST(Records, AGroupHasTwelveBitsToChoose)
{
    expect_free_only(ork_ebcom_multicast_group{}, {{0, 0}, {1, 1, 0x0f}});
}
