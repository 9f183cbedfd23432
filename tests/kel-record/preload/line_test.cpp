// Commands as they are written down, read back by kelctl.
#include "kel-record/preload/line.h"

#include "kelctl/commands/commands.h"
#include "kelctl/language/command_line.h"
#include "kelctl/values/limits.h"

#include <gtest/gtest.h>

#include <string>

namespace kel_record
{
namespace
{

kelctl::invocation read_back(line &written)
{
    return kelctl::parse(kelctl::commands(), kelctl::words_of(written.finished()), kelctl::source::script);
}

TEST(Line, ValuesThatKelctlTakesNeedNoRaw)
{
    line written("pcep remove");
    written.number("", 511, kelctl::id_range);
    EXPECT_STREQ(written.finished(), "pcep remove 511");
    EXPECT_TRUE(written.is_command());
}

TEST(Line, OthersAreRaw)
{
    line written("pcep remove");
    written.number("", 512, kelctl::id_range);
    EXPECT_STREQ(written.finished(), "pcep remove 512 --raw");
    EXPECT_EQ(read_back(written).given.id("ID"), 512U);
}

TEST(Line, WhatIsAddedLaterComesBeforeRaw)
{
    line written("pcep remove");
    written.need_raw();
    written.finished();
    written.add(" %d", 7);
    EXPECT_STREQ(written.finished(), "pcep remove 7 --raw");
}

TEST(Line, TextsOfAnyOctetsComeBack)
{
    std::string every;
    for (int octet = 1; octet < 256; ++octet)
        every += static_cast<char>(octet);
    for (const std::string &text : {every, std::string("plain"), std::string("--json"), std::string(), std::string("-"),
                                    std::string("a # b"), std::string("\\x41"), std::string("\"'\\")}) {
        line written("trace message");
        written.text("", text.c_str());
        written.text(" --prefix", text.c_str());
        const kelctl::invocation asked = read_back(written);
        EXPECT_EQ(asked.given.text("TEXT"), text) << written.finished();
        EXPECT_EQ(asked.given.text("--prefix"), text) << written.finished();
    }
}

TEST(Line, NullPointersMakeNoCommand)
{
    line written("ebcom queue handle");
    written.mac("", nullptr);
    EXPECT_STREQ(written.finished(), "ebcom queue handle (null)");
    EXPECT_FALSE(written.is_command());
}

TEST(Line, WhatIsTooLongIsCutAndNoCommand)
{
    line written("trace message");
    written.text("", std::string(10'000, '\n').c_str());
    EXPECT_FALSE(written.is_command());
    EXPECT_LT(std::string(written.finished()).size(), 8192U);
}

} // namespace
} // namespace kel_record
