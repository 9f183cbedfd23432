// What the program makes of its arguments, before there is a command.
#include "program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

namespace
{

using testing::HasSubstr;

program_outcome kelctl(const std::vector<std::string> &arguments)
{
    return run_kelctl({.arguments = arguments});
}

TEST(CommandLine, WrongOnesAreToldWithStatus2)
{
    const std::pair<std::vector<std::string>, const char *> wrong[] = {
        {{}, "A command is required"},
        {{"--wat"}, "--wat"},
        {{"down"}, "down"},
        {{"up"}, "FILE is required"},
        {{"up", "a.toml", "b.toml"}, "b.toml"},
        {{"up", "a.toml", "--wat"}, "--wat"},
    };
    for (const auto &[arguments, message] : wrong) {
        const auto outcome = kelctl(arguments);
        EXPECT_EQ(outcome.status, 2) << message;
        EXPECT_EQ(outcome.out, "");
        EXPECT_THAT(outcome.err, HasSubstr(message));
        EXPECT_THAT(outcome.err, HasSubstr("--help"));
    }
}

TEST(CommandLine, VersionIsOneLine)
{
    const auto outcome = kelctl({"--version"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.out, testing::MatchesRegex("kelctl [0-9]+\\.[0-9]+\\.[0-9]+\n"));
    EXPECT_EQ(outcome.err, "");
}

TEST(CommandLine, HelpNamesCommandsStatusesAndEnvironment)
{
    const auto outcome = kelctl({"--help"});
    EXPECT_EQ(outcome.status, 0);
    for (const char *word : {"  up ", "--version", "Exit status:", "MPID", "NO_COLOR", "KEL_SOFTNODE_FAULTS"})
        EXPECT_THAT(outcome.out, HasSubstr(word));
}

TEST(CommandLine, HelpOfUpNamesItsArguments)
{
    const auto outcome = kelctl({"up", "--help"});
    EXPECT_EQ(outcome.status, 0);
    for (const char *word : {"FILE", "--trace", "file:line:column: message", "Example:"})
        EXPECT_THAT(outcome.out, HasSubstr(word));
}

TEST(CommandLine, HelpFitsEightyColumns)
{
    for (const auto &arguments : {std::vector<std::string>{"--help"}, std::vector<std::string>{"up", "--help"}}) {
        std::istringstream lines(kelctl(arguments).out);
        for (std::string line; std::getline(lines, line);)
            EXPECT_LE(line.size(), 80u) << line;
    }
}

} // namespace
