// What a client sends, in pieces of any length: the lines are those that cutting the whole yields, up to the first that
// is too long. Each is read as JSON, as every request is; what can be read is the same when it is written and read again.
#include "input.h"
#include "notation/json.h"
#include "socket/line_buffer.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

namespace
{

constexpr std::size_t longest = 40;

struct cut {
    std::vector<std::string> lines;
    bool too_long = false;
};

cut cut_whole(const std::string &text)
{
    cut made;
    for (std::size_t begin = 0;;) {
        const std::size_t end = text.find('\n', begin);
        made.too_long = std::min(end, text.size()) - begin > longest;
        if (made.too_long || end == std::string::npos)
            return made;
        made.lines.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
}

void expect(bool true_fact)
{
    if (!true_fact)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *octets, std::size_t count)
{
    Input input(octets, count);
    sockets::line_buffer received(longest);
    std::string whole;
    cut made;
    while (!input.ended() && !made.too_long) {
        const std::string piece = input.text();
        whole += piece;
        received.append(piece);
        while (!(made.too_long = received.too_long()) && received.has_line())
            made.lines.push_back(*received.take_line());
    }

    const cut expected = cut_whole(whole);
    expect(made.lines == expected.lines);
    expect(made.too_long == expected.too_long);
    for (const std::string &line : made.lines)
        if (const auto read = notation::try_read_json(line))
            expect(notation::try_read_json(notation::to_json(*read)).has_value());
    return 0;
}
