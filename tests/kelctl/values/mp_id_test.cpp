// The MP id and what follows from it, against the library: it keeps its MP id for good, so every one takes a process.
#include "kelctl/values/mp_id.h"

#include "kel/kel_core_ic_pcep.h"
#include "kelctl/values/mac_address.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace kelctl
{
namespace
{

constexpr uint32_t octet_values = 256;

kel_location location_by_the_library(const mac_address &mac)
{
    uint32_t location = 0;
    uint32_t type = 0;
    kel_ic_pcep_get_location_and_type_from_branch(mac.octets.data(), &location, &type);
    return static_cast<kel_location>(location);
}

// Whether both say the same of every address. They tell by the octets 2 and 3; the others are all this one.
bool agree_on_all_addresses(uint8_t other_octets)
{
    mac_address mac;
    mac.octets.fill(other_octets);
    for (uint32_t two = 0; two < octet_values; ++two)
        for (uint32_t three = 0; three < octet_values; ++three) {
            mac.octets[2] = static_cast<uint8_t>(two);
            mac.octets[3] = static_cast<uint8_t>(three);
            if (location_of(mac, own_mp_id()) != location_by_the_library(mac))
                return false;
        }
    return true;
}

// In a process that has this text as MPID, or none.
bool agree_with(const char *text, uint8_t other_octets)
{
    const pid_t child = fork();
    if (child == 0) {
        text ? setenv("MPID", text, 1) : unsetenv("MPID");
        _exit(agree_on_all_addresses(other_octets) ? 0 : 1);
    }
    int status = -1;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    return status == 0;
}

TEST(MpId, LocationIsTheLibrarysForEveryMpIdAndAddress)
{
    for (uint32_t id = 0; id < octet_values; ++id)
        EXPECT_TRUE(agree_with(std::to_string(id).c_str(), id % 2 == 0 ? 0x00 : 0xFF)) << id;
}

TEST(MpId, TextsAreReadAsTheLibraryReadsThem)
{
    EXPECT_TRUE(agree_with(nullptr, 2));
    for (const char *text : {"", "x", " 7", "+7", "7x", "007", "0x10", "256", "263", "-1", "-249", "4294967301",
                             "99999999999999999999", "-99999999999999999999"})
        EXPECT_TRUE(agree_with(text, 2)) << text;
}

TEST(MpId, TextThatTheLibraryReadsOtherwiseIsWrong)
{
    setenv("MPID", "16", 1);
    EXPECT_EQ(wrong_mp_id(), "");
    setenv("MPID", "0x10", 1);
    EXPECT_THAT(wrong_mp_id(), testing::EndsWith("; the library reads it as 0"));
    unsetenv("MPID");
}

TEST(MpId, FirstOneIsAdoptedForGood)
{
    unsetenv("MPID");
    EXPECT_TRUE(adopt_mp_id(own_mp_id())); // none
    EXPECT_TRUE(adopt_mp_id(5));
    EXPECT_STREQ(std::getenv("MPID"), "5");
    EXPECT_FALSE(adopt_mp_id(6));
    EXPECT_TRUE(adopt_mp_id(5));
    EXPECT_EQ(own_mp_id(), 5);
}

TEST(MpId, IsKeptOnceTheLibraryMayHaveReadIt)
{
    unsetenv("MPID");
    keep_mp_id(); // there was none to read
    setenv("MPID", "5", 1);
    keep_mp_id();
    EXPECT_FALSE(adopt_mp_id(6));
    EXPECT_TRUE(adopt_mp_id(5));
}

TEST(MpId, TextThatSaysItAlreadyStays)
{
    setenv("MPID", "261", 1);
    EXPECT_TRUE(adopt_mp_id(5));
    EXPECT_STREQ(std::getenv("MPID"), "261");
}

} // namespace
} // namespace kelctl
