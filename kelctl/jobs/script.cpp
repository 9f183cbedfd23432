// Reading a script, and carrying it out.
#include "kelctl/jobs/script.h"

#include "kelctl/input/interruption.h"
#include "kelctl/language/command_line.h"
#include "kelctl/session/session.h"
#include "kelctl/values/file_text.h"
#include "text/printable.h"

#include <fmt/core.h>

#include <algorithm>
#include <utility>

namespace kelctl
{
namespace
{

// What of the script was run; the worst status is the script's.
struct tally {
    uint32_t run = 0;
    uint32_t failed = 0;
    exit_status status = exit_done;

    void add(const result &done)
    {
        ++run;
        failed += done.status == exit_done ? 0 : 1;
        status = std::max(status, done.status);
    }
};

// Lines that were not run make the script fail, except after `exit`.
result outcome(const tally &count, const std::vector<invocation> &lines, const std::string &file)
{
    result done;
    done.status = count.status;
    done.text = "";
    done.shown = {{"commands", lines.size()}, {"run", count.run}, {"failed", count.failed}};
    if (count.run == lines.size() || (count.status == exit_done && !interrupted()))
        return done;
    done.status = std::max(count.status, exit_operation_failed);
    done.remark = fmt::format("{}: {}, {} of {} commands were run", text::without_controls(file),
                              interrupted() ? "interrupted" : "stopped", count.run, lines.size());
    return done;
}

} // namespace

// Goes on after a wrong line, to report all of them.
script parse_script(const command_table &table, std::string_view text)
{
    script parsed;
    for (uint32_t number = 1; !text.empty(); ++number) {
        const size_t end = std::min(text.find('\n'), text.size());
        try {
            if (const auto words = words_of(text.substr(0, end)); !words.empty())
                parsed.lines.push_back(parse(table, words, source::script)), parsed.lines.back().line = number;
        } catch (const wrong_line &wrong) {
            parsed.problems.push_back({{number, wrong.column()}, wrong.what()});
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return parsed;
}

loaded_lines script_in(const std::string &file, const command_table &table)
{
    problem_list unreadable;
    script read = parse_script(table, text_of_file(file, unreadable));
    std::ranges::move(unreadable, std::back_inserter(read.problems));
    return {std::move(read.lines), errors_of(file, std::move(read.problems))};
}

// `where` is set for the lines; session::carry_out() has kept that of the command around them.
result run_script(const invocation &asked, session &session)
{
    const std::string &file = asked.given.text("SCRIPT");
    const bool keep_going = asked.given.has("--keep-going");
    auto [lines, errors, warnings] = script_in(file, session.table);
    if (!errors.empty())
        return wrong_input(file, std::move(errors), "nothing was run");

    const interruption_watch watch;
    session.where = source::script;
    tally count;
    for (const invocation &line : lines) {
        if (interrupted() || session.finished || (count.status != exit_done && !keep_going))
            break;
        count.add(session.carry_out(line, file));
    }
    return outcome(count, lines, file);
}

} // namespace kelctl
