// Painting on a pseudo-terminal and on files.
#include "terminal/terminal.h"

#include "tests/terminal/captured_stream.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <pty.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace terminal
{
namespace
{

class Terminal : public testing::Test
{
protected:
    void SetUp() override
    {
        int slave = -1;
        ASSERT_EQ(openpty(&master_, &slave, nullptr, nullptr, nullptr), 0);
        stream.reset(fdopen(slave, "w"));
        ASSERT_TRUE(stream);
    }
    void TearDown() override
    {
        close(master_);
        unsetenv("NO_COLOR");
    }

    static std::string painted_for(std::FILE *out)
    {
        return painter_for(out)(colour::faint, "x");
    }

    std::unique_ptr<std::FILE, int (*)(std::FILE *)> stream{nullptr, std::fclose};

private:
    int master_ = -1;
};

TEST_F(Terminal, IsPaintedOn)
{
    unsetenv("NO_COLOR");
    EXPECT_TRUE(is_terminal(stream.get()));
    EXPECT_EQ(painted_for(stream.get()), "\x1b[2mx\x1b[0m");
}

TEST_F(Terminal, IsNotPaintedOnWhenColoursAreRefused)
{
    setenv("NO_COLOR", "1", 1);
    EXPECT_EQ(painted_for(stream.get()), "x");
    setenv("NO_COLOR", "", 1);
    EXPECT_EQ(painted_for(stream.get()), "\x1b[2mx\x1b[0m");
}

TEST_F(Terminal, FilesAreNone)
{
    const std::unique_ptr<std::FILE, int (*)(std::FILE *)> file(std::tmpfile(), std::fclose);
    EXPECT_FALSE(is_terminal(file.get()));
    EXPECT_EQ(line_width(file.get()), std::nullopt);
    EXPECT_EQ(painted_for(file.get()), "x");
}

TEST_F(Terminal, WithoutAWidthHasNone)
{
    EXPECT_EQ(line_width(stream.get()), std::nullopt) << "as those of serial lines";
    const winsize size = {.ws_row = 0, .ws_col = 72, .ws_xpixel = 0, .ws_ypixel = 0};
    ASSERT_EQ(ioctl(fileno(stream.get()), TIOCSWINSZ, &size), 0);
    EXPECT_EQ(line_width(stream.get()), 72u);
}

TEST(Write, TextGoesOutAsItIs)
{
    captured_stream out;
    write(out.stream(), "100 % {}\n");
    EXPECT_EQ(out.text(), "100 % {}\n");
}

} // namespace
} // namespace terminal
