// Kinds of command arguments: how a word of each is read, what is said of a wrong one, and which words it may be
// completed to. A kind is made with what it allows, such as kind::number(vlan_range), and is all that a row of the table of
// commands has to say about an argument's form.
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

// A reading. Rates are in kbit/s, sizes in octets; handles are unsigned; a file and a text are strings.
using argument_value =
    std::variant<bool, int64_t, uint64_t, std::string, mac_address, std::vector<uint32_t>, std::vector<std::string>>;

// Thrown by a kind's reader. What it says follows the argument's name.
class wrong_value : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// What a word that is being typed may become.
struct candidates {
    std::vector<std::string> words = {};
    bool files = false;    // names of files as well
    bool commands = false; // words of commands as well
};

struct argument_kind {
    std::string placeholder = {}; // how help names a value: "RATE"; empty: an option that takes none
    std::string allowed = {};     // "1 to 511"; empty when there is nothing to say
    std::function<argument_value(std::string_view)> read = {};
    std::function<candidates(const known_words &)> complete = {};                 // null: nothing to offer
    std::function<void(const argument_value &used, known_words &)> remember = {}; // to offer it again; null: nothing
    std::function<std::string(int64_t)> write = {};                               // as it is typed; null: decimal
    std::function<argument_value(std::string_view)> read_raw = {}; // without the limits; null: the same as `read`
};

// The kinds that rows of commands are made of.
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
argument_kind only_raw(const range &allowed);             // a number that is read with --raw only
argument_kind octets(size_t count, const range &allowed); // "1,2"
argument_kind queue_handle();                             // hexadecimal; uint64_t
argument_kind scheduler_handle();
argument_kind format(); // text, csv, json or the formatting library's number
argument_kind choice(std::vector<std::string> words);
argument_kind file();
argument_kind text();
argument_kind command_words(); // of the table; completed by it

} // namespace kind

} // namespace kelctl
