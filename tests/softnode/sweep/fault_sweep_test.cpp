/*
 * fault_sweep_test.cpp - every closed call of a scenario made to fail: which runs there are, what they find, and that
 * nothing of them stays.
 */
#include "control.h"
#include "tests/refused_calls.h"

#include "platform/vorn_tu.h"

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iterator>
#include <memory>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <tuple>
#include <unistd.h>
#include <utility>
#include <vector>

namespace
{

using json = notation::document;
using notation::read_json;

/* A scenario made of closures. */
struct Drive {
    std::function<std::uint32_t()> run;
    std::function<void()> clean_up = [] {};
    std::function<const char *()> describe = [] { return nullptr; };
};

std::string sweep_text(const Drive &drive, std::uint32_t time_limit = 60'000)
{
    const softnode_scenario scenario{
        [](void *context) { return static_cast<Drive *>(context)->run(); },
        [](void *context) { static_cast<Drive *>(context)->clean_up(); },
        [](void *context) { return static_cast<Drive *>(context)->describe(); },
        const_cast<Drive *>(&drive),
        time_limit,
    };
    const std::unique_ptr<char, void (*)(void *)> report(softnode_fault_sweep(&scenario), std::free);
    EXPECT_NE(report, nullptr);
    return report ? report.get() : "null";
}

json sweep(const Drive &drive, std::uint32_t time_limit = 60'000)
{
    return read_json(sweep_text(drive, time_limit));
}

/* The one run with this fault. */
json run_with(const json &report, const char *function, int call, int code, bool persistent, int thread = 0)
{
    json found;
    for (const json &run : report.at("runs"))
        if (run.at("function") == function && run.at("call") == call && run.at("code") == code &&
            run.at("persistent") == persistent && run.at("thread") == thread)
            found.push_back(run);
    EXPECT_EQ(found.size(), 1U) << function << ":" << call << "=" << code;
    return found.size() == 1 ? found[0] : json();
}

json item(const char *kind, const char *name)
{
    return {{"kind", kind}, {"name", name}};
}

ork_qos_scheduler_params scheduler_params()
{
    ork_qos_scheduler_params params{};
    params.schedulingMode = 11;
    params.arbitrationMode = 7;
    params.vsiEthDevId = 7;
    return params;
}

/* Attaches and creates two schedulers. Gives up at the first failure, and keeps what it has got by then. */
struct TwoSchedulers {
    kel_attach_info attach{};
    std::vector<void *> schedulers;

    std::uint32_t create()
    {
        if (const std::uint32_t rc = kel_init_attach(&attach))
            return rc;
        const ork_qos_scheduler_params params = scheduler_params();
        for (int count = 0; count < 2; ++count) {
            void *scheduler = nullptr;
            if (ork_qos_scheduler_create(attach.ork_handle, &params, 0, &scheduler) != ORK_OK)
                return 1;
            schedulers.push_back(scheduler);
        }
        return 0;
    }

    void remove()
    {
        for (void *scheduler : schedulers)
            EXPECT_EQ(ork_qos_scheduler_delete(attach.ork_handle, scheduler), ORK_OK);
    }
};

/* What a control process's timestamp thread does, begun by a scenario and left to itself. */
void follow_timing_unit()
{
    kel_attach_info attach{};
    void *connection = nullptr;
    vorn_tu_event *event = nullptr;
    if (kel_init_attach(&attach) != 0 || vorn_tu_init(&connection) != 0 ||
        vorn_tu_subscribe_adjnpuoffs(connection, 0) != 0)
        return;
    while (vorn_tu_wait_event(connection, &event) == 0)
        vorn_tu_free_event(connection, &event);
}

Drive with_a_thread()
{
    return {[] {
        std::thread(follow_timing_unit).detach();
        kel_attach_info info{};
        return kel_init_attach(&info);
    }};
}

class FaultSweep : public ControlledNode
{
protected:
    TwoSchedulers two;
    const Drive careful{[this] { return two.create(); }, [this] { two.remove(); }};
    const Drive careless{[this] { return two.create(); }};
};

using FaultSweepThreads = FaultSweep;

} // namespace

TEST_F(FaultSweep, NeedsAScenarioThatRuns)
{
    const softnode_scenario nothing{};
    EXPECT_EQ(softnode_fault_sweep(nullptr), nullptr);
    EXPECT_EQ(softnode_fault_sweep(&nothing), nullptr);
}

TEST_F(FaultSweep, NeedsNothingButRun)
{
    const softnode_scenario scenario{[](void *) { return std::uint32_t{5}; }, nullptr, nullptr, nullptr, 0};
    const std::unique_ptr<char, void (*)(void *)> text(softnode_fault_sweep(&scenario), std::free);
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(read_json(text.get()), read_json(R"({
        "calls": [],
        "undisturbed": {"thread": null, "function": null, "call": null, "code": null, "persistent": null,
                        "outcome": "returned", "result": 5, "note": null, "left": [], "missing": []},
        "planned": 0,
        "runs": []
    })"));
}

TEST_F(FaultSweep, FindsTheSameWhereThreadsCannotBeCounted)
{
    EXPECT_EQ(where_refused({{SYS_openat, EACCES}}, [this] { return sweep_text(careful); }), sweep_text(careful));
}

/* Notes how far the sweep is, and ends it after three runs. */
struct Watched {
    std::vector<std::pair<std::size_t, std::size_t>> seen;
};

TEST_F(FaultSweep, TellsHowFarItIsAndEndsWhenItShall)
{
    Watched watched;
    const softnode_scenario scenario{[](void *) {
                                         kel_attach_info info{};
                                         return kel_init_attach(&info);
                                     },
                                     nullptr, nullptr, &watched, 0};
    const auto watch = [](void *context, std::size_t done, std::size_t planned) {
        static_cast<Watched *>(context)->seen.emplace_back(done, planned);
        return done < 3 ? 1 : 0;
    };
    const std::unique_ptr<char, void (*)(void *)> text(softnode_fault_sweep_watched(&scenario, watch), std::free);
    const json report = read_json(text.get());
    EXPECT_EQ(report.at("planned"), 6); /* three codes, once and for good */
    EXPECT_EQ(report.at("runs").size(), 3U);
    EXPECT_EQ(watched.seen, (decltype(watched.seen){{0, 6}, {1, 6}, {2, 6}, {3, 6}}));
    EXPECT_EQ(softnode_fault_sweep_watched(nullptr, watch), nullptr);
}

/* No descriptor, and so no child process, once so many runs are complete. */
struct Starved {
    std::size_t from = 0;

    static void starve()
    {
        rlimit limit{};
        getrlimit(RLIMIT_NOFILE, &limit);
        limit.rlim_cur = 0;
        EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
    }

    static int watch(void *context, std::size_t done, std::size_t)
    {
        if (done == static_cast<Starved *>(context)->from)
            starve();
        return 1;
    }
};

TEST_F(FaultSweep, IsNoneWhereAChildProcessCannotBeCreated)
{
    rlimit before{};
    getrlimit(RLIMIT_NOFILE, &before);
    Starved starved{2};
    const softnode_scenario scenario{[](void *) {
                                         kel_attach_info info{};
                                         return kel_init_attach(&info);
                                     },
                                     nullptr, nullptr, &starved, 0};
    EXPECT_EQ(softnode_fault_sweep_watched(&scenario, Starved::watch), nullptr) << "after two runs";
    EXPECT_EQ(softnode_fault_sweep(&scenario), nullptr) << "before the first";
    setrlimit(RLIMIT_NOFILE, &before);
}

TEST_F(FaultSweep, ListsTheCallsOfTheScenarioInTheirOrder)
{
    EXPECT_EQ(sweep(careful).at("calls"), read_json(R"([
        {"thread": 0, "function": "kel_init_attach", "call": 1},
        {"thread": 0, "function": "ork_qos_scheduler_create", "call": 1},
        {"thread": 0, "function": "ork_qos_scheduler_create", "call": 2}
    ])"));
}

TEST_F(FaultSweep, RunsEveryCallWithEveryCodeOnceAndForGood)
{
    const json report = sweep(careful);
    std::vector<std::tuple<std::string, int, int, bool>> faults;
    for (const json &run : report.at("runs"))
        faults.emplace_back(run.at("function").text(), run.at("call").number<int>(), run.at("code").number<int>(),
                            run.at("persistent").boolean());

    std::vector<std::tuple<std::string, int, int, bool>> expected;
    for (const int code : {3, 10, 13})
        for (const bool persistent : {false, true})
            expected.emplace_back("kel_init_attach", 1, code, persistent);
    for (const int call : {1, 2})
        for (const int code : {-1, -4, -9})
            for (const bool persistent : {false, true})
                expected.emplace_back("ork_qos_scheduler_create", call, code, persistent);
    EXPECT_EQ(faults, expected);
}

TEST_F(FaultSweep, ReportsTheScenariosResult)
{
    const json report = sweep(careful);
    EXPECT_EQ(report.at("undisturbed").at("result"), 0);
    EXPECT_EQ(run_with(report, "kel_init_attach", 1, 10, false).at("result"), 10);
    EXPECT_EQ(run_with(report, "ork_qos_scheduler_create", 2, -9, true).at("result"), 1);
}

TEST_F(FaultSweep, FindsNothingLeftWhenTheCallerCleansUp)
{
    const json report = sweep(careful);
    ASSERT_EQ(report.at("runs").size(), 18U);
    for (const json &run : report.at("runs")) {
        EXPECT_EQ(run.at("outcome"), "returned");
        EXPECT_EQ(run.at("left"), json::array());
        EXPECT_EQ(run.at("missing"), json::array());
    }
}

TEST_F(FaultSweep, TheFaultIsOverWhenTheCallerCleansUp)
{
    const Drive leaving{
        [this] { return two.create() + static_cast<std::uint32_t>(ork_qos_scheduler_delete(nullptr, nullptr)); },
        [this] { two.remove(); }};
    const json run = run_with(sweep(leaving), "ork_qos_scheduler_delete", 1, -4, true);
    EXPECT_EQ(run.at("left"), json::array());
}

TEST_F(FaultSweep, FindsWhatIsMissing)
{
    const json report = sweep(careless);
    EXPECT_EQ(report.at("undisturbed").at("left"), json::array({item("scheduler", "1"), item("scheduler", "2")}));
    const json run = run_with(report, "ork_qos_scheduler_create", 2, -1, false);
    EXPECT_EQ(run.at("left"), json::array());
    EXPECT_EQ(run.at("missing"), json::array({item("scheduler", "2")}));
}

TEST_F(FaultSweep, FindsWhatIsLeft)
{
    /* Forgets the first scheduler when it does not get the second. */
    const Drive forgetful{[this] {
                              const std::uint32_t rc = two.create();
                              if (rc != 0)
                                  two.schedulers.clear();
                              return rc;
                          },
                          [this] { two.remove(); }};
    const json report = sweep(forgetful);
    EXPECT_EQ(report.at("undisturbed").at("left"), json::array());
    EXPECT_EQ(run_with(report, "ork_qos_scheduler_create", 1, -1, false).at("left"), json::array());
    EXPECT_EQ(run_with(report, "ork_qos_scheduler_create", 2, -1, false).at("left"),
              json::array({item("scheduler", "1")}));
}

TEST_F(FaultSweep, TellsASingleFailureFromALastingOne)
{
    const Drive stubborn{[this] { return kel_init_attach(&attach) == 0 ? 0 : kel_init_attach(&attach); }};
    const json report = sweep(stubborn);
    EXPECT_EQ(run_with(report, "kel_init_attach", 1, 13, false).at("result"), 0);
    EXPECT_EQ(run_with(report, "kel_init_attach", 1, 13, true).at("result"), 13);
}

TEST_F(FaultSweep, GoesOnAfterACrashAndAfterAHang)
{
    const Drive fragile{[this] {
        const std::uint32_t rc = kel_init_attach(&attach);
        if (rc == 3)
            std::abort();
        while (rc == 10)
            pause();
        return rc;
    }};
    const json report = sweep(fragile, 2'000);
    const json crashed = run_with(report, "kel_init_attach", 1, 3, false);
    EXPECT_EQ(crashed.at("outcome"), "crashed");
    EXPECT_TRUE(crashed.at("result").is_null());
    EXPECT_TRUE(crashed.at("left").is_null());
    EXPECT_TRUE(crashed.at("missing").is_null());
    EXPECT_EQ(run_with(report, "kel_init_attach", 1, 10, true).at("outcome"), "hung");
    EXPECT_EQ(run_with(report, "kel_init_attach", 1, 13, true).at("outcome"), "returned");
}

TEST_F(FaultSweep, EndsWhenEvenTheUndisturbedRunCrashes)
{
    const json report = sweep({[]() -> std::uint32_t { std::abort(); }});
    EXPECT_EQ(report.at("undisturbed").at("outcome"), "crashed");
    EXPECT_EQ(report.at("calls"), json::array());
    EXPECT_EQ(report.at("runs"), json::array());
}

TEST_F(FaultSweep, AsksTheScenarioForANoteLast)
{
    const char *note = "not run";
    const Drive talking{[&] {
                            note = kel_init_attach(&attach) == 0 ? "attached" : "gave up \xff";
                            return std::uint32_t{0};
                        },
                        [] {}, [&] { return note; }};
    const json report = sweep(talking);
    EXPECT_EQ(report.at("undisturbed").at("note"), "attached");
    EXPECT_EQ(run_with(report, "kel_init_attach", 1, 3, false).at("note"), "gave up \xef\xbf\xbd");
}

TEST_F(FaultSweep, ANoteThatIsAnObjectIsPartOfTheReport)
{
    const auto reported = [](const char *note) {
        return sweep({[] { return std::uint32_t{0}; }, [] {}, [note] { return note; }}).at("undisturbed").at("note");
    };
    EXPECT_EQ(reported(R"({"line": 3, "codes": [13]})"), read_json(R"({"line": 3, "codes": [13]})"));
    for (const char *text : {"3", "[13]", "null", R"("line")", R"({"line": )", ""})
        EXPECT_EQ(reported(text), text);
}

TEST_F(FaultSweep, EveryRunHasANodeJustSwitchedOnWithoutFaultRules)
{
    create_scheduler();
    ASSERT_EQ(add_faults("kel_init_attach=77"), "");
    const json report = sweep(careless);
    EXPECT_EQ(report.at("undisturbed").at("result"), 0);
    EXPECT_EQ(report.at("undisturbed").at("left"), json::array({item("scheduler", "1"), item("scheduler", "2")}));
}

/* In a process that starts with this, as one that has a node has read the variable before. */
TEST(FaultSweepOfAFreshProcess, HasNoPartOfTheEnvironment)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto sweep_with_unreadable_faults = [] {
        setenv("KEL_SOFTNODE_FAULTS", "nope", 1);
        kel_attach_info attach{};
        const json report = sweep({[&] { return kel_init_attach(&attach); }});
        std::exit(report.at("undisturbed").at("outcome") == "returned" && report.at("runs").size() == 6 ? 0 : 1);
    };
    EXPECT_EXIT(sweep_with_unreadable_faults(), testing::ExitedWithCode(0), "");
}

TEST_F(FaultSweep, LeavesTheCallersNodeAndProcessAsTheyWere)
{
    const auto descriptors = [] { return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}); };
    create_scheduler();
    const json node_before = look_into_node();
    const auto descriptors_before = descriptors();
    sweep(careless);
    EXPECT_EQ(look_into_node(), node_before);
    EXPECT_EQ(descriptors(), descriptors_before);
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
}

TEST_F(FaultSweep, ReportsTheSameAgain)
{
    EXPECT_EQ(sweep_text(careless), sweep_text(careless));
}

TEST_F(FaultSweepThreads, CountEachForItself)
{
    EXPECT_EQ(sweep(with_a_thread()).at("calls"), read_json(R"([
        {"thread": 0, "function": "kel_init_attach", "call": 1},
        {"thread": 1, "function": "kel_init_attach", "call": 1},
        {"thread": 1, "function": "vorn_tu_init", "call": 1},
        {"thread": 1, "function": "vorn_tu_subscribe_adjnpuoffs", "call": 1},
        {"thread": 1, "function": "vorn_tu_wait_event", "call": 1}
    ])"));
}

TEST_F(FaultSweepThreads, AreWaitedForUntilTheyRestOrEnd)
{
    const json report = sweep(with_a_thread());
    const json waiting = item("timing connection", "waiting");
    const json ended = item("timing connection", "ended");
    EXPECT_EQ(report.at("undisturbed").at("left"), json::array({waiting}));
    EXPECT_EQ(run_with(report, "kel_init_attach", 1, 3, false, 0).at("missing"), json::array());
    EXPECT_EQ(run_with(report, "kel_init_attach", 1, 3, false, 1).at("missing"), json::array({waiting}));
    EXPECT_EQ(run_with(report, "kel_init_attach", 1, 3, false, 1).at("left"), json::array());
    const json run = run_with(report, "vorn_tu_wait_event", 1, -5, false, 1);
    EXPECT_EQ(run.at("left"), json::array({ended}));
    EXPECT_EQ(run.at("missing"), json::array({waiting}));
}

TEST_F(FaultSweepThreads, ReportTheSameAgain)
{
    const std::string first = sweep_text(with_a_thread());
    for (int count = 0; count < 5; ++count)
        EXPECT_EQ(sweep_text(with_a_thread()), first);
}

TEST_F(FaultSweepThreads, ThatNeverRestDelayARunAndNoMore)
{
    const Drive busy{[] {
        std::thread([] {
            for (;;)
                pause();
        }).detach();
        return std::uint32_t{0};
    }};
    EXPECT_EQ(sweep(busy, 2'000).at("undisturbed").at("outcome"), "returned");
}
