// Counting products of a kind, and the wording.
#include "kelctl/take_down_report.h"

#include "kelctl/result_document.h"
#include "kelctl/text.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace kelctl
{
namespace
{

struct tally {
    product kind;
    size_t count;
};

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
    return fmt::format("{} {}", with_separators(count), count == 1 ? kind.one : kind.several);
}

// Lines are broken behind commas.
std::string enumeration(std::string_view lead, std::vector<std::string> parts)
{
    for (size_t i = 0; i + 1 < parts.size(); ++i)
        parts[i] += ',';
    return parts.empty() ? fmt::format("{}nothing\n", lead) : wrapped(lead, parts);
}

} // namespace

std::string undone_text(const std::vector<undone_step> &undone)
{
    std::vector<product> products;
    products.reserve(undone.size());
    for (const undone_step &step : undone)
        products.push_back(step.made);
    std::vector<std::string> parts;
    for (const tally &counted : counted_by_kind(products))
        parts.push_back(fmt::format("{} {}", name_of(counted), counted.kind.undone));
    return enumeration("undone: ", std::move(parts));
}

std::string products_text(std::string_view lead, const std::vector<product> &products)
{
    std::vector<std::string> parts;
    for (const tally &counted : counted_by_kind(products))
        parts.push_back(name_of(counted));
    return enumeration(lead, std::move(parts));
}

std::string complaints_text(const std::vector<undone_step> &undone)
{
    std::string text;
    for (const undone_step &step : undone) {
        if (step.complaints.empty())
            continue;
        text += fmt::format("{} succeeded, but its trace records tell of failures:\n", step.operation);
        for (const trace_entry &entry : step.complaints)
            text += fmt::format("    {}\n", to_text(entry));
    }
    return text;
}

fields undone_fields(const std::vector<undone_step> &undone)
{
    fields operations = fields::array();
    for (const undone_step &step : undone)
        operations.push_back(step.operation);
    return operations;
}

fields complaints_fields(const std::vector<undone_step> &undone)
{
    fields complaints = fields::array();
    for (const undone_step &step : undone) {
        if (step.complaints.empty())
            continue;
        fields records = fields::array();
        for (const trace_entry &entry : step.complaints)
            records.push_back(record_fields(entry));
        complaints.push_back({{"operation", step.operation}, {"records", std::move(records)}});
    }
    return complaints;
}

} // namespace kelctl
