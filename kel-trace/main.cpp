// kel-trace: from the program's arguments to a view of recordings, and to the exit status. Records are handed from the
// reader to what adds them up, one at a time: a recording may be larger than memory.
#include "kel-trace/language/request.h"
#include "kel-trace/operations/causes.h"
#include "kel-trace/operations/operation_builder.h"
#include "kel-trace/operations/promises.h"
#include "kel-trace/operations/statistics.h"
#include "kel-trace/reading/instant.h"
#include "kel-trace/reading/reader.h"
#include "kel-trace/views/explain_view.h"
#include "kel-trace/views/flame_chart.h"
#include "kel-trace/views/preface.h"
#include "kel-trace/views/report_view.h"
#include "notation/json.h"
#include "terminal/folding.h"
#include "terminal/terminal.h"
#include "text/printable.h"

#include <fmt/core.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <exception>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace
{

using namespace kel_trace;
using notation::document;

// Not kelctl's: 1 is also a finding of `check`.
enum exit_status { exit_done = 0, exit_found = 1, exit_wrong_input = 2 };

// Prints text that is to be read on a terminal, folded to its width.
void show_text(std::string_view text)
{
    const auto width = terminal::line_width(stdout);
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        terminal::write(stdout, width ? terminal::folded(line, *width) : fmt::format("{}\n", line));
    }
}

void show_json(const document &document)
{
    terminal::write(stdout, notation::to_json(document) + "\n");
}

// The preface comes first, so that a reader learns what is missing before the figures.
document with_preface(const recording &found, const cut_operations *cut, const document &view)
{
    document whole = {{"recording", preface_document(found, cut)}};
    for (const auto &[name, value] : view.members())
        whole[name] = value;
    return whole;
}

// Whether a failure is one of those that were asked for. Times of a day are of the recording's first. Both limits can
// be read only once the first record has come, as they may be times of its day; so they are read twice.
class selection
{
public:
    // A wrong request is reported before the recording is read.
    selection(const request &asked, const recording &found) : asked_(asked), found_(found)
    {
        limit("--since", asked.since, 0);
        limit("--until", asked.until, 0);
    }

    bool operator()(const thread_key &of, int64_t time)
    {
        if (!since_) {
            since_ = limit("--since", asked_.since, INT64_MIN);
            until_ = limit("--until", asked_.until, INT64_MAX);
        }
        return time >= *since_ && time < *until_ && (asked_.process.empty() || is_asked(of));
    }

private:
    int64_t limit(std::string_view option, const std::string &written, int64_t otherwise) const
    {
        if (written.empty())
            return otherwise;
        if (const auto instant = parse_instant(written, found_.first))
            return *instant;
        throw options::wrong_request(fmt::format("{}: {} is not a time such as \"2026-11-22 05:01:55\" or 05:01:55.5",
                                                 option, text::in_quotes(written)));
    }

    bool is_asked(const thread_key &of) const
    {
        const auto name = found_.process_names.find({of.host, of.process});
        return asked_.process == std::to_string(of.process) ||
               (name != found_.process_names.end() && asked_.process == name->second);
    }

    const request &asked_;
    const recording &found_;
    std::optional<int64_t> since_;
    std::optional<int64_t> until_;
};

int explain(const request &asked)
{
    recording found;
    selection wanted(asked, found);
    causes all([&](const thread_key &of, int64_t time) { return wanted(of, time); });
    operation_builder builder([&](const operation &done) { all.take(done); });
    read(asked.folders, {asked.single_thread}, found, [&](const record &one) { builder.take(one); });
    builder.end();
    if (asked.json)
        show_json(with_preface(found, &builder.cut(), explain_document(all, found, asked.last)));
    else
        show_text(preface_text(found, builder.cut()) +
                  explain_text(all, found, asked.last, terminal::painter_for(stdout)));
    return exit_done;
}

// The chart is written while the recording is read, as it is too large to keep; its times count from the first record,
// which has been read when the first span ends.
int report(const request &asked)
{
    recording found;
    std::optional<flame_chart> chart;
    if (!asked.chrome.empty())
        chart.emplace(asked.chrome);
    statistics all = chart ? statistics([&](const span &one) { chart->add(one, found.first); }) : statistics();
    read(asked.folders, {asked.single_thread}, found, [&](const record &one) { all.take(one); });
    all.end();
    if (chart)
        chart->finish();
    const host_statistics sum = all.sum();
    if (asked.json)
        show_json(with_preface(found, &sum.cut, report_document(all, found)));
    else
        show_text(preface_text(found, sum.cut) + report_text(all, found, terminal::painter_for(stdout)));
    return exit_done;
}

std::string finding_text(const finding &one)
{
    constexpr int64_t second = 1'000'000'000;
    return fmt::format("{}.{:09} thread {} {} {}: {}\n", one.time / second, one.time % second, one.of.thread, one.event,
                       one.location, text::without_controls(one.what));
}

// Records that the tracer discarded or a damaged file would be reported as broken promises of the library: such a
// recording is refused after the reading. Findings in text are shown at once, as there may be millions.
int check(const request &asked)
{
    recording found;
    document findings = document::array();
    promises kept(asked.partial, [&](const finding &one) {
        if (!asked.json)
            return terminal::write(stdout, finding_text(one));
        findings.push_back({{"time", one.time},
                            {"of", thread_document(found, one.of)},
                            {"event", one.event},
                            {"location", one.location},
                            {"finding", one.what}});
    });
    read(asked.folders, {asked.single_thread}, found, [&](const record &one) { kept.take(one); });
    kept.end();
    if (found.discarded_records > 0 || found.discarded_packets > 0 || found.unknown_discarded)
        throw unreadable("the tracer discarded records: record again with larger buffers");
    if (!found.damaged.empty())
        throw unreadable(fmt::format("{} is damaged: {}", found.damaged.front().file, found.damaged.front().why));
    if (found.records == 0)
        throw unreadable("the recording has no records of the library");
    if (asked.json)
        show_json(with_preface(found, nullptr, {{"findings", findings}, {"threads", kept.threads()}}));
    else
        show_text(fmt::format("{} records of {} threads with operations: {} findings", kept.records(), kept.threads(),
                              kept.findings()));
    return kept.findings() > 0 ? exit_found : exit_done;
}

constexpr int (*views[])(const request &) = {explain, report, check};

int run(const std::vector<std::string> &words)
{
    const request asked = parse_request(words);
    if (!asked.answer)
        return views[static_cast<size_t>(*asked.view)](asked);
    terminal::write(stdout, *asked.answer);
    return exit_done;
}

} // namespace

// A recording that cannot be read is wrong input; a reader of standard output who went away is no failure.
int main(int argc, char **argv)
{
    std::signal(SIGPIPE, SIG_IGN);
    try {
        const int status = run({argv + 1, argv + argc});
        return options::is_printed("kel-trace") ? status : exit_found;
    } catch (const options::wrong_request &wrong) {
        terminal::write(stderr,
                        fmt::format("kel-trace: {}\nkel-trace --help shows commands and options\n", wrong.what()));
    } catch (const unreadable &problem) {
        terminal::write(stderr, fmt::format("kel-trace: {}\n", problem.what()));
    } catch (const std::exception &problem) {
        terminal::write(stderr, fmt::format("kel-trace: {}\n", problem.what()));
        return exit_found;
    }
    return exit_wrong_input;
}
