// Addresses, and who can be reached there.
#include "kel-exporter/serving/listener.h"

#include "temporary_folder.h"
#include "tests/refused_calls.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace kel_exporter
{
namespace
{

using testing::HasSubstr;
using testing::MatchesRegex;

std::string why_not(const std::string &address)
{
    try {
        listener{address};
    } catch (const std::runtime_error &error) {
        return error.what();
    }
    return "";
}

TEST(Listener, TellsThePortThatTheKernelChose)
{
    EXPECT_THAT(listener("127.0.0.1:0").text(), MatchesRegex("http://127\\.0\\.0\\.1:[1-9][0-9]*/"));
}

TEST(Listener, PutsAnAddressOfTheNewerKindInBrackets)
{
    const std::string refused = why_not("[::1]:0");
    if (!refused.empty())
        GTEST_SKIP() << refused;
    EXPECT_THAT(listener("[::1]:0").text(), MatchesRegex("http://\\[::1\\]:[1-9][0-9]*/"));
}

TEST(Listener, SaysWhatTheSystemRefuses)
{
    for (const long call : {SYS_bind, SYS_listen})
        EXPECT_EQ(where_refused({{call, EADDRINUSE}}, [] { return why_not("127.0.0.1:0"); }),
                  "127.0.0.1:0: Address already in use");
}

TEST(Listener, IsRefusedWhereAnotherOneListens)
{
    const listener first("127.0.0.1:0");
    const std::string address = first.text().substr(7, first.text().size() - 8);
    EXPECT_EQ(why_not(address), address + ": Address already in use");
}

TEST(Listener, TakesNumericAddressesOnly)
{
    for (const char *address : {"localhost:9477", "9477", ":9477", "127.0.0.1", "127.0.0.1:", "127.0.0.1:http", "::1",
                                "", "[::1]", "[::1:9477", "127.0.0.1:99999"})
        EXPECT_THAT(why_not(address), HasSubstr("is no address to listen on")) << address;
}

TEST(Listener, ServesAUnixSocketOfItsOwnerOnly)
{
    const temporary_folder folder;
    const std::string path = folder.path() + "/http.sock";
    {
        const listener here("unix:" + path);
        EXPECT_EQ(here.text(), "unix:" + path);
        EXPECT_EQ(std::filesystem::status(path).permissions(),
                  std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
        EXPECT_THAT(why_not("unix:" + path), HasSubstr("another process serves it"));
    }
    EXPECT_FALSE(std::filesystem::exists(path));
}

} // namespace
} // namespace kel_exporter
