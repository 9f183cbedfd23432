// Scripts that crash or hang, of a table of commands that do.
#include "kelctl/sweep/sweep.h"

#include "kelctl/commands/commands.h"
#include "kelctl/session/session.h"
#include "platform/kel_init.h"
#include "temporary_folder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <unistd.h>

namespace kelctl
{
namespace
{

constexpr uint32_t short_time = 100;   // milliseconds, for what hangs
constexpr uint32_t long_time = 60'000; // for what does not

result crash(const invocation &, session &)
{
    std::abort();
}

result hang(const invocation &, session &)
{
    for (;;)
        pause();
}

result refuse(const invocation &, session &)
{
    return refused("not today");
}

// Makes one call of the accelerator.
result crash_where_attaching_fails(const invocation &, session &)
{
    kel_attach_info attach = {};
    if (kel_init_attach(&attach) != 0)
        std::abort();
    return {};
}

const command_table &bad_commands()
{
    static const command_table table(
        {{.name = "crash", .variants = {{.run = crash}}, .help = "Crash"},
         {.name = "hang", .variants = {{.run = hang}}, .help = "Hang"},
         {.name = "refuse", .variants = {{.run = refuse}}, .help = "Refuse"},
         {.name = "attach", .variants = {{.run = crash_where_attaching_fails}}, .help = "Attach, or crash"}},
        {});
    return table;
}

sweep_report swept(const char *line, uint32_t time_limit)
{
    auto report = sweep(bad_commands(), parse_script(bad_commands(), line).lines, time_limit,
                        [](size_t, size_t) { return true; });
    EXPECT_TRUE(report);
    return report.value_or(sweep_report());
}

// What `sweep` says of a script of this one line.
result of_command(const std::string &line, uint32_t time_limit)
{
    const temporary_folder folder;
    session here(bad_commands(), source::program, {.json = true});
    invocation asked = invocation_of(*commands().find("sweep"));
    asked.given.set("SCRIPT", folder.file_with(line + "\n"));
    asked.given.set("--time-limit", static_cast<int64_t>(time_limit));
    return asked.chosen->run(asked, here);
}

TEST(Sweep, TellsACrashFromAHang)
{
    EXPECT_EQ(swept("crash", long_time).undisturbed.came_out, verdict::crashed);
    EXPECT_EQ(swept("hang", short_time).undisturbed.came_out, verdict::hung);
}

TEST(Sweep, GoesOnAfterACrash)
{
    const sweep_report report = swept("attach", long_time);
    EXPECT_EQ(report.undisturbed.came_out, verdict::clean);
    EXPECT_GT(report.runs.size(), 1u);
    EXPECT_EQ(report.runs.size(), report.planned);
    for (const sweep_run &run : report.runs) {
        EXPECT_EQ(run.function, "kel_init_attach");
        EXPECT_EQ(run.came_out, verdict::crashed);
    }
    EXPECT_EQ(of_command("attach", long_time).status, exit_operation_failed);
}

TEST(Sweep, RefusesAScriptThatComesToNoEndByItself)
{
    const result crashed = of_command("crash", long_time);
    EXPECT_EQ(crashed.status, exit_operation_failed);
    EXPECT_EQ(crashed.errors.at(0).message, "the script crashed without any fault");
    EXPECT_EQ(of_command("hang", short_time).errors.at(0).message, "the script hung without any fault");
    EXPECT_EQ(of_command("refuse", long_time).errors.at(0).message, "line 1 fails without any fault");
}

} // namespace
} // namespace kelctl
