// MAC addresses as text.
#include "text/mac.h"

#include <gtest/gtest.h>

TEST(MacText, IsLowerCaseWithColons)
{
    EXPECT_STREQ(text::mac_text({0x02, 0x00, 0xab, 0xcd, 0x10, 0xff}).data(), "02:00:ab:cd:10:ff");
}
