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

// The end of the run that starts here; only its first address when the run is too short.
size_t end_of_run(const std::vector<destination> &all, size_t first)
{
    size_t end = first + 1;
    while (end < all.size() && continues(all[end - 1], all[end]))
        ++end;
    return end - first >= shortest_run ? end : first + 1;
}

std::string row(const std::string &addresses, const destination &shown, const std::string &amount)
{
    std::string text = fmt::format("{} {}", addresses, shown.location);
    for (const std::string &part : {amount, shown.note})
        text += part.empty() ? "" : ", " + part;
    return text;
}

} // namespace

std::vector<std::string> destination_rows(const std::vector<destination> &all)
{
    std::vector<std::string> rows;
    for (size_t first = 0, end = 0; first < all.size(); first = end) {
        end = end_of_run(all, first);
        const destination &shown = all[first];
        const std::string mac = to_text(shown.mac);
        rows.push_back(end - first == 1 ? row(mac, shown, "")
                                        : row(fmt::format("{} - {}", mac, to_text(all[end - 1].mac)), shown,
                                              fmt::format("{} destinations", end - first)));
    }
    return rows;
}

} // namespace kelctl
