// Carries commands out and keeps what outlives a single one: the trace log, what was made, the words that were used.
//
//     session session(commands(), source::program, json, trace);
//     const result done = session.carry_out(parse(session.table, words, session.where));
//
// What a job needs of its own (a script, a live view) is in jobs/; what is shown, in result_view.h. There is one
// session in a process, used by the thread that configures.
#pragma once

#include "kelctl/accelerator/traffic_player.h"
#include "kelctl/language/command.h"
#include "kelctl/language/known_words.h"
#include "kelctl/library/library_call.h"
#include "kelctl/results/fields_view.h"
#include "kelctl/results/result.h"
#include "kelctl/session/added_paths.h"
#include "kelctl/session/other_process.h"
#include "kelctl/session/undo.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kelctl
{

class trace_log;

// Not for several threads. Everything that others need to keep between two commands is a public member, and has no rule
// of its own.
class session
{
public:
    // `commands` must outlive the session, and is the table of every command that it carries out.
    session(const command_table &commands, source where, const manner &shown);
    ~session();

    // Carries the command out, remembers the words it used, and shows its result. `file`: the script of its line;
    // empty on the command line and in the shell. What it returns has been shown.
    result carry_out(const invocation &asked, const std::string &file = {});

    // The same without showing the result, for jobs that show it themselves.
    result perform(const invocation &asked);

    // The same for another process, which shows the result. Shows nothing here.
    answer answer_to(const invocation &asked, const asker &whom);

    // What the work shows, for another process as well.
    answer observed(const std::function<result()> &work);

    // Shows a part of what a command does, as it comes up, and adds it to the command's result. Where results are JSON
    // the whole is one document, shown at the end. `from` is put in front of what went wrong.
    void show_part(result &whole, result part, const origin &from);

    // Calls the library's function that the command is for, with these parameters (library_call.h), and notes what it
    // made for the take-down.
    template <typename Function, typename... Parameters>
    result call(const invocation &asked, Function function, const Parameters &...parameters)
    {
        result done = ask(asked.chosen->function, function, parameters...);
        note(asked, done);
        return done;
    }

    // Calls a function that changes nothing on the node: the result is not noted as made. The name must be a literal.
    template <typename Function, typename... Parameters>
    result ask(std::string_view name, Function function, const Parameters &...parameters)
    {
        return called(
            name, [&] { return text_of_call(name, parameters...); },
            [&] { return call_with(function, parameters...); });
    }

    // Where text is shown, with as many rows of a list as were asked for: standard output, or that of who asks.
    page output_page() const;

    // Writes a document at once, as a line of its own, where results are JSON. Does nothing elsewhere.
    void stream(const fields &document) const;

    // The handle that a command gave this name, which is a handle of another node; without one, the name itself.
    uint64_t handle_called(uint64_t name) const
    {
        const auto named = handles.find(name);
        return named == handles.end() ? name : named->second;
    }

    // Created by its first use: before the first call into the library there are no records.
    trace_log &log();

    // Where the commands are carried out: here, or in the process of the node.
    bool tracer_installed() const;

    // Results become documents: here, or maybe where they are shown.
    bool json() const
    {
        return shown_.json || on_part;
    }

    bool tracing() const
    {
        return shown_.trace;
    }

    bool quiet() const
    {
        return shown_.quiet;
    }

    const command_table &table;
    source where; // commands come from
    known_words known;
    undo_stack made{table}; // what the commands so far made
    added_paths paths;
    std::map<uint64_t, uint64_t> handles; // by the names that commands gave them
    // How many calls of each function of the library returned each code.
    std::map<std::pair<std::string_view, uint32_t>, uint64_t> operations;
    traffic_player traffic;        // what passes as virtual time does
    std::function<void()> on_made; // called after each call that succeeded; null: not at all
    // Gets each part of a result as it is shown, and before it becomes part of the whole; null: nobody does.
    std::function<void(const result &part, const origin &from)> on_part;
    other_process *elsewhere = nullptr; // carries out what needs a node; not owned; null: this process does
    bool timed = false;                 // a timestamp thread was started, whose first offset may have to be waited for
    bool finished = false;              // no further command is wanted
    const std::chrono::steady_clock::time_point since = std::chrono::steady_clock::now();

private:
    result called(std::string_view name, const std::function<std::string()> &text,
                  const std::function<uint32_t()> &call);
    void note(const invocation &asked, result &done);
    result perform_elsewhere(const invocation &asked);
    result perform_here(const invocation &asked);
    void show_record(const trace_entry &entry) const;
    void report_missing_tracer();
    void show_as(const manner &asked);
    std::string missing_service(const command &row) const;
    void direct_trace();
    void remember(const invocation &asked);

    std::unique_ptr<trace_log> log_;
    const manner shown_by_default_;
    manner shown_;
    std::optional<page> page_of_asker_; // while a command of another process is carried out
    bool tracer_elsewhere_ = false;
    bool missing_tracer_told_ = false;
};

// The handler of a function without parameters.
template <uint32_t (*Function)()> result call_plainly(const invocation &asked, session &session)
{
    return session.call(asked, Function);
}

} // namespace kelctl
