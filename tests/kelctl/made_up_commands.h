// A small table of commands that no program has: what knows of commands in general is tested with it.
#pragma once

#include "kelctl/language/command.h"
#include "kelctl/results/result.h"

namespace kelctl
{

inline result done_at_once(const invocation &, session &)
{
    return {};
}

inline std::vector<command> made_up_rows()
{
    const argument lamp = {.name = "MAC", .kind = kind::mac(), .help = "address of the lamp"};
    const argument socket = {.name = "--port", .kind = kind::ebcom_port(), .help = "socket"};
    const range levels = {0, 7, "0 to 7"};
    const auto plain = [](std::string_view function) -> std::vector<variant> { return {{function, done_at_once}}; };
    return {
        {.name = "lamp add",
         .variants = plain("lamp_add"),
         .help = "Add a lamp",
         .details = "A lamp shines at once.",
         .arguments =
             {lamp,
              socket,
              {.name = "--rate", .kind = kind::rate(), .help = "blinks", .required = false, .needs = "--burst"},
              {.name = "--burst", .kind = kind::burst(), .help = "in a row", .required = false, .needs = "--rate"},
              {.name = "--level",
               .kind = kind::number(levels),
               .help = "brightness",
               .required = false,
               .otherwise = "3"}},
         .example = "lamp add 02:00:00:02:00:01 --port RLU1P",
         .undo = "lamp remove"},
        {.name = "lamp remove",
         .variants = plain("lamp_remove"),
         .help = "Remove a lamp",
         .arguments = {lamp, socket},
         .example = "lamp remove 02:00:00:02:00:01 --port RLU1P"},
        {.name = "lamp show",
         .variants = {{"lamp_text", done_at_once, "text"}, {"lamp_record", done_at_once, "record"}},
         .help = "Show a lamp",
         .arguments = {lamp,
                       {.name = "--format",
                        .kind = kind::format(),
                        .help = "of the text",
                        .required = false,
                        .only_for = {"text"}}},
         .example = "lamp show 02:00:00:02:00:01"},
        {.name = "lamp group make",
         .variants = plain("lamp_group_make"),
         .help = "Make a group",
         .arguments = {{.name = "GROUP", .kind = kind::new_group_id(), .help = "its id"}},
         .example = "lamp group make 300",
         .undo = "lamp group drop"},
        {.name = "lamp group drop",
         .variants = plain("lamp_group_drop"),
         .help = "Drop a group",
         .arguments = {{.name = "GROUP", .kind = kind::group_id(), .help = "its id"}},
         .example = "lamp group drop 300"},
        {.name = "lamp group join",
         .variants = plain("lamp_group_join"),
         .help = "Let a lamp join a group",
         .arguments = {{.name = "GROUP", .kind = kind::group_id(), .help = "the group"},
                       {.name = "ID", .kind = kind::pcep_id(), .help = "the lamp"}},
         .example = "lamp group join 300 7"},
        {.name = "turn",
         .variants = {{.run = done_at_once}},
         .help = "Turn all lamps",
         .arguments = {{.name = "--degrees", .kind = kind::number({-360, 360, "-360 to 360"}), .help = "how far"}},
         .example = "turn --degrees 5"},
        {.name = "load",
         .variants = {{.run = done_at_once}},
         .help = "Load lamps from a file",
         .arguments = {{.name = "FILE", .kind = kind::file(), .help = "of lamps"},
                       {.name = "--keep-going", .kind = kind::flag(), .help = "go on after broken ones"}},
         .example = "load lamps",
         .sources = {source::program}},
        {.name = "say",
         .variants = {{.run = done_at_once}},
         .help = "Blink a text",
         .arguments = {{.name = "TEXT", .kind = kind::text(), .help = "to be blinked"},
                       {.name = "--prefix", .kind = kind::text(), .help = "before it", .required = false}},
         .example = "say hello"},
        {.name = "help",
         .variants = {{.run = done_at_once}},
         .help = "Show help",
         .arguments = {{.name = "COMMAND",
                        .kind = kind::command_words(),
                        .help = "words of a command",
                        .required = false,
                        .repeated = true}},
         .example = "help lamp"},
        {.name = "leave",
         .variants = {{.run = done_at_once}},
         .help = "Leave",
         .example = "leave",
         .sources = {source::script, source::shell}},
    };
}

inline const command_table &made_up_commands()
{
    static const command_table table(made_up_rows(), {{"lamp", "lamps and groups of them"}});
    return table;
}

} // namespace kelctl
