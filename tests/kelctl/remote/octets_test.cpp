// Texts and octets that are none, in messages.
#include "kelctl/remote/octets.h"

#include "notation/json.h"

#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

std::string there_and_back(const std::string &octets)
{
    return octets_of(notation::read_json(notation::to_json(document_of_octets(octets))));
}

TEST(Octets, TextsAreTexts)
{
    EXPECT_EQ(notation::to_json(document_of_octets("für \"RLU1P\"\n")), R"("für \"RLU1P\"\n")");
    EXPECT_EQ(there_and_back("für \"RLU1P\"\n"), "für \"RLU1P\"\n");
    EXPECT_EQ(there_and_back(""), "");
}

TEST(Octets, OthersAreInBase64)
{
    const std::string picture("\x89PNG\0\xff", 6);
    EXPECT_EQ(notation::to_json(document_of_octets(picture)), R"({"base64":"iVBORwD/"})");
    EXPECT_EQ(there_and_back(picture), picture);
}

TEST(Octets, OtherValuesAreRefused)
{
    EXPECT_THROW(octets_of(7), notation::document_error);
    EXPECT_THROW(octets_of({{"base32", "AA"}}), notation::document_error);
}

} // namespace
} // namespace kelctl
