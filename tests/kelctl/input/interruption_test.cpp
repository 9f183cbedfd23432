// Signals raised in this process while it is watched.
#include "kelctl/input/interruption.h"

#include <gtest/gtest.h>

#include <csignal>
#include <poll.h>

namespace kelctl
{
namespace
{

bool is_readable(int descriptor)
{
    pollfd source = {descriptor, POLLIN, 0};
    return poll(&source, 1, 0) == 1;
}

TEST(Interruption, NothingIsNotedBeforeASignal)
{
    const interruption_watch watch;
    EXPECT_FALSE(interrupted());
    EXPECT_FALSE(terminated());
    EXPECT_FALSE(is_readable(interruption_descriptor()));
}

TEST(Interruption, CtrlCIsNotedAndCanBeTakenAgainAndAgain)
{
    const interruption_watch watch;
    for (int i = 0; i < 3; ++i) {
        std::raise(SIGINT);
        EXPECT_TRUE(interrupted());
        EXPECT_FALSE(terminated());
        EXPECT_TRUE(is_readable(interruption_descriptor()));
        take_interruption();
        EXPECT_FALSE(interrupted());
        EXPECT_FALSE(is_readable(interruption_descriptor()));
    }
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
    EXPECT_EQ(interruption_descriptor(), -1);
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
