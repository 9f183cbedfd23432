// What exists, written and made again.
#include "kelctl/change/export.h"

#include "bare_node.h"
#include "kelctl/change/discrepancies.h"
#include "kelctl/change/node_model.h"
#include "kelctl/jobs/script.h"
#include "kelctl/jobs/take_down.h"
#include "kelctl/node/load_node_file.h"
#include "random_node.h"
#include "script_session.h"
#include "softnode/softnode.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class Export : public testing::Test
{
protected:
    Export()
    {
        softnode_reset();
    }

    ~Export() override
    {
        take_down(here);
    }

    void run(const std::vector<std::string> &lines)
    {
        for (const std::string &line : lines)
            EXPECT_EQ(here.run(line).status, exit_done) << line;
    }

    // Takes everything down, and carries these out on a node that was just switched on.
    std::multiset<std::string> made_again(const std::vector<invocation> &lines)
    {
        take_down(here);
        softnode_reset();
        for (const invocation &line : lines)
            EXPECT_EQ(here.perform(line).status, exit_done) << line.row->name;
        return bare_now();
    }

    std::multiset<std::string> of_file(const std::string &text)
    {
        const loaded_lines read = load_node_text("exported", text, here.table);
        EXPECT_THAT(read.errors, IsEmpty());
        return made_again(read.lines);
    }

    script_session here;
};

constexpr const char *service[] = {"ebcom params set --mtu 1500 --ether-type 0x88b5 --settings 1,2",
                                   "ebcom interface create", "ebcom start"};

TEST_F(Export, MakesTheSameNodeAgainWhateverItIs)
{
    for (uint32_t seed = 0; seed < 30; ++seed) {
        SCOPED_TRACE(seed);
        run(random_node(seed).lines());
        const auto before = bare_now();
        const exported file = exported_node(false, here);
        const exported script = exported_node(true, here);
        EXPECT_THAT(file.errors, IsEmpty());
        EXPECT_THAT(file.warnings, IsEmpty());
        EXPECT_EQ(of_file(file.text), before) << file.text;
        EXPECT_EQ(made_again(parse_script(here.table, script.text).lines), before) << script.text;
        take_down(here);
    }
}

// After removals the accelerator may send a destination nowhere, or hold another threshold than the paths that are left
// asked for: what is exported then has a warning.
TEST_F(Export, MakesTheSameNodeAgainAfterRemovalsOrWarns)
{
    size_t clean = 0;
    for (uint32_t seed = 0; seed < 30; ++seed) {
        SCOPED_TRACE(seed);
        random_node node(seed);
        run(node.lines());
        std::vector<invocation> removals;
        for (const made_command &made : here.made.all())
            if (made.asked.row->name == "ebcom path add" && node.below(3) == 0)
                removals.push_back(made.undo);
        for (const invocation &removal : removals)
            EXPECT_EQ(here.perform(removal).status, exit_done);
        const auto before = bare_now();
        const exported file = exported_node(false, here);
        EXPECT_THAT(file.errors, IsEmpty());
        const bool same = of_file(file.text) == before;
        EXPECT_EQ(same, file.warnings.empty()) << file.text << (file.warnings.empty() ? "" : file.warnings[0].message);
        clean += same;
        take_down(here);
    }
    EXPECT_GT(clean, 8u);
}

TEST_F(Export, ConsecutivePathsBecomeOneTable)
{
    run({std::begin(service), std::end(service)});
    run({"ebcom path add 02:00:00:02:00:01 --port 6 --rate 1000 --burst 2000 --count 200",
         "ebcom path add 02:00:00:02:01:00 --port 7 --count 2"});
    EXPECT_THAT(exported_node(false, here).text, HasSubstr(R"([[path]]
dst_mac = "02:00:00:02:00:01"
port = "RLU1P"
shaping.rate = "1 Mbit/s"
shaping.burst = "2000 octets"
count = 200

[[path]]
dst_mac = "02:00:00:02:01:00"
port = "RLU1Q"
count = 2
)"));
    EXPECT_THAT(exported_node(true, here).text,
                HasSubstr("ebcom path add 02:00:00:02:00:01 --port RLU1P --rate \"1 Mbit/s\" --burst \"2000 octets\" "
                          "--count 200\n"));
}

// The addresses count up in their last three octets only.
TEST_F(Export, PathsThatDoNotContinueTheLastOneBeginAnother)
{
    run({"ebcom start", "ebcom path add 02:00:00:ff:ff:ff --port 6", "ebcom path add 02:00:01:00:00:00 --port 6",
         "ebcom path add --raw 02:00:01:00:00:01 --port 6", "ebcom path add 02:00:00:02:00:01 --port 7",
         "ebcom shaper add 02:00:00:02:00:02 --port 7"});
    EXPECT_THAT(
        exported_node(true, here).text,
        HasSubstr("ebcom path add 02:00:00:ff:ff:ff --port RLU1P\nebcom path add 02:00:01:00:00:00 --port RLU1P\n"
                  "ebcom path add --raw 02:00:01:00:00:01 --port RLU1P\n"
                  "ebcom path add 02:00:00:02:00:01 --port RLU1Q\n"
                  "ebcom shaper add 02:00:00:02:00:02 --port RLU1Q\n"));
}

std::vector<std::string> messages_of(const std::vector<input_error> &errors)
{
    std::vector<std::string> messages;
    for (const input_error &one : errors)
        messages.push_back(one.message);
    return messages;
}

TEST_F(Export, WhatANodeFileCannotSayIsNotLeftOutInSilence)
{
    run({std::begin(service), std::end(service)});
    run({"ebcom shaper add 02:00:00:02:00:05 --port 12", "pcep start",
         "pcep add 7 --remote-id 9 --local 02:00:00:03:00:01 --remote 02:00:00:02:00:01 --vlan 100 --word20 3"});
    const exported file = exported_node(false, here);
    EXPECT_EQ(file.text, "");
    EXPECT_THAT(messages_of(file.errors),
                ElementsAre("a node file cannot say this: shaper for 02:00:00:02:00:05 on RLU4P (12)",
                            "a node file cannot say this: PCEP 7: word20 3"));
    EXPECT_EQ(made_again(parse_script(here.table, exported_node(true, here).text).lines), bare_now());
}

TEST_F(Export, ServiceWithoutPcepsIsLeftOutWithAWarning)
{
    run({std::begin(service), std::end(service)});
    run({"pcep start"});
    const exported file = exported_node(false, here);
    EXPECT_THAT(file.text, Not(HasSubstr("pcep")));
    EXPECT_THAT(messages_of(file.warnings),
                ElementsAre("a node file starts the PCEP service for PCEPs and groups only"));
}

TEST_F(Export, ServiceWithoutInterfaceAndParametersIsNoNodeFile)
{
    run({"ebcom start"});
    EXPECT_THAT(messages_of(exported_node(false, here).errors),
                ElementsAre("a node file cannot say this: [ebcom] is required"));
    EXPECT_EQ(exported_node(true, here).text, "ebcom start\n");
}

TEST_F(Export, ValuesBeyondTheLimitsNeedAScript)
{
    run({std::begin(service), std::end(service)});
    run({"pcep start",
         "pcep add 7 --raw --remote-id 9 --local 02:00:00:03:00:01 --remote 02:00:00:02:00:01 --vlan 5000"});
    EXPECT_THAT(messages_of(exported_node(false, here).errors),
                ElementsAre("a node file cannot say this: vlan: 5000 is not in the range 0 to 4095"));
    EXPECT_THAT(exported_node(true, here).text, HasSubstr("pcep add --raw 7 "));
}

} // namespace
} // namespace kelctl
