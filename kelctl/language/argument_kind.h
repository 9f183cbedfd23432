// Kinds of command arguments: how a word is read, the message for a wrong one, and the words that completion offers. A
// row of the table of commands needs no more for the form of an argument:
//
//     {.name = "--vlan", .kind = kind::number(vlan_range), .help = "VLAN id"}
//
// Words that completion offers: `complete` lists them. `remember` adds a used value to the known words (known_words.h),
// from which `complete` offers it next time.
//
// Ranges are in values/limits.h, units in text/quantity.h.
#pragma once

#include "kelctl/language/known_words.h"
#include "kelctl/values/mac_address.h"
#include "kelctl/values/whole_number.h"

#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace kelctl
{

// A value after reading: bool is a flag; int64_t a number, a port, a rate in kbit/s, a size in octets or a duration in
// nanoseconds; uint64_t a handle; a file and a text are strings.
using argument_value =
    std::variant<bool, int64_t, uint64_t, std::string, mac_address, std::vector<uint32_t>, std::vector<std::string>>;

// Thrown by a kind's reader. Its message follows the argument's name: "--vlan: 5000 is not in the range 0 to 4095".
class wrong_value : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// What completion offers for a word.
struct candidates {
    std::vector<std::string> words = {};
    bool files = false;    // also names of files
    bool commands = false; // also words of the table of commands
};

// What a command does with a file that an argument names. The files of a command that another process carries out are
// read and written by the process that asks.
enum class file_use : uint8_t { none, read, written };

// What a row says of an argument's form. Readers throw wrong_value; `complete` and `remember` throw nothing.
struct argument_kind {
    std::string placeholder = {}; // how help names a value: "RATE"; empty: an option that takes none
    std::string allowed = {};     // for help: "1 to 511"; empty: nothing to add
    std::function<argument_value(std::string_view)> read = {};
    std::function<candidates(const known_words &)> complete = {};                 // null: nothing to offer
    std::function<void(const argument_value &used, known_words &)> remember = {}; // to offer it again; null: nothing
    std::function<std::string(int64_t)> write = {};                               // as it is typed; null: decimal
    file_use file = file_use::none;
    std::function<argument_value(std::string_view)> read_raw = {}; // without the limits; null: the same as `read`
};

// The kinds that rows of commands use.
namespace kind
{

argument_kind flag();
argument_kind mac();
argument_kind port();       // number or branch name; int64_t
argument_kind ebcom_port(); // the same, offering ports that carry EBCOM
argument_kind pcep_id();    // ids are 1 to 511; int64_t
argument_kind group_id();
argument_kind pcep_or_group_id();
argument_kind new_pcep_id(); // of what is yet to be made: none is offered
argument_kind new_group_id();
argument_kind rate();  // int64_t
argument_kind burst(); // int64_t
argument_kind threshold();
argument_kind duration(const range &allowed); // with a unit; in nanoseconds, int64_t
argument_kind number(const range &allowed);
argument_kind number(const range &allowed, const range &raw);
argument_kind only_raw(const range &allowed);              // a number that is read with --raw only
argument_kind octets(size_t count, const range &allowed);  // "1,2"
argument_kind numbers(size_t count, const range &allowed); // the same, of any size
argument_kind queue_handle();                              // hexadecimal; uint64_t
argument_kind scheduler_handle();
argument_kind handle_name(); // a handle of another node, which is offered to nobody
argument_kind format();      // text, csv, json or the formatting library's number
argument_kind choice(const std::vector<std::string> &words);
argument_kind file();          // that the command reads
argument_kind new_file();      // that it writes
argument_kind text();          // with --raw any octets, as \xHH
argument_kind command_words(); // of the table; completed by it

} // namespace kind

} // namespace kelctl
