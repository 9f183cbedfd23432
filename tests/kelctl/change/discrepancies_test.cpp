// What the accelerator holds beside what this process set up: changed behind its back.
#include "kelctl/change/discrepancies.h"

#include "kelctl/jobs/take_down.h"
#include "kelctl/node/read_back.h"
#include "platform/kel_init.h"
#include "platform/ork.h"
#include "script_session.h"
#include "softnode/softnode.h"

#include <fmt/core.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class Discrepancies : public testing::Test
{
protected:
    Discrepancies()
    {
        softnode_reset();
        for (const char *line :
             {"ebcom params set --mtu 1500 --ether-type 0x88b5 --settings 1,2", "ebcom interface create", "ebcom start",
              "ebcom path add 02:00:00:02:00:01 --port 6 --rate 1000 --burst 2000",
              "ebcom path add 02:00:00:02:00:01 --port 42", "ebcom shaper add 02:00:00:02:00:05 --port 12",
              "pcep start", "pcep add 7 --remote-id 9 --local 02:00:00:03:00:01 --remote 02:00:00:02:00:01 --vlan 100",
              "pcep add 8 --remote-id 9 --local 02:00:00:02:00:07 --remote 02:00:00:02:00:01 --vlan 100",
              "group add 300", "group member add 300 7", "group member add 300 8"})
            EXPECT_EQ(here.run(line).status, exit_done) << line;
        kel_init_attach(&attach);
    }

    ~Discrepancies() override
    {
        softnode_faults_clear();
        take_down(here);
    }

    std::vector<std::string> found()
    {
        return found(model_of(here));
    }

    std::vector<std::string> found(const node_model &model)
    {
        std::vector<std::string> texts;
        const auto all = discrepancies(model, here);
        for (const discrepancy &one : *all)
            texts.push_back(text_of(one));
        return texts;
    }

    void *a_scheduler() const
    {
        return reinterpret_cast<void *>(
            current_snapshot()->schedulers.back().self); // NOLINT(performance-no-int-to-ptr)
    }

    script_session here;
    kel_attach_info attach{};
};

TEST_F(Discrepancies, IsWhatThisProcessSetUp)
{
    EXPECT_THAT(found(), IsEmpty());
}

TEST_F(Discrepancies, NothingOfItIsLeftAfterTheAcceleratorWasSwitchedOff)
{
    softnode_reset();
    EXPECT_THAT(found(),
                ElementsAre("parameters: the accelerator holds other ones",
                            "interface: the accelerator does not hold it",
                            "scheduler tree: the accelerator does not hold it",
                            "queue of RLU1P (6): the accelerator does not hold it",
                            "queue of RLU4P (12): the accelerator does not hold it",
                            "queue of RLU4W (42): the accelerator does not hold it",
                            "path to 02:00:00:02:00:01 on RLU4W (42): the accelerator does not hold it",
                            "PCEP 7: the accelerator does not hold it", "PCEP 8: the accelerator does not hold it",
                            "group 300: the accelerator does not hold it"));
}

TEST_F(Discrepancies, ShowsParametersThatSomebodyElseSet)
{
    const ork_ebcom_global_config others[] = {
        {.icPortMTU = 1500, .etherType = 0x88b5, .nibbles = 0x11, .reserved = 0},
        {.icPortMTU = 1500, .etherType = 0x88b6, .nibbles = 0x12, .reserved = 0},
        {.icPortMTU = 1400, .etherType = 0x88b5, .nibbles = 0x12, .reserved = 0},
    };
    for (const ork_ebcom_global_config &other : others) {
        ASSERT_EQ(ork_ebcom_global_config_set(attach.ork_handle, &other), 0);
        EXPECT_THAT(found(), ElementsAre("parameters: the accelerator holds other ones"));
    }
}

TEST_F(Discrepancies, ShowsAMemberThatSomebodyElseRemoved)
{
    const auto group = here.run("pcep handles dump").shown.at("dump").text();
    const auto at = group.find("300  0x");
    ASSERT_NE(at, std::string::npos);
    const auto handle = std::stoull(group.substr(at + 5), nullptr, 16);
    ASSERT_EQ(ork_ebcom_multicast_member_rem(attach.ork_handle, handle, 7), 0);
    EXPECT_THAT(found(), ElementsAre("group 300: the accelerator holds the members 8"));
    ASSERT_EQ(ork_ebcom_multicast_member_rem(attach.ork_handle, handle, 8), 0);
    EXPECT_THAT(found(), ElementsAre("group 300: the accelerator holds the members none"));
    for (const uint32_t member : {7u, 8u})
        ASSERT_EQ(ork_ebcom_multicast_member_add(attach.ork_handle, handle, member), 0);
    EXPECT_THAT(found(), IsEmpty());
}

// The accelerator's path keeps to the queue that was added last.
TEST_F(Discrepancies, ShowsThatTheLastQueueOfADestinationIsGone)
{
    ASSERT_EQ(here.run("ebcom path remove 02:00:00:02:00:01 --port 42").status, exit_done);
    EXPECT_THAT(found(), ElementsAre("path to 02:00:00:02:00:01 on RLU1P (6): its queue is gone"));
}

TEST_F(Discrepancies, ShowsAThresholdThatALaterPathCouldNotChange)
{
    ASSERT_EQ(here.run("ebcom path add 02:00:00:02:00:02 --port 6 --rate 1000 --burst 2000 --threshold 512").status,
              exit_done);
    EXPECT_THAT(found(), IsEmpty());
    ASSERT_EQ(here.run("ebcom path remove 02:00:00:02:00:01 --port 6").status, exit_done);
    EXPECT_THAT(found(),
                Contains("queue of RLU1P (6): the accelerator holds 1 Mbit/s, burst 2000 octets, threshold "
                         "5000 KiB, this process asked for 1 Mbit/s, burst 2000 octets, threshold 512 octets"));
}

TEST_F(Discrepancies, ShowsAQueueThatIsNotShapedAsAsked)
{
    node_model model = model_of(here);
    const auto path = std::ranges::find(
        model,
        object_key{.kind = object_kind::shaper, .number = 12, .mac = parse_mac_address("02:00:00:02:00:05").value()},
        &node_object::key);
    ASSERT_NE(path, model.end());
    path->asked.given.set("--rate", int64_t{1000});
    path->asked.given.set("--burst", int64_t{2000});
    path->asked.given.set("--threshold", int64_t{512});
    EXPECT_THAT(found(model),
                ElementsAre("queue of RLU4P (12): the accelerator holds an unshaped one, this process asked for 1 "
                            "Mbit/s, burst 2000 octets, threshold 512 octets"));
}

TEST_F(Discrepancies, ShowsAPcepThatARemovalForgot)
{
    ASSERT_EQ(here.run("group member remove 300 8").status, exit_done);
    ASSERT_EQ(softnode_faults_add("ork_ebcom_pcep_delete=-4"), nullptr);
    ASSERT_EQ(here.run("pcep remove 8").status, exit_operation_failed);
    here.made.note(asked("pcep remove 8"));
    EXPECT_THAT(found(), ElementsAre("PCEP 8: the accelerator holds it, but this process knows of no such one"));
}

TEST_F(Discrepancies, ShowsWhatSomebodyElseMade)
{
    ASSERT_EQ(here.run("ebcom interface delete").status, exit_done);
    uint16_t device = 0;
    kel_init_eventdev_dev_id_ebcom_get(&device);
    ASSERT_EQ(ork_ebcom_interface_create(attach.ork_handle, device), 0);
    const ork_ebcom_multicast_group group = {.pcep_id = 301, .reserved = {}};
    uint64_t unused = 0;
    ASSERT_EQ(ork_ebcom_multicast_group_create(attach.ork_handle, &group, &unused, 0), 0);
    const kel_init_qos_queue_params unshaped = {.mode = 1, .rate = 0, .threshold = 0, .bucket_size = 0};
    void *queue = nullptr;
    ASSERT_EQ(kel_init_qos_queue_add(&unshaped, 5, a_scheduler(), device, &queue), 0);
    ork_ebcom_pcep_path path = {.macAddr = {2, 0, 0, 2, 0, 9}, .pcepType = 2, .eioaPort = 0, .queue_hdl = queue};
    ASSERT_EQ(ork_ebcom_pcep_path_create(attach.ork_handle, &path), 0);
    path.macAddr[5] = 1; // of a destination that this process has, too
    ASSERT_EQ(ork_ebcom_pcep_path_create(attach.ork_handle, &path), 0);
    EXPECT_THAT(
        found(),
        ElementsAre("interface: the accelerator holds it, but this process knows of no such one",
                    fmt::format("queue {}: the accelerator holds it, but this process knows of no such one",
                                static_cast<const void *>(queue)),
                    "path to 02:00:00:02:00:01 on RLU4W (42): the accelerator sends through a queue of no known "
                    "port",
                    "path to 02:00:00:02:00:09: the accelerator holds it, but this process knows of no such one",
                    "group 301: the accelerator holds it, but this process knows of no such one"));
}

TEST_F(Discrepancies, ShowsBindingsThatSomebodyElseChanged)
{
    ork_bind_params params = {.word0 = 4,
                              .word4 = 1,
                              .word8 = 1,
                              .reserved12 = 0,
                              .ork_handle = attach.ork_handle,
                              .reserved24 = 0,
                              .pcep_id = 7,
                              .word36 = 2,
                              .target = attach.ehsfp_target,
                              .reserved48 = {},
                              .word60 = 2,
                              .reserved64 = {},
                              .byte84 = 1,
                              .reserved85 = {}};
    ASSERT_EQ(ork_unbind(attach.sys_handle, &params), 0);
    params.pcep_id = 8;
    ASSERT_EQ(ork_bind(attach.sys_handle, &params), 0);
    EXPECT_THAT(found(), ElementsAre("PCEP 7: it is not bound to the EHSFP", "PCEP 8: it is bound"));
}

TEST_F(Discrepancies, ShowsAPcepOfWhichAnythingDiffers)
{
    const mac_address other = parse_mac_address("02:00:00:03:00:02").value();
    const std::pair<const char *, argument_value> differing[] = {{"--remote-id", int64_t{10}},
                                                                 {"--local", other},
                                                                 {"--remote", other},
                                                                 {"--vlan", int64_t{101}},
                                                                 {"--priority", int64_t{1}}};
    for (const auto &[name, value] : differing) {
        node_model model = model_of(here);
        const auto pcep =
            std::ranges::find(model, object_key{.kind = object_kind::pcep, .number = 7}, &node_object::key);
        ASSERT_NE(pcep, model.end());
        pcep->asked.given.set(name, value);
        EXPECT_THAT(found(model), ElementsAre("PCEP 7: the accelerator holds another one")) << name;
    }
}

TEST_F(Discrepancies, LibraryTruncatesWhatAPcepAsksFor)
{
    ASSERT_EQ(here.run("pcep add 9 --raw --remote-id 9 --local 02:00:00:02:00:07 --remote 02:00:00:02:00:01 "
                       "--vlan 0x1064 --priority 9")
                  .status,
              exit_done);
    EXPECT_THAT(found(), IsEmpty());
}

TEST_F(Discrepancies, SchedulerTreeMayBeMadeByItself)
{
    take_down(here);
    ASSERT_EQ(here.run("ebcom qos init").status, exit_done);
    EXPECT_THAT(found(model_of(
                    all_asked({"ebcom params set --mtu 1500 --ether-type 0x88b5 --settings 1,2", "ebcom qos init"}))),
                IsEmpty());
    EXPECT_THAT(found(model_of(all_asked({"ebcom params set --mtu 1500 --ether-type 0x88b5 --settings 1,2"}))),
                ElementsAre("scheduler tree: the accelerator holds it, but this process knows of no such one"));
}

TEST_F(Discrepancies, RawShapingCountsAsItIsAskedFor)
{
    for (const char *line :
         {"ebcom path add 02:00:00:02:00:02 --port 7 --raw --rate 1000 --burst 2000 --shaping 1",
          "ebcom path add 02:00:00:02:00:03 --port 8 --raw --rate 1000 --burst 2000 --shaping 0",
          "ebcom path add 02:00:00:02:00:04 --port 9 --raw --rate 0 --burst 0 --threshold 512 --shaping 0"})
        ASSERT_EQ(here.run(line).status, exit_done) << line;
    EXPECT_THAT(found(), IsEmpty());
}

} // namespace
} // namespace kelctl
