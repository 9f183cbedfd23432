/*
 * child_process_test.cpp - work in a child process: what comes back, and that nothing else does.
 */
#include "softnode/sweep/child_process.h"

#include "command.h"
#include "tests/refused_calls.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

using namespace softnode;

namespace
{

constexpr std::chrono::milliseconds generous{60'000}; /* never reached when all is well */
constexpr std::chrono::milliseconds a_moment{50};

ChildOutcome outcome_of(const std::function<std::string()> &work, std::chrono::milliseconds limit = generous)
{
    const auto outcome = run_in_child(work, limit);
    EXPECT_TRUE(outcome);
    return outcome.value_or(ChildOutcome{});
}

[[noreturn]] void hang()
{
    for (;;)
        pause();
}

std::ptrdiff_t open_descriptors()
{
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

} // namespace

TEST(ChildProcess, YieldsTheTextOfItsWork)
{
    for (const std::string &text : {std::string(), std::string("a line\n"), std::string(1'000'000, 'x')}) {
        const ChildOutcome outcome = outcome_of([&] { return text; });
        EXPECT_EQ(outcome.end, ChildEnd::returned);
        EXPECT_EQ(outcome.text, text);
    }
}

TEST(ChildProcess, IsAnotherProcessThatChangesNothingHere)
{
    int number = 1;
    const ChildOutcome outcome = outcome_of([&] {
        number = 2;
        return std::to_string(getppid());
    });
    EXPECT_EQ(outcome.text, std::to_string(getpid()));
    EXPECT_EQ(number, 1);
}

TEST(ChildProcess, CrashesByASignal)
{
    const ChildOutcome outcome = outcome_of([]() -> std::string { std::abort(); });
    EXPECT_EQ(outcome.end, ChildEnd::crashed);
    EXPECT_EQ(outcome.text, "");
}

TEST(ChildProcess, CrashesByEndingItself)
{
    EXPECT_EQ(outcome_of([]() -> std::string { _exit(0); }).end, ChildEnd::crashed);
}

TEST(ChildProcess, CrashesByAnExceptionThatNobodyCatches)
{
    EXPECT_EQ(outcome_of([]() -> std::string { throw std::runtime_error("not caught, as intended"); }).end,
              ChildEnd::crashed);
}

TEST(ChildProcess, HangsAfterItsTime)
{
    EXPECT_EQ(outcome_of([]() -> std::string { hang(); }, a_moment).end, ChildEnd::hung);
}

TEST(ChildProcess, WithNoTimeAtAllHangs)
{
    EXPECT_EQ(outcome_of([]() -> std::string { hang(); }, std::chrono::milliseconds(0)).end, ChildEnd::hung);
}

TEST(ChildProcess, LeavesNeitherAProcessNorADescriptorBehind)
{
    const auto before = open_descriptors();
    outcome_of([] { return std::string("returned"); });
    outcome_of([]() -> std::string { std::abort(); });
    outcome_of([]() -> std::string { hang(); }, a_moment);
    EXPECT_EQ(open_descriptors(), before);
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
}

TEST(ChildProcess, IsNoneWhereThereIsNoMore)
{
    EXPECT_EQ(where_refused({{SYS_clone, EAGAIN}},
                            [] {
                                const auto before = open_descriptors();
                                const bool made = run_in_child([] { return std::string(); }, generous).has_value();
                                return std::string(made ? "made" : "none") +
                                       (open_descriptors() == before ? "" : ", open");
                            }),
              "none");
}

TEST(ChildProcess, CrashesWhereItCannotWrite)
{
    EXPECT_EQ(outcome_of([] {
                  refuse_calls({{SYS_write, ENOSPC}});
                  return std::string("lost");
              }).end,
              ChildEnd::crashed);
}

TEST(ChildProcess, YieldsItsTextWhereItsEndIsIgnored)
{
    std::signal(SIGCHLD, SIG_IGN); /* no process waits for it then */
    EXPECT_EQ(outcome_of([] { return std::string("returned"); }).text, "returned");
    std::signal(SIGCHLD, SIG_DFL);
}

TEST(ChildProcess, WritesOutWhatItWroteItselfAndNothingElse)
{
    const Outcome outcome = run("'" CHILD_PROCESS_WRITER "'");
    EXPECT_EQ(outcome.output, "written once\nby the child\nafterwards\n");
}
