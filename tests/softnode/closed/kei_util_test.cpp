/*
 * kei_util_test.cpp - the utility library's texts.
 */
#include "platform/kei_util.h"
#include "platform/kel_init.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <set>
#include <string>

TEST(KeiUtil, EveryCodeHasATextOfItsOwn)
{
    std::set<std::string> texts;
    for (const uint32_t rc : {0U, 2U, 3U, 4U, 5U, 6U, 7U, 10U, 11U, 13U})
        texts.insert(kei_util_init_rc_str_get(rc));
    EXPECT_EQ(texts.size(), 10U);
    EXPECT_EQ(texts.count(kei_util_init_rc_str_get(99)), 0U);
}

TEST(KeiUtil, TextsSayWhatTheCodeMeans)
{
    EXPECT_STREQ(kei_util_init_rc_str_get(KEL_RC_OK), "success");
    EXPECT_STREQ(kei_util_init_rc_str_get(KEL_RC_NOT_FOUND), "not found");
    EXPECT_STREQ(kei_util_init_rc_str_get(KEL_RC_FAILED), "operation failed");
}

TEST(KeiUtil, OtherCodesHaveATextToo)
{
    for (const uint32_t rc : {1U, 8U, 14U, UINT32_MAX})
        EXPECT_STREQ(kei_util_init_rc_str_get(rc), "unknown return code");
}

TEST(KeiUtil, MacTextIsSeventeenCharactersAndTheTerminator)
{
    const uint8_t mac[] = {0x02, 0x00, 0x02, 0xAB, 0x00, 0x01};
    std::array<char, 20> text;
    text.fill('#');
    EXPECT_EQ(macAddr2str(text.data(), mac), text.data());
    EXPECT_STREQ(text.data(), "02:00:02:ab:00:01");
    EXPECT_EQ(text[17], '\0');
    EXPECT_EQ(text[18], '#');
}

TEST(KeiUtil, WithoutAnAddressTheTextIsEmpty)
{
    std::array<char, 18> text{'x', 'y', '\0'};
    EXPECT_EQ(macAddr2str(text.data(), nullptr), text.data());
    EXPECT_STREQ(text.data(), "");
}

TEST(KeiUtil, WithoutABufferThereIsNoText)
{
    const uint8_t mac[] = {2, 0, 2, 2, 0, 1};
    EXPECT_EQ(macAddr2str(nullptr, mac), nullptr);
}
