// What a snapshot names.
#include "kelctl/known_words.h"

#include "kelctl/snapshot.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

using testing::ElementsAre;

mac_address mac_of(const char *text)
{
    return *parse_mac_address(text);
}

TEST(KnownWords, AreWhatTheSnapshotNamesAndWhatWasThereBefore)
{
    snapshot node;
    node.schedulers = {{.self = 0x5C, .parent = 0}};
    node.queues = {{.self = 0x5D, .scheduler = 0x5C, .rate = 0, .burst = 0, .threshold = 0, .shaped = false}};
    node.paths = {{mac_of("02:00:00:02:00:03"), 0x5D}};
    node.pceps = {{.id = 7,
                   .remote_id = 9,
                   .local_mac = mac_of("02:00:00:02:00:01"),
                   .remote_mac = mac_of("02:00:00:02:00:02"),
                   .vlan = 1,
                   .priority = 0,
                   .bound = false}};
    node.groups = {{300, {7, 8}}};

    known_words known;
    known.ids = {1};
    known.add(node);
    EXPECT_THAT(known.macs,
                ElementsAre(mac_of("02:00:00:02:00:01"), mac_of("02:00:00:02:00:02"), mac_of("02:00:00:02:00:03")));
    EXPECT_THAT(known.ids, ElementsAre(1, 7, 300));
    EXPECT_THAT(known.handles, ElementsAre(0x5C, 0x5D));
}

} // namespace
} // namespace kelctl
