// The page, and what a browser may run of it.
#include "kel-exporter/page/page.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace kel_exporter
{
namespace
{

using testing::HasSubstr;
using testing::Not;

TEST(Page, IsTheFileAsItIs)
{
    std::ifstream file(KEL_EXPORTER_SOURCE_DIR "/kel-exporter/page/index.html");
    EXPECT_EQ(page(), std::string(std::istreambuf_iterator<char>(file), {}));
    EXPECT_FALSE(page().empty());
}

TEST(Page, PolicyAllowsNothingButItsOwnData)
{
    EXPECT_EQ(content_policy("<p>"), "default-src 'none'; script-src 'none'; style-src 'none'; connect-src 'self'; "
                                     "img-src data:; base-uri 'none'; form-action 'none'; frame-ancestors 'none'");
}

// printf %s 'alert(1)' | openssl dgst -sha256 -binary | base64
TEST(Page, PolicyNamesItsScriptsAndStylesByTheirHashes)
{
    const std::string policy =
        content_policy("<style>p{}</style><script>alert(1)</script><p><script>alert(2)</script>");
    EXPECT_THAT(policy, HasSubstr("script-src 'sha256-bhHHL3z2vDgxUt0W3dWQOrprscmda2Y5pLsLg4GF+pI=' 'sha256-"));
    EXPECT_THAT(policy, HasSubstr("style-src 'sha256-"));
    EXPECT_THAT(policy, Not(HasSubstr("unsafe")));
}

// A policy by hashes refuses these.
TEST(Page, HasNoScriptsAndStylesInAttributesAndNoForeignResources)
{
    const std::string text(page());
    for (const char *refused :
         {" style=\"", " onclick=", " onload=", "<script ", "<style ", "src=\"http", "href=\"http", "@import"})
        EXPECT_THAT(text, Not(HasSubstr(refused)));
}

} // namespace
} // namespace kel_exporter
