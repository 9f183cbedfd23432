// A sweep's report as a table and as JSON. The table has one row for all runs of one call with the same outcome.
#include "kelctl/sweep/sweep_view.h"

#include "terminal/folding.h"
#include "terminal/terminal.h"
#include "text/wording.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <tuple>

namespace kelctl
{
namespace
{

constexpr verdict verdicts[] = {verdict::clean, verdict::left_as_documented, verdict::left, verdict::crashed,
                                verdict::hung};

// ---- Rows ----

// The faulted call, as a fault rule names it; calls of other threads than the script's by the thread as well.
std::string call_text(const sweep_run &run)
{
    const std::string thread = run.thread == 0 ? "" : fmt::format("thread {} ", run.thread);
    return fmt::format("{}{}:{}", thread, run.function, run.call);
}

// "2 schedulers, 1 path"
std::string items_text(const fields &items)
{
    std::map<std::string, size_t> counts;
    for (const fields &item : items)
        ++counts[item.at("kind").text()];
    std::vector<std::string> parts;
    parts.reserve(counts.size());
    for (const auto &[kind, count] : counts)
        parts.push_back(text::count_of(count, kind));
    return text::joined(parts, ", ");
}

// Reasons by the numbers that they are listed under.
class reasons
{
public:
    std::string marks_of(const sweep_run &run)
    {
        std::string marks;
        for (const std::string &why : run.whys)
            marks += fmt::format(" [{}]", number_of(why));
        return marks;
    }

    std::string list(size_t width) const
    {
        std::string text;
        for (size_t i = 0; i < whys_.size(); ++i)
            text += terminal::folded(fmt::format("{:>4} {}", fmt::format("[{}]", i + 1), whys_[i]), width);
        return text;
    }

private:
    size_t number_of(const std::string &why)
    {
        const auto known = std::find(whys_.begin(), whys_.end(), why);
        const auto number = static_cast<size_t>(known - whys_.begin()) + 1;
        if (known == whys_.end())
            whys_.push_back(why);
        return number;
    }

    std::vector<std::string> whys_;
};

std::string outcome_text(const sweep_run &run, reasons &reasons)
{
    const std::string items = run.left.empty() ? "" : fmt::format(": {}", items_text(run.left));
    return fmt::format("{}{}{}", name_of(run.came_out), reasons.marks_of(run), items);
}

struct row {
    std::string call;
    uint32_t line = 0;
    std::set<uint32_t> codes; // that the failing operation returned
    std::string outcome;
    verdict came_out = verdict::clean;
};

// Runs of one call come one after the other (each of its codes, once and from then on), so equal ones are looked for
// among the last rows only.
std::vector<row> rows_of(const sweep_report &report, reasons &reasons)
{
    std::vector<row> rows;
    size_t first_of_call = 0;
    for (const sweep_run &run : report.runs) {
        const row made = {call_text(run), run.line, {}, outcome_text(run, reasons), run.came_out};
        if (!rows.empty() && rows.back().call != made.call)
            first_of_call = rows.size();
        auto alike = std::find_if(rows.begin() + static_cast<std::ptrdiff_t>(first_of_call), rows.end(),
                                  [&](const row &one) { return one.line == made.line && one.outcome == made.outcome; });
        if (alike == rows.end())
            alike = rows.insert(rows.end(), made);
        if (run.code)
            alike->codes.insert(*run.code);
    }
    return rows;
}

constexpr size_t narrowest_outcome = 16;

// Where the last column would be too narrow, a row is a line that is folded.
std::string columns_text(const std::array<std::string, 4> &columns, size_t width_of_calls, size_t width)
{
    const auto &[call, line, codes, outcome] = columns;
    const std::string lead = fmt::format("{:<{}}  {:>4}  {:<7}  ", call, width_of_calls, line, codes);
    return lead.size() + narrowest_outcome <= width
               ? terminal::wrapped(lead, outcome, width)
               : terminal::folded(fmt::format("{}  {}  {}  {}", call, line, codes, outcome), width);
}

std::string row_text(const row &row, size_t width_of_calls, size_t width, const terminal::painter &paint)
{
    const std::string line = row.line == 0 ? "-" : std::to_string(row.line);
    const std::string codes = row.codes.empty() ? "-" : text::joined(row.codes, ",");
    const std::string text = columns_text({row.call, line, codes, row.outcome}, width_of_calls, width);
    return row.came_out > verdict::left_as_documented ? paint(terminal::colour::failure, text) : text;
}

std::string tally_text(const sweep_report &report)
{
    std::vector<std::string> parts;
    for (const verdict one : verdicts) {
        const auto count = std::count_if(report.runs.begin(), report.runs.end(),
                                         [one](const sweep_run &run) { return run.came_out == one; });
        if (count > 0 || one == verdict::clean)
            parts.push_back(fmt::format("{} {}", count, name_of(one)));
    }
    return fmt::format("{} runs: {}", report.runs.size(), text::joined(parts, "; "));
}

// A run's texts are empty where documents have null.
fields fields_of(const sweep_run &run)
{
    return {{"function", run.function},
            {"call", run.call},
            {"thread", run.thread},
            {"fault_code", run.fault_code},
            {"persistent", run.persistent},
            {"outcome", key_of(run.came_out)},
            {"line", run.line == 0 ? fields(nullptr) : fields(run.line)},
            {"operation", run.operation.empty() ? fields(nullptr) : fields(run.operation)},
            {"code", run.code ? fields(*run.code) : fields(nullptr)},
            {"left", run.left},
            {"documented", run.whys},
            {"take_down", run.undo_failures}};
}

} // namespace

// Rows, reasons, tally: what decides the exit status is last, above the prompt.
std::string sweep_view(const sweep_report &report, const page &page)
{
    reasons reasons;
    const std::vector<row> rows = rows_of(report, reasons);
    const size_t width = page.width.value_or(terminal::usual_width);
    size_t width_of_calls = 0;
    for (const row &one : rows)
        width_of_calls = std::max(width_of_calls, one.call.size());
    std::string text =
        page.paint(terminal::colour::heading, columns_text({"call", "line", "code", "outcome"}, width_of_calls, width));
    for (const row &one : rows)
        text += row_text(one, width_of_calls, width, page.paint);
    if (const std::string list = reasons.list(width); !list.empty())
        text += fmt::format("\n{}", list);
    return text + "\n" + terminal::wrapped("", tally_text(report), width);
}

fields sweep_fields(const sweep_report &report)
{
    fields tally = fields::object();
    fields runs = fields::array();
    for (const verdict one : verdicts)
        tally[key_of(one)] = 0;
    for (const sweep_run &run : report.runs) {
        runs.push_back(fields_of(run));
        fields &count = tally[key_of(run.came_out)];
        count = count.number<uint64_t>() + 1;
    }
    return {{"left_undisturbed", report.undisturbed.left},
            {"planned", report.planned},
            {"tally", std::move(tally)},
            {"runs", std::move(runs)}};
}

} // namespace kelctl
