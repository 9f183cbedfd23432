// The tree of values.
#include "notation/document.h"

#include <gtest/gtest.h>

#include <limits>

namespace
{

using notation::document;
using notation::document_error;
using notation::kind;

TEST(Document, HoldsWhatItIsMadeFrom)
{
    EXPECT_EQ(document().holds(), kind::null);
    EXPECT_EQ(document(true).holds(), kind::boolean);
    EXPECT_EQ(document(7).holds(), kind::natural);
    EXPECT_EQ(document(-7).holds(), kind::negative);
    EXPECT_EQ(document(0.5).holds(), kind::real);
    EXPECT_EQ(document("text").holds(), kind::text);
    EXPECT_EQ(document(std::vector<int>()).holds(), kind::array);
    EXPECT_EQ(document({{"name", 1}}).holds(), kind::object);
}

TEST(Document, EqualNumbersOfDifferentTypesAreEqual)
{
    EXPECT_EQ(document(uint8_t{5}), document(int64_t{5}));
    EXPECT_NE(document(5), document(-5));
    EXPECT_NE(document(1), document(true));
}

TEST(Document, NumberIsRefusedByATypeThatCannotHoldIt)
{
    EXPECT_EQ(document(255).number<uint8_t>(), 255);
    EXPECT_THROW(document(256).number<uint8_t>(), document_error);
    EXPECT_THROW(document(-1).number<uint64_t>(), document_error);
    EXPECT_EQ(document(std::numeric_limits<int64_t>::min()).number<int64_t>(), std::numeric_limits<int64_t>::min());
    EXPECT_THROW(document(std::numeric_limits<uint64_t>::max()).number<int64_t>(), document_error);
}

TEST(Document, AskingForAnotherKindThrows)
{
    EXPECT_THROW(document("1").number<int>(), document_error);
    EXPECT_THROW(document(1).text(), document_error);
    EXPECT_THROW(document(1).boolean(), document_error);
    EXPECT_THROW(document(1).at("name"), document_error);
    EXPECT_THROW(document(1)["name"], document_error);
    EXPECT_THROW(document(1).push_back(2), document_error);
    EXPECT_THROW(document::array({1})[1], document_error);
    const document constant = document::array({1});
    EXPECT_EQ(constant[0], 1);
    EXPECT_THROW(constant[1], document_error);
}

TEST(Document, MembersKeepTheOrderOfTheirAdding)
{
    document object = {{"b", 1}, {"a", 2}};
    object["c"] = 3;
    object["b"] = 4;
    ASSERT_EQ(object.size(), 3u);
    EXPECT_EQ(object.members()[0].name, "b");
    EXPECT_EQ(object.at("b"), 4);
    EXPECT_EQ(object.members()[2].name, "c");
    EXPECT_EQ(object.find("d"), nullptr);
    EXPECT_NE(object, document({{"a", 2}, {"b", 4}, {"c", 3}}));
}

TEST(Document, NullBecomesWhatIsPutIntoIt)
{
    document list;
    list.push_back(1);
    EXPECT_TRUE(list.is_array());
    document object;
    object["name"]["inner"] = 1;
    EXPECT_EQ(object, document({{"name", {{"inner", 1}}}}));
}

TEST(Document, CopyIsApart)
{
    const document first = {{"list", document::array({1})}};
    document second = first;
    second["list"].push_back(2);
    EXPECT_EQ(first.at("list").size(), 1u);
    EXPECT_EQ(second.at("list").size(), 2u);
}

} // namespace
