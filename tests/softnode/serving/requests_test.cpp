/*
 * requests_test.cpp - each function by its name, and requests that are wrong.
 */
#include "control.h"

#include "softnode/serving/requests.h"

#include <stdexcept>
#include <string>

using json = notation::document;
using notation::read_json;

namespace
{

json asked(const json &request)
{
    return read_json(softnode::answer_to(to_json(request))).at("result");
}

std::string refusal_of(const std::string &request)
{
    try {
        softnode::answer_to(request);
    } catch (const std::exception &refused) {
        return refused.what();
    }
    return "";
}

class Requests : public ControlledNode
{
};

} // namespace

TEST_F(Requests, ReturnTheDocumentsOfTheNode)
{
    create_scheduler();
    EXPECT_EQ(asked({{"function", "snapshot"}}), look_into_node());
    EXPECT_EQ(asked({{"function", "queues"}}), read_json(taken(softnode_queues_json())));
    EXPECT_EQ(asked({{"function", "limits"}}), read_json(taken(softnode_limits_json())));
    EXPECT_EQ(asked({{"function", "fault_functions"}}), read_json(taken(softnode_fault_functions_json())));
    EXPECT_EQ(asked({{"function", "graph"}}), taken(softnode_graph_dot()));
}

TEST_F(Requests, AnswerInOneLine)
{
    EXPECT_EQ(softnode::answer_to(R"({"function":"snapshot"})").find('\n'), std::string::npos);
    EXPECT_EQ(softnode::answer_to(R"({"function":"time"})"), R"({"result":0})");
}

TEST_F(Requests, AdvanceTime)
{
    EXPECT_EQ(asked({{"function", "time_advance"}, {"nanoseconds", 1'500}}), nullptr);
    EXPECT_EQ(asked({{"function", "time"}}), 1'500);
    EXPECT_EQ(softnode_time(), 1'500U);
}

TEST_F(Requests, OfferTraffic)
{
    create_pcep(7);
    const std::string mac = look_into_node().at("pceps")[0].at("local_mac").text();
    const json offer = {{"function", "traffic_offer"}, {"mac", mac}, {"frames", 3}, {"octets_per_frame", 100}};
    EXPECT_EQ(asked(offer).number<ork_rc>(), ORK_OK);
    EXPECT_EQ(look_into_node().at("statistics").at("received").at("frames"), 3);
    json elsewhere = offer;
    elsewhere["mac"] = "0a:0b:0c:0d:0e:0f";
    EXPECT_EQ(asked(elsewhere).number<ork_rc>(), ORK_NOTAVAIL);
}

TEST_F(Requests, SendTraffic)
{
    json sent = {{"function", "traffic_send"}, {"id", 7}, {"frames", 2}, {"octets_per_frame", 100}};
    EXPECT_EQ(asked(sent).number<ork_rc>(), ORK_NOTAVAIL);
    create_pcep(7);
    EXPECT_EQ(asked(sent).number<ork_rc>(), ORK_OK);
    sent["octets_per_frame"] = 0;
    EXPECT_EQ(asked(sent).number<ork_rc>(), ORK_INVAL);
}

TEST_F(Requests, CountDroppedFrames)
{
    ork_ebcom_pcep_path path{};
    path.macAddr[0] = 2;
    path.pcepType = 1;
    path.queue_hdl = add_queue(create_scheduler(), 1'000, 1'500);
    ASSERT_EQ(ork_ebcom_pcep_path_create(ork, &path), ORK_OK);
    ASSERT_EQ(kel_init_qos_queue_rem(path.queue_hdl), 0U);
    asked({{"function", "traffic_offer"}, {"mac", "02:00:00:00:00:00"}, {"frames", 5}, {"octets_per_frame", 64}});
    EXPECT_EQ(asked({{"function", "traffic_dropped"}}),
              (json{{"too_long", 0}, {"no_room", 0}, {"no_way", 0}, {"no_queue", 5}}));
}

TEST_F(Requests, MakeCallsFail)
{
    EXPECT_EQ(asked({{"function", "faults_add"}, {"rules", "kel_init_attach:1=10"}}), nullptr);
    EXPECT_EQ(kel_init_attach(&attach), 10U);
    EXPECT_EQ(asked({{"function", "faults"}}), json::array({{{"rule", "kel_init_attach:1=10"}, {"hits", 1}}}));
    EXPECT_EQ(asked({{"function", "faults_release"}}), 0);
    EXPECT_EQ(asked({{"function", "faults_clear"}}), nullptr);
    EXPECT_EQ(fault_rules(), json::array());
    EXPECT_EQ(asked({{"function", "faults_add"}, {"rules", "kel_init_attach"}}), add_faults("kel_init_attach"));
}

TEST_F(Requests, TellWhereATextOfFaultsIsWrong)
{
    EXPECT_EQ(asked({{"function", "faults_add_text"}, {"text", "ork_bind=-4\n  kel_init_attach:0=1\n"}}),
              (json{{"problem", "the call is not a number from 1 to 4294967295"}, {"line", 2}, {"column", 19}}));
    EXPECT_EQ(fault_rules(), json::array());
    EXPECT_EQ(asked({{"function", "faults_add_text"}, {"text", "ork_bind=-4\n"}}), nullptr);
    EXPECT_EQ(fault_rules().size(), 1U);
}

TEST_F(Requests, ControlTheTimingUnit)
{
    EXPECT_EQ(asked({{"function", "timing_settle"}, {"milliseconds", 0}}), 0);
    EXPECT_EQ(asked({{"function", "timing_reading_set"}, {"cycles", -40}, {"frequency", 250'000}}), nullptr);
    EXPECT_EQ(look_into_node().at("timing_unit").at("reading").at("cycles"), -40);
    EXPECT_EQ(asked({{"function", "timing_event_post"}, {"type", 6}, {"domain", -1}}), nullptr);
    EXPECT_EQ(refusal_of(R"({"function":"timing_settle","milliseconds":10001})"), "milliseconds: more than 10000");
}

TEST_F(Requests, SwitchTheNodeOffAndOn)
{
    create_scheduler();
    EXPECT_EQ(asked({{"function", "reset"}}), nullptr);
    EXPECT_EQ(look_into_node().at("schedulers"), json::array());
}

TEST_F(Requests, SayWhatIsWrong)
{
    EXPECT_EQ(refusal_of("time"), "not JSON");
    EXPECT_EQ(refusal_of("[]"), "a request is an object with \"function\", a text");
    EXPECT_EQ(refusal_of(R"({"function":1})"), "a request is an object with \"function\", a text");
    EXPECT_EQ(refusal_of(R"({"function":"tide"})").substr(0, 59),
              "there is no function \"tide\"; there are fault_functions, fau");
    EXPECT_EQ(refusal_of(R"({"function":"time","zone":1})"), "\"time\" has no argument \"zone\"");
    EXPECT_EQ(refusal_of(R"({"function":"time","":1})"), "\"time\" has no argument \"\"");
    EXPECT_EQ(refusal_of(R"({"function":"time_advance"})"),
              "nanoseconds: the document does not hold an object with \"nanoseconds\"");
    EXPECT_EQ(refusal_of(R"({"function":"time_advance","nanoseconds":-1})"),
              "nanoseconds: the document does not hold a whole number of that range");
    for (const char *mac :
         {"", "02:00:00:02:00:1", "02:00:00:02:00:0g", "02-00-00-02-00-01", "02:00:00:02:00:01:", "+2:00:00:02:00:01"})
        EXPECT_EQ(refusal_of(notation::to_json({{"function", "traffic_offer"}, {"mac", mac}})),
                  "mac: this is no address such as 02:00:00:02:00:01")
            << mac;
}
