// Undoing from the last to the first, and the wording. What undoes what is in the rows, and kept by session/undo.h.
#include "kelctl/jobs/take_down.h"

#include "kelctl/language/command_text.h"
#include "terminal/folding.h"
#include "text/wording.h"

#include <fmt/core.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace kelctl
{
namespace
{

struct tally {
    product kind;
    size_t count;
};

// In the order in which the kinds first occur. A walk through a handful of kinds for each product.
std::vector<tally> counted_by_kind(const std::vector<product> &products)
{
    std::vector<tally> kinds;
    for (const product &one : products) {
        const auto same = std::ranges::find_if(kinds, [&](const tally &kind) { return kind.kind.one == one.one; });
        if (same == kinds.end())
            kinds.push_back({one, 1});
        else
            ++same->count;
    }
    return kinds;
}

std::string name_of(const tally &counted)
{
    const auto &[kind, count] = counted;
    if (kind.several.empty())
        return std::string(kind.one);
    return text::count_of(count, kind.one, kind.several);
}

// Lines break after commas.
std::string enumeration(std::string_view lead, std::vector<std::string> parts, size_t width)
{
    for (size_t i = 0; i + 1 < parts.size(); ++i)
        parts[i] += ',';
    return parts.empty() ? fmt::format("{}nothing\n", lead) : terminal::wrapped(lead, parts, width);
}

// A successful undo removes the command from the session's stack itself (session::note); after a failure it is dropped
// here, or the take-down would try it forever.
undone_command undo_last(session &session)
{
    made_command last = session.made.all().back();
    const size_t before = session.made.all().size();
    result done = session.perform(last.undo);
    if (session.made.all().size() == before)
        session.made.drop_last();
    return {.undo = std::move(last.undo),
            .made = last.asked.row->makes,
            .failures = std::move(done.failures),
            .complaints = std::move(done.complaints),
            .may_find_nothing = last.failed};
}

} // namespace

std::string undone_command::command() const
{
    return text_of(undo);
}

std::vector<undone_command> take_down(session &session)
{
    std::vector<undone_command> all;
    all.reserve(session.made.all().size());
    while (!session.made.all().empty())
        if (session.made.all().back().undo.row)
            all.push_back(undo_last(session));
        else
            session.made.drop_last();
    return all;
}

std::string undone_text(const std::vector<undone_command> &undone, size_t width)
{
    std::vector<product> products;
    for (const undone_command &one : undone)
        if (one.failures.empty())
            products.push_back(one.made);
    std::vector<std::string> parts;
    for (const tally &counted : counted_by_kind(products))
        parts.push_back(fmt::format("{} {}", name_of(counted), counted.kind.undone));
    return enumeration("undone: ", std::move(parts), width);
}

std::string products_text(std::string_view lead, const std::vector<product> &products, size_t width)
{
    std::vector<std::string> parts;
    for (const tally &counted : counted_by_kind(products))
        parts.push_back(name_of(counted));
    return enumeration(lead, std::move(parts), width);
}

} // namespace kelctl
