// Tables of commands. A row holds a command's name, its arguments and the function that carries it out; the command
// line, scripts, the shell, help, completion and the manual page follow from it. To add a command to the program, add a
// row to the file of its family (commands/commands_*.cpp):
//
//     {.name = "group add",
//      .variants = {{"kel_core_ic_pcep_mc_group_add", add_group}},
//      .help = "Create a multicast group",
//      .arguments = {{.name = "GROUP", .kind = kind::new_group_id(), .help = "id of the multicast group"}},
//      .example = "group add 300",
//      .undo = "group remove"}
//
// Nothing here carries a command out: that is session/session.h.
#pragma once

#include "kelctl/language/argument_kind.h"
#include "kelctl/language/arguments.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelctl
{

class session;
struct invocation;
struct result;

// Carries a command out: calls the library through the session, and returns what there is to show. It prints nothing,
// and reports failures in the result; an exception becomes an error of the command.
using handler = result (*)(const invocation &asked, session &session);

// A way to carry a command out. Most commands have one. A command with several gets the option --variant, which chooses
// one by its word; the first is the default.
struct variant {
    std::string_view function = {}; // the library's, which the handler calls; empty: none of its own
    handler run = nullptr;
    std::string_view word = {};
};

// What a row says of one argument. Those without dashes are in the order in which they are typed.
struct argument {
    std::string name; // "MAC"; with two dashes, an option: "--port"
    argument_kind kind = {};
    std::string help = {};
    bool required = true;                        // ignored when there is a default, or it needs another
    std::string otherwise = {};                  // the default, as a person would write it; empty: none
    std::string needs = {};                      // an option that must be given as well
    std::string instead = {};                    // an option; exactly one of it and this one must be given
    bool repeated = false;                       // takes all further words; its value is a list of texts
    std::vector<std::string_view> only_for = {}; // words of the variants that use it; empty: all

    bool is_option() const
    {
        return name.starts_with("--");
    }
    bool is_flag() const
    {
        return kind.placeholder.empty();
    }
};

// What a command makes, in the words of reports: {"path", "paths", "removed"}. Without a plural when there is only one,
// such as the EBCOM service.
struct product {
    std::string_view one = {};
    std::string_view several = {};
    std::string_view undone = {}; // its state after the undo: "removed", "stopped"
};

// A rule between arguments that are valid one by one: returns the argument that breaks it and the message, which
// follows the argument's name. None when the rule holds.
struct objection {
    std::string_view argument;
    std::string what;
};
using argument_check = std::optional<objection> (*)(const arguments &given);

// Where a command comes from: the program's arguments, a line of a script, or a line of the shell.
enum class source { program, script, shell };

// Who carries out a command that is for the node of another process: that process, the one that asks, or nobody,
// because it changes the process itself or has a node of its own.
enum class executor { node, asker, nobody };

// A row. Texts in a string_view must live as long as the program.
struct command {
    std::string_view name; // words with one blank between
    std::vector<variant> variants;
    std::string_view help;         // one line
    std::string_view details = {}; // more of it, with an empty line between paragraphs
    std::vector<argument> arguments = {};
    argument_check check = nullptr; // null: nothing more than the arguments say
    std::string_view example = {};  // empty: the name alone
    std::vector<source> sources = {source::program, source::script, source::shell};
    std::string_view undo = {};            // the row that undoes it, with the arguments that both have; empty: none
    product makes = {};                    // what exists after it until it is undone, for reports
    bool failure_leaves_something = false; // a failure may leave what `undo` removes: it is tried then, too
    std::string_view service = {};         // that it needs to be started: "EBCOM service"; empty: none
    std::string_view starts = {};          // the service that it starts
    bool needs_accelerator = false;        // the software one: on a vendor's platform it does not apply
    bool offline = false;                  // uses no node, and so does not care whether there can be one
    executor carried_out = executor::node; // with --node; filled in as `asker` for one that uses no node
    bool carries_out_others = false;       // commands, each of which counts by itself

    bool allowed_in(source where) const;
    const argument *find_argument(std::string_view argument_name) const; // options that every command has included
    const argument *argument_at(size_t index) const;                     // among those that are no options
};

// The command that comes before another one, with the code that this is to return: "expect 4 pcep remove 7". Its row
// is for help and completion; the line becomes an invocation of the other command, which expects that code.
inline constexpr std::string_view expect_name = "expect";

// A first word that several commands share.
struct command_group {
    std::string_view name;
    std::string_view help;
};

// Options that every command has: --json, --trace, --help and others.
const std::vector<argument> &shared_options();

// All commands that can be given. The parser, completion and help get it as a parameter: the program's own
// (commands/commands.h), or a small one of a test.
class command_table
{
public:
    // Rows in the order that help shows them. What they leave out is filled in here: examples, whether arguments are
    // required, and the option --variant of one with several.
    command_table(std::vector<command> rows, std::vector<command_group> groups);

    const std::vector<command> &rows() const
    {
        return rows_;
    }

    const std::vector<command_group> &groups() const
    {
        return groups_;
    }

    // The row of exactly these words; null when there is none.
    const command *find(std::string_view name) const;

    // The words that may follow these, in the table's order: "add" and "remove" after "ebcom path". None after a whole
    // command and after words that begin none.
    std::vector<std::string_view> next_words(std::string_view words, source where) const;

    // What a command or a group of this name is for, in one line; empty where the words lead to several or to none.
    std::string_view help_on(std::string_view words) const;

private:
    std::vector<command> rows_;
    std::vector<command_group> groups_;
};

// How results are shown: options that every command has.
struct manner {
    bool json = false;
    bool trace = false;
    bool brief = false; // failures without their trace records
    bool quiet = false; // nothing but failures
    bool all = false;   // every row and problem, however many there are
};

// A command with its arguments, ready to be carried out. Its row and variant belong to the table, which must outlive
// it.
struct invocation {
    const command *row = nullptr;
    const variant *chosen = nullptr;
    arguments given;
    uint32_t line = 0; // in its script or node file, from 1; 0: it is in no file
    manner shown = {};
    bool raw = false;                      // values are read without their limits
    std::optional<uint32_t> expected = {}; // the code of the library that the line expects; none: 0, or nothing at all
};

// The row with its first variant, and no arguments yet.
invocation invocation_of(const command &row);

// Adds the default of each argument that has one and was not given.
void set_defaults(const command &row, arguments &given);

// Copies the arguments in `from` that the row takes, too.
void take_arguments(const command &row, const arguments &from, arguments &given);

// An argument that is missing, or given though it must not be.
struct mistake {
    const argument *at;  // the given argument at fault; null: one is missing
    std::string message; // with the names of the arguments
};

// `written`: true for each argument that is given. `name_of`: its name in messages, such as the key of a node file.
std::vector<mistake> mistakes_in(const command &row, const std::function<bool(const argument &)> &written,
                                 const std::function<std::string_view(const argument &)> &name_of);

} // namespace kelctl
