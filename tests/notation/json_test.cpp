// Documents as JSON.
#include "notation/json.h"

#include <gtest/gtest.h>

#include <limits>

namespace
{

using notation::document;
using notation::document_error;
using notation::read_json;
using notation::to_json;
using notation::try_read_json;

document one_of_each()
{
    return {{"null", nullptr},
            {"truth", true},
            {"natural", std::numeric_limits<uint64_t>::max()},
            {"negative", std::numeric_limits<int64_t>::min()},
            {"real", 0.5},
            {"text", "a"},
            {"array", document::array({1, document::array()})},
            {"object", document::object()}};
}

TEST(Json, OneLineHasNoBlanks)
{
    EXPECT_EQ(to_json(one_of_each()), R"({"null":null,"truth":true,"natural":18446744073709551615,)"
                                      R"("negative":-9223372036854775808,"real":0.5,"text":"a",)"
                                      R"("array":[1,[]],"object":{}})");
}

TEST(Json, IndentedHasAValueALine)
{
    EXPECT_EQ(to_json({{"a", document::array({1, 2})}}, 2), "{\n  \"a\": [\n    1,\n    2\n  ]\n}");
}

TEST(Json, WhatIsNotUtf8IsReplaced)
{
    EXPECT_EQ(to_json("\xff\"\n\x01"), "\"\xef\xbf\xbd\\\"\\n\\u0001\"");
}

TEST(Json, WhatIsWrittenIsReadAgain)
{
    EXPECT_EQ(read_json(to_json(one_of_each())), one_of_each());
    EXPECT_EQ(read_json(to_json(one_of_each(), 2)), one_of_each());
}

TEST(Json, LaterMemberOfANameTakesThePlaceOfTheEarlier)
{
    EXPECT_EQ(to_json(read_json(R"({"a":1,"b":2,"a":3})")), R"({"a":3,"b":2})");
}

TEST(Json, OfManyMembersOfANameTheLastOneCounts)
{
    EXPECT_EQ(to_json(read_json(R"({"b":1,"a":[2],"b":3,"c":4,"a":5,"b":6})")), R"({"b":6,"a":5,"c":4})");
}

TEST(Json, WhatIsNoJsonIsRefused)
{
    for (const char *text : {"", "{", "{}x", "[1,]", "nil", "\"\xff\""}) {
        EXPECT_EQ(try_read_json(text), std::nullopt) << text;
        EXPECT_THROW(read_json(text), document_error) << text;
    }
}

TEST(Json, WhatNestsTooDeeplyIsRefused)
{
    const auto nested = [](size_t depth) { return std::string(depth, '[') + std::string(depth, ']'); };
    EXPECT_TRUE(try_read_json(nested(500)));
    EXPECT_FALSE(try_read_json(nested(501)));
    EXPECT_FALSE(try_read_json(std::string(1'000'000, '[')));
}

} // namespace
