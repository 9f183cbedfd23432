// The scenario that the child processes run, and the reading of the accelerator's report. The accelerator chooses the
// faults and makes the children; how the report looks is in sweep_view.cpp.
#include "kelctl/sweep/sweep.h"

#include "kelctl/accelerator/software_accelerator.h"
#include "kelctl/input/interruption.h"
#include "kelctl/jobs/take_down.h"
#include "kelctl/session/session.h"
#include "kelctl/sweep/documented_leftovers.h"
#include "notation/json.h"

#include <fmt/core.h>

#include <algorithm>

namespace kelctl
{
namespace
{

// Indexed by verdict. Keys are part of the JSON interface.
constexpr struct {
    std::string_view name;
    std::string_view key;
} verdict_words[] = {
    {"clean", "clean"}, {"left, as documented", "documented"}, {"left", "left"}, {"crashed", "crashed"},
    {"hung", "hung"},
};

// What a control process would do: run the script up to the first line that fails, then take down what the lines before
// it made. All of it runs in the child, including the session and its trace listener.
class scripted_run
{
public:
    scripted_run(const command_table &table, const std::vector<invocation> &lines) : table_(table), lines_(lines)
    {
    }

    // The trace listener comes with the session, so it is made in the child: a thread of the parent would not be there.
    uint32_t run()
    {
        leave_interruptions_to_parent();
        session_.emplace(table_, source::script, manner{.json = true});
        for (const invocation &line : lines_) {
            if (const result done = session_->perform(line); done.status != exit_done)
                return note_failure(line, done);
            if (session_->finished)
                break;
        }
        return 0;
    }

    void clean_up()
    {
        for (const undone_command &undone : take_down(*session_))
            for (const failure &refused : undone.failures)
                note_["take_down"].push_back(
                    {{"line", undone.undo.line}, {"command", undone.command()}, {"code", refused.code}});
    }

    const fields &note() const
    {
        return note_;
    }

private:
    // The sweep looks for what the failed line leaves, so the take-down must not remove it.
    uint32_t note_failure(const invocation &line, const result &done)
    {
        if (!session_->made.all().empty() && session_->made.all().back().failed)
            session_->made.drop_last();
        note_["line"] = line.line;
        note_["operation"] = line.chosen->function;
        note_["code"] = done.code ? fields(*done.code) : fields(nullptr);
        return done.code.value_or(1);
    }

    const command_table &table_;
    const std::vector<invocation> &lines_;
    std::optional<session> session_;
    fields note_ = {{"line", 0}, {"operation", ""}, {"code", nullptr}, {"take_down", fields::array()}};
};

void read_note(const fields &note, sweep_run &run)
{
    if (note.is_null())
        return;
    run.line = note.at("line").number<uint32_t>();
    run.operation = note.at("operation").text();
    if (const fields &code = note.at("code"); !code.is_null())
        run.code = code.number<uint32_t>();
    for (const fields &undo : note.at("take_down"))
        run.undo_failures.push_back(fmt::format("{} (of line {}): code {}", undo.at("command").text(),
                                                undo.at("line").number<uint32_t>(),
                                                notation::to_json(undo.at("code"))));
}

// The operations up to the line that failed; 0: all. Any of them may have left an object: an operation that only traces
// a refusal succeeds, and a later one fails, or none.
std::vector<std::string_view> operations_up_to(uint32_t line, const std::vector<invocation> &lines)
{
    std::vector<std::string_view> operations;
    for (const invocation &one : lines)
        if (line == 0 || one.line <= line)
            operations.push_back(one.chosen->function);
    return operations;
}

// One object that nothing documents is enough: documented ones beside it do not excuse it.
verdict judged(sweep_run &run, const std::vector<invocation> &lines)
{
    if (run.left.empty())
        return verdict::clean;
    const auto operations = operations_up_to(run.line, lines);
    for (const fields &item : run.left) {
        const auto why = why_left(operations, run.function, item.at("kind").text());
        if (!why)
            return verdict::left;
        if (std::find(run.whys.begin(), run.whys.end(), *why) == run.whys.end())
            run.whys.emplace_back(*why);
    }
    return verdict::left_as_documented;
}

// A run that crashed or hung has no list of what it left.
sweep_run read_run(const fields &written, const std::vector<invocation> &lines)
{
    sweep_run run;
    if (!written.at("function").is_null()) {
        run.function = written.at("function").text();
        run.call = written.at("call").number<uint64_t>();
        run.thread = written.at("thread").number<uint64_t>();
        run.fault_code = written.at("code").number<int64_t>();
        run.persistent = written.at("persistent").boolean();
    }
    read_note(written.at("note"), run);
    const auto &outcome = written.at("outcome").text();
    if (outcome != "returned") {
        run.came_out = outcome == "hung" ? verdict::hung : verdict::crashed;
        return run;
    }
    run.left = written.at("left");
    run.came_out = judged(run, lines);
    return run;
}

} // namespace

std::string_view name_of(verdict verdict)
{
    return verdict_words[static_cast<size_t>(verdict)].name;
}

std::string_view key_of(verdict verdict)
{
    return verdict_words[static_cast<size_t>(verdict)].key;
}

// The scripted run is made once, here: every child starts with a copy of it that has not run.
std::optional<sweep_report> sweep(const command_table &table, const std::vector<invocation> &lines, uint32_t time_limit,
                                  const sweep_watcher &go_on)
{
    scripted_run scripted(table, lines);
    const auto swept = sweep_accelerator({.run = [&] { return scripted.run(); },
                                          .clean_up = [&] { scripted.clean_up(); },
                                          .note = [&] { return scripted.note(); },
                                          .time_limit = time_limit},
                                         go_on);
    if (!swept)
        return std::nullopt;
    sweep_report report = {read_run(swept->at("undisturbed"), lines), {}, swept->at("planned").number<size_t>()};
    for (const fields &run : swept->at("runs"))
        report.runs.push_back(read_run(run, lines));
    return report;
}

} // namespace kelctl
