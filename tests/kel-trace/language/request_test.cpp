// Command lines read and completed.
#include "kel-trace/language/request.h"

#include <gtest/gtest.h>

namespace kel_trace
{
namespace
{

request parsed(std::vector<std::string> words)
{
    return parse_request(words);
}

std::string completed(std::vector<std::string> words)
{
    return options::completion_text(program, words);
}

TEST(Request, OptionsStandAnywhere)
{
    const request asked = parsed({"--json", "explain", "one", "--last", "3", "two", "--process=kelctl"});
    EXPECT_EQ(asked.view, view::explain);
    EXPECT_EQ(asked.folders, (std::vector<std::string>{"one", "two"}));
    EXPECT_TRUE(asked.json);
    EXPECT_EQ(asked.last, 3U);
    EXPECT_EQ(asked.process, "kelctl");
}

TEST(Request, AfterTwoDashesThereAreNoOptions)
{
    EXPECT_EQ(parsed({"check", "--", "--json"}).folders, std::vector<std::string>{"--json"});
}

TEST(Request, WrongOnesAreRefused)
{
    for (const std::vector<std::string> &words :
         std::vector<std::vector<std::string>>{{},
                                               {"explain"},
                                               {"expl", "x"},
                                               {"check", "--last", "1", "x"},
                                               {"explain", "--last", "0", "x"},
                                               {"explain", "--last", "1x", "x"}})
        EXPECT_THROW(parse_request(words), options::wrong_request);
}

TEST(Request, HelpNeedsNothingElse)
{
    EXPECT_TRUE(parsed({"--help"}).help);
}

TEST(Completion, OffersWhatMayFollow)
{
    EXPECT_EQ(completed({"ch"}).substr(0, 6), "check\t");
    EXPECT_EQ(completed({"report", "--chr"}).substr(0, 9), "--chrome\t");
    EXPECT_EQ(completed({"explain", "--chr"}), "");
    EXPECT_EQ(completed({"explain", ""}), "@files\n");
    EXPECT_EQ(completed({"report", "--chrome", ""}), "@files\n");
    EXPECT_EQ(completed({"explain", "--last", ""}), "");
}

} // namespace
} // namespace kel_trace
