// Tables of commands. A row says how a command is asked for, what it takes and what carries it out; the command line,
// scripts, the shell, help and completion all follow from it. To add a command to the program, add a row to the family
// it belongs to (commands_*.cpp):
//
//     {.name = "group add",
//      .variants = {{"kel_core_ic_pcep_mc_group_add", add_group}},
//      .help = "Create a multicast group",
//      .arguments = {{.name = "GROUP", .kind = kind::new_group_id(), .help = "id of the multicast group"}},
//      .example = "group add 300",
//      .undo = "group remove"}
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

using handler = result (*)(const invocation &asked, session &session);

// What carries a command out. Most commands have one way. One with several gets an option --variant, whose words these
// are; the first is the default.
struct variant {
    std::string_view function = {}; // the library's, which the handler calls; empty: none of its own
    handler run = nullptr;
    std::string_view word = {};
};

struct argument {
    std::string name; // "MAC"; with two dashes, an option: "--port"
    argument_kind kind = {};
    std::string help = {};
    bool required = true;                        // unless something counts without it, or it needs another
    std::string otherwise = {};                  // what counts when it is not given, as it would be written
    std::string needs = {};                      // an option that has to come along with this one
    std::string instead = {};                    // an option, of which and this one exactly one has to be given
    bool repeated = false;                       // takes all words that are left; a list of texts
    std::vector<std::string_view> only_for = {}; // variants that it means something to; none: all

    bool is_option() const
    {
        return name.starts_with("--");
    }
    bool is_flag() const
    {
        return kind.placeholder.empty();
    }
};

// What a command makes, as people call it: {"path", "paths", "removed"}. What there is one of has no word for several.
struct product {
    std::string_view one = {};
    std::string_view several = {};
    std::string_view undone = {}; // what has become of it once it is undone
};

// What must hold between arguments that are right one by one: which of them is wrong, and what is said of it behind its
// name. None: nothing.
struct objection {
    std::string_view argument;
    std::string what;
};
using argument_check = std::optional<objection> (*)(const arguments &given);

enum class source { program, script, shell };

struct command {
    std::string_view name; // words with one blank between
    std::vector<variant> variants;
    std::string_view help;         // one line
    std::string_view details = {}; // more of it, with an empty line between paragraphs
    std::vector<argument> arguments = {};
    argument_check check = nullptr; // null: nothing more than the arguments say
    std::string_view example = {};  // empty: the name alone
    std::vector<source> sources = {source::program, source::script, source::shell};
    std::string_view undo = {};            // the command that undoes it, given those of its arguments that it takes
    product makes = {};                    // what there is of it afterwards, until it is undone
    bool failure_leaves_something = false; // that `undo` removes; it may find nothing, and be refused
    std::string_view service = {};         // that it needs to be started: "EBCOM service"; empty: none
    std::string_view starts = {};          // the service that it starts
    bool needs_accelerator = false;        // the software one: on a vendor's platform it does not apply
    bool offline = false;                  // uses no node, and so does not care whether there can be one

    bool allowed_in(source where) const;
    const argument *find_argument(std::string_view argument_name) const; // options that every command has included
    const argument *argument_at(size_t index) const;                     // among those that are no options
};

// A first word that several commands share.
struct command_group {
    std::string_view name;
    std::string_view help;
};

// Options that every command has: --json, --trace, --help and others.
const std::vector<argument> &shared_options();

// What there is to ask for. Whoever takes a line apart, completes it or explains it is handed one: the program's own
// (commands.h), or one of a test.
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

// A command as it was asked for. Its row and variant are the table's, which has to outlive it.
struct invocation {
    const command *row = nullptr;
    const variant *chosen = nullptr;
    arguments given;
    uint32_t line = 0; // of the file that it stands in; 0: in none
    manner shown = {};
    bool raw = false; // values are read without their limits
};

// The row as it is asked for by its first variant, without an argument yet.
invocation invocation_of(const command &row);

// Those arguments that have a default and were not given.
void set_defaults(const command &row, arguments &given);

// Those that the row takes as well.
void take_arguments(const command &row, const arguments &from, arguments &given);

// What is wrong with which arguments there are.
struct mistake {
    const argument *at;  // one of them; null: what is wrong is that one is not there
    std::string message; // names them
};

// `written` tells which there are, `name_of` how each is called where they are written.
std::vector<mistake> mistakes_in(const command &row, const std::function<bool(const argument &)> &written,
                                 const std::function<std::string_view(const argument &)> &name_of);

} // namespace kelctl
