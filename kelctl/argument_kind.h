// Kinds of command arguments: how a word of each is read, what is said of a wrong one, and which words it may be
// completed to. A kind is made with what it allows, such as number(vlan_range), and is all that a row of the table of
// commands has to say about an argument's form.
#pragma once

#include "kelctl/known_words.h"
#include "kelctl/mac_address.h"
#include "kelctl/whole_number.h"

#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace kelctl
{

// The id of a PCEP or of a multicast group. A type of its own so that ids can be told from other numbers and remembered.
struct pcep_id {
    uint32_t value;

    bool operator==(const pcep_id &) const = default;
};

// A reading. Rates are in kbit/s, sizes in octets; handles are unsigned; a file and a text are strings.
using argument_value = std::variant<bool, int64_t, uint64_t, pcep_id, std::string, mac_address, std::vector<uint32_t>,
                                    std::vector<std::string>>;

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
    std::string placeholder; // how help names a value: "RATE"; empty: an option that takes none
    std::string allowed;     // "1 to 511"; empty when there is nothing to say
    std::function<argument_value(std::string_view)> read;
    std::function<candidates(const known_words &)> complete; // null: nothing to offer
};

argument_kind flag();
argument_kind mac();
argument_kind port();  // number or branch name; int64_t
argument_kind id();    // 1 to 511; pcep_id
argument_kind rate();  // int64_t
argument_kind burst(); // int64_t
argument_kind threshold();
argument_kind duration(const range &allowed); // with a unit; in nanoseconds, int64_t
argument_kind number(const range &allowed);
argument_kind numbers(size_t count, const range &allowed); // "1,2"
argument_kind handle_value();                              // hexadecimal; uint64_t
argument_kind format();                                    // text, csv, json or the formatting library's number
argument_kind choice(std::vector<std::string> words);
argument_kind file();
argument_kind text();
argument_kind command_words(); // of the table; completed by it

} // namespace kelctl
