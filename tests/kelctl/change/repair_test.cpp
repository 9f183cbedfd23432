// Steps that fail, repaired: what the session, the library and the accelerator hold afterwards.
#include "kelctl/change/repair.h"

#include "kelctl/change/node_model.h"
#include "kelctl/jobs/take_down.h"
#include "kelctl/language/command_text.h"
#include "script_session.h"
#include "softnode/softnode.h"

#include <fmt/core.h>
#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

using lines = std::vector<std::string>;

const std::string path_on_p = "ebcom path add MAC --port RLU1P";
const std::string path_off_p = "ebcom path remove MAC --port RLU1P";
const std::string path_on_q = "ebcom path add MAC --port RLU1Q";
const std::string shaper_on_p = "ebcom shaper add MAC --port RLU1P";
const std::string shaper_off_p = "ebcom shaper remove MAC --port RLU1P";
const std::string shaper_on_q = "ebcom shaper add MAC --port RLU1Q";

class Repair : public testing::Test
{
protected:
    Repair()
    {
        softnode_reset();
    }

    ~Repair() override
    {
        softnode_faults_clear();
        take_down(here);
    }

    void run(const lines &all)
    {
        for (const std::string &line : all)
            ASSERT_EQ(here.run(line).status, exit_done) << line;
    }

    lines model()
    {
        lines texts;
        for (const node_object &one : model_of(here))
            if (one.key.kind != object_kind::mp_id) // of the process
                texts.push_back(text_of(one.asked));
        return texts;
    }

    lines seen()
    {
        lines texts;
        const auto held = discrepancies(model_of(here), here);
        for (const discrepancy &one : *held)
            texts.push_back(text_of(one));
        return texts;
    }

    script_session here;
};

TEST_F(Repair, LeavesTheOldNodeOrTheOneAskedForOrWhatCanBeSeen)
{
    const lines group = {"pcep start",
                         "pcep add 7 --remote-id 9 --local 02:00:00:03:00:01 --remote 02:00:00:02:00:01 --vlan 100",
                         "group add 300", "group member add 300 7"};
    const std::string refuses_to_delete = "ork_ebcom_pcep_path_delete:1=-9";
    const std::string keeps_its_queue = "kel_init_qos_queue_rem:1=13";
    const std::string no_queue = "queue of RLU1P (6): the accelerator does not hold it";
    const std::string gone = "path to MAC on RLU1P (6): its queue is gone";
    const struct {
        lines made;
        std::string step; // fails
        lines faults;
        lines left;
        lines seen = {}; // what the accelerator holds otherwise
    } rows[] = {
        {{path_on_p}, path_off_p, {refuses_to_delete}, {path_on_p}},
        {{path_on_p}, path_off_p, {refuses_to_delete, "kel_init_qos_queue_add:1=13"}, {path_on_p}, {no_queue, gone}},
        {{path_on_p}, path_off_p, {refuses_to_delete, "ork_ebcom_pcep_path_create:1=-9"}, {path_on_p}, {gone}},
        {{path_on_p, shaper_on_p}, path_off_p, {refuses_to_delete}, {shaper_on_p}, {no_queue}},
        {{path_on_p, shaper_on_q}, path_off_p, {refuses_to_delete}, {path_on_p, shaper_on_q}, {gone}},
        {{path_on_p, path_on_q}, path_off_p, {keeps_its_queue}, {path_on_p, path_on_q}},
        {{shaper_on_q, shaper_on_p}, shaper_off_p, {keeps_its_queue}, {shaper_on_q, shaper_on_p}},
        {group, "group remove 300", {}, group},
    };
    unsigned number = 0;
    for (const auto &row : rows) {
        // The library may be left with a count of the destination: the next row takes another one.
        const auto of_row = [mac = fmt::format("02:00:00:02:00:{:02x}", ++number)](lines all) {
            for (std::string &line : all)
                if (const size_t at = line.find("MAC"); at != std::string::npos)
                    line.replace(at, 3, mac);
            return all;
        };
        const std::string step = of_row({row.step}).front();
        SCOPED_TRACE(step + " after " + testing::PrintToString(of_row(row.made)));
        run({"ebcom start"});
        run(of_row(row.made));
        for (const std::string &fault : row.faults)
            ASSERT_EQ(softnode_faults_add(fault.c_str()), nullptr);
        const result failed = here.run(step);
        ASSERT_EQ(failed.status, exit_operation_failed);
        EXPECT_EQ(repair(asked(step), failed.code.value(), here), std::nullopt);
        softnode_faults_clear();
        lines left = of_row(row.left);
        left.insert(left.begin(), "ebcom start");
        EXPECT_EQ(model(), left);
        EXPECT_EQ(seen(), of_row(row.seen));
        take_down(here);
        softnode_reset();
    }
}

} // namespace
} // namespace kelctl
