// Command lines read.
#include "kel-exporter/language/request.h"

#include <gtest/gtest.h>

namespace kel_exporter
{
namespace
{

using words = std::vector<std::string>;

request parsed(const words &all)
{
    return parse_request(all);
}

TEST(ExporterRequest, ByItselfIsForAllNodesOnLoopback)
{
    EXPECT_EQ(parsed({}).listen, "127.0.0.1:9477");
    EXPECT_EQ(parsed({}).nodes, words{});
}

TEST(ExporterRequest, TakesAnAddressAndNodes)
{
    const request asked = parsed({"--node", "edge", "--listen=unix:/run/x.sock", "--node", "core"});
    EXPECT_EQ(asked.listen, "unix:/run/x.sock");
    EXPECT_EQ(asked.nodes, (words{"edge", "core"}));
}

TEST(ExporterRequest, WrongOnesAreRefused)
{
    for (const words &all : std::vector<words>{{"edge"}, {"--node"}, {"--node", "a/b"}, {"--node", ".a"}, {"--port=1"}})
        EXPECT_THROW(parse_request(all), options::wrong_request) << all.back();
}

} // namespace
} // namespace kel_exporter
