// Finding runs of addresses and laying their rows out.
#include "kelctl/views/destination_rows.h"

#include <fmt/core.h>

namespace kelctl
{
namespace
{

constexpr size_t shortest_run = 3; // less than that reads better one by one

bool continues(const destination &last, const destination &next)
{
    return addresses_after(last.mac) > 0 && counted_up(last.mac, 1) == next.mac && last.location == next.location &&
           last.note == next.note;
}

// Behind the run that starts here, or behind its first address when it is too short to be one.
size_t end_of_run(const std::vector<destination> &all, size_t first)
{
    size_t end = first + 1;
    while (end < all.size() && continues(all[end - 1], all[end]))
        ++end;
    return end - first >= shortest_run ? end : first + 1;
}

std::string row(const std::string &addresses, const std::string &location, const std::string &note)
{
    const std::string text = fmt::format("      {:<38} {:<5}{}", addresses, location, note);
    return text.substr(0, text.find_last_not_of(' ') + 1) + "\n";
}

std::string run_row(const destination &first, const destination &last, size_t length)
{
    const std::string amount =
        first.note.empty() ? fmt::format("{} destinations", length) : fmt::format("{}, {}", length, first.note);
    return row(fmt::format("{} - {}", to_text(first.mac), to_text(last.mac)), first.location, amount);
}

} // namespace

std::string destination_rows(const std::vector<destination> &all)
{
    std::string rows;
    for (size_t first = 0, end = 0; first < all.size(); first = end) {
        end = end_of_run(all, first);
        const destination &shown = all[first];
        rows += end - first == 1 ? row(to_text(shown.mac), shown.location, shown.note)
                                 : run_row(shown, all[end - 1], end - first);
    }
    return rows;
}

} // namespace kelctl
