// Signals raised in this process while it is watched.
#include "kelctl/input/interruption.h"

#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <string_view>
#include <thread>
#include <unistd.h>

namespace kelctl
{
namespace
{

// The reading end of a pipe that holds so much.
class pipe_with
{
public:
    explicit pipe_with(std::string_view text)
    {
        EXPECT_EQ(pipe(ends_.data()), 0);
        EXPECT_EQ(write(ends_[1], text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }

    ~pipe_with()
    {
        close(ends_[0]);
        close(ends_[1]);
    }

    pipe_with(const pipe_with &) = delete;
    pipe_with &operator=(const pipe_with &) = delete;

    int descriptor() const
    {
        return ends_[0];
    }

private:
    std::array<int, 2> ends_{};
};

TEST(Interruption, NothingIsNotedBeforeASignal)
{
    const interruption_watch watch;
    EXPECT_FALSE(interrupted());
    EXPECT_FALSE(terminated());
    EXPECT_TRUE(input_before_interruption(pipe_with("input").descriptor()));
}

TEST(Interruption, CtrlCIsNotedAndCanBeTakenAgainAndAgain)
{
    const interruption_watch watch;
    for (int i = 0; i < 3; ++i) {
        std::raise(SIGINT);
        EXPECT_TRUE(interrupted());
        EXPECT_FALSE(terminated());
        EXPECT_FALSE(input_before_interruption(pipe_with("").descriptor()));
        take_interruption();
        EXPECT_FALSE(interrupted());
        EXPECT_TRUE(input_before_interruption(pipe_with("input").descriptor()));
    }
}

TEST(Interruption, WakesWhoWaitsForInput)
{
    const interruption_watch watch;
    const pipe_with nothing("");
    const pthread_t waiting = pthread_self();
    std::thread other([waiting] { pthread_kill(waiting, SIGTERM); });
    EXPECT_FALSE(input_before_interruption(nothing.descriptor()));
    other.join();
}

TEST(Interruption, TerminationIsNeverTaken)
{
    for (const int signal : {SIGTERM, SIGHUP}) {
        const interruption_watch watch;
        std::raise(signal);
        EXPECT_TRUE(interrupted());
        EXPECT_TRUE(terminated());
        take_interruption();
        EXPECT_TRUE(interrupted());
    }
}

TEST(Interruption, NothingOutlastsTheWatch)
{
    {
        const interruption_watch watch;
        std::raise(SIGINT);
        std::raise(SIGTERM);
    }
    EXPECT_FALSE(interrupted());
    const interruption_watch again;
    EXPECT_FALSE(interrupted());
}

TEST(Interruption, TerminalMayGoAwayMoreThanOnce)
{
    const interruption_watch watch;
    for (int i = 0; i < 3; ++i)
        std::raise(SIGHUP);
    EXPECT_TRUE(terminated());
}

TEST(Interruption, HangupThatAsksForAReloadIsTakenOnceAndEndsNothing)
{
    const interruption_watch watch(hangup::asks_for_reload);
    const pipe_with silent("");
    EXPECT_FALSE(take_reload());
    std::raise(SIGHUP);
    std::raise(SIGHUP);
    EXPECT_FALSE(unwanted_within(std::chrono::hours(1), silent.descriptor()));
    EXPECT_TRUE(take_reload());
    EXPECT_FALSE(take_reload());
    EXPECT_FALSE(unwanted_within(std::chrono::milliseconds(0), silent.descriptor()));
    std::raise(SIGHUP);
    std::raise(SIGTERM);
    EXPECT_TRUE(take_reload());
    EXPECT_TRUE(unwanted_within(std::chrono::hours(1)));
}

TEST(Interruption, HangupThatNobodyTakesYetWakesNobodyTwice)
{
    using std::chrono::steady_clock;
    constexpr std::chrono::milliseconds wait(50);
    const interruption_watch watch(hangup::asks_for_reload);
    std::raise(SIGHUP);
    const auto begin = steady_clock::now();
    EXPECT_FALSE(unwanted_within(wait));
    EXPECT_GE(steady_clock::now() - begin, wait);
    EXPECT_TRUE(take_reload());
}

TEST(Interruption, HangupEndsWithoutThat)
{
    const interruption_watch watch;
    std::raise(SIGHUP);
    EXPECT_TRUE(terminated());
    EXPECT_FALSE(take_reload());
}

TEST(Interruption, WaitEndsWhenADescriptorCanBeRead)
{
    const interruption_watch watch;
    const pipe_with line("line");
    EXPECT_FALSE(unwanted_within(std::chrono::hours(1), line.descriptor()));
}

TEST(Interruption, IgnoredSignalStaysIgnored)
{
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        const auto former = std::signal(signal, SIG_IGN);
        {
            const interruption_watch watch;
            std::raise(signal);
            EXPECT_FALSE(interrupted());
            take_interruption();
            std::raise(signal);
            EXPECT_FALSE(interrupted());
        }
        EXPECT_EQ(std::signal(signal, former), SIG_IGN);
    }
}

TEST(InterruptionDeathTest, SecondSignalEndsTheProcess)
{
    for (const int signal : {SIGINT, SIGTERM}) {
        const interruption_watch watch;
        std::raise(signal);
        EXPECT_EXIT(std::raise(signal), testing::KilledBySignal(signal), "");
    }
}

} // namespace
} // namespace kelctl
