// Command lines read and completed.
#include "kel-record/language/request.h"

#include <gtest/gtest.h>

namespace kel_record
{
namespace
{

using words = std::vector<std::string>;

request parsed(const words &all)
{
    return parse_request(all);
}

TEST(Request, WhatFollowsTheProgramIsItsOwn)
{
    const request asked = parsed({"--output", "calls.kel", "./control", "--output", "x", "--"});
    EXPECT_EQ(asked.output, "calls.kel");
    EXPECT_EQ(asked.program, (words{"./control", "--output", "x", "--"}));
}

TEST(Request, TwoDashesEndTheOptions)
{
    EXPECT_EQ(parsed({"--output=a.kel", "--", "--control"}).program, words{"--control"});
}

TEST(Request, WrongOnesAreRefused)
{
    for (const words &all : std::vector<words>{{},
                                               {"--"},
                                               {"--output"},
                                               {"--output=", "x"},
                                               {"--output", "x"},
                                               {"--ouput", "x", "y"},
                                               {"--help=1", "x"},
                                               {"-o", "x"}})
        EXPECT_THROW(parse_request(all), options::wrong_request) << (all.empty() ? "" : all.front());
}

TEST(Request, HelpNeedsNothingElse)
{
    EXPECT_TRUE(parsed({"--help"}).help);
    EXPECT_TRUE(parsed({"--version"}).version);
}

TEST(RequestCompletion, OffersOptionsAndFiles)
{
    EXPECT_EQ(options::completion_text(program, words{"--ou"}).substr(0, 9), "--output\t");
    EXPECT_EQ(options::completion_text(program, words{"--output", ""}), "@files\n");
    EXPECT_EQ(options::completion_text(program, words{""}), "@files\n");
    EXPECT_EQ(options::completion_text(program, words{"./control", "--"}), "@files\n");
}

} // namespace
} // namespace kel_record
