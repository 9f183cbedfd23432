// A reader for each kind, and the words that completion offers for it. Kinds that differ in their range share a reader.
// What is checked between arguments is the row's (`.check`).
#include "kelctl/language/argument_kind.h"

#include "kel/kel_node_names.h"
#include "kelctl/values/ic_port.h"
#include "kelctl/values/limits.h"
#include "kelctl/values/quantity_messages.h"
#include "text/nearest.h"
#include "text/printable.h"
#include "text/wording.h"

#include <fmt/core.h>

#include <algorithm>
#include <charconv>
#include <set>
#include <utility>

namespace kelctl
{
namespace
{

// The formatting library's selectors, by their numbers.
constexpr std::string_view format_names[] = {"text", "csv", "json"};

int64_t read_number(std::string_view text, const range &allowed)
{
    const auto value = parse_whole_number(text);
    if (!value)
        throw wrong_value(fmt::format("{} is not a whole number", text::in_quotes(text)));
    if (!allowed.holds(*value))
        throw wrong_value(outside(text::printable(text), allowed));
    return *value;
}

// The first comparison is made without a sign: a quantity may need 64 bits, and would become negative.
template <const auto &Units> int64_t read_with_unit(std::string_view text, const range &allowed)
{
    const auto value = parse_quantity(text, Units);
    if (!value)
        throw wrong_value(no_quantity(text, Units));
    if (*value > static_cast<uint64_t>(allowed.max) || !allowed.holds(static_cast<int64_t>(*value)))
        throw wrong_value(outside(text::in_quotes(text), allowed));
    return static_cast<int64_t>(*value);
}

// A number without a unit is in the first unit of the table: kbit/s, octets.
template <const auto &Units> int64_t read_quantity(std::string_view text, const range &allowed)
{
    return parse_whole_number(text) ? read_number(text, allowed) : read_with_unit<Units>(text, allowed);
}

argument_value read_mac(std::string_view text)
{
    const auto mac = parse_mac_address(text);
    if (!mac)
        throw wrong_value(no_mac_address(text));
    return *mac;
}

// A name first: no branch name is a number.
argument_value read_port(std::string_view text)
{
    if (const auto port = port_by_name(text))
        return int64_t{*port};
    const auto number = parse_whole_number(text);
    if (!number || !is_port(*number))
        throw wrong_value(no_such_port(text));
    return *number;
}

int64_t read_threshold(std::string_view text, const range &allowed)
{
    const int64_t octets = read_quantity<size_units>(text, allowed);
    if (octets % threshold_block != 0)
        throw wrong_value(no_multiple(static_cast<uint64_t>(octets), threshold_block));
    return octets;
}

// Stops one beyond the count, however long the list is.
std::vector<uint32_t> read_numbers(std::string_view text, size_t count, const range &allowed)
{
    std::vector<uint32_t> values;
    for (std::string_view rest = text; values.size() <= count;) {
        const size_t comma = std::min(rest.find(','), rest.size());
        values.push_back(static_cast<uint32_t>(read_number(rest.substr(0, comma), allowed)));
        if (comma == rest.size())
            break;
        rest.remove_prefix(comma + 1);
    }
    if (values.size() != count)
        throw wrong_value(fmt::format("{} is not {} comma-separated numbers", text::in_quotes(text), count));
    return values;
}

// Handles are numbers of 64 bits without a sign, which parse_whole_number() does not hold.
argument_value read_handle(std::string_view text)
{
    uint64_t value = 0;
    const bool prefixed = text.starts_with("0x") || text.starts_with("0X");
    const std::string_view digits = text.substr(prefixed ? 2 : 0);
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
    if (error != std::errc{} || end != digits.data() + digits.size())
        throw wrong_value(fmt::format("{} is not a handle such as 0x5c00000001", text::in_quotes(text)));
    return value;
}

argument_value read_choice(std::string_view text, const std::vector<std::string> &words)
{
    if (std::find(words.begin(), words.end(), text) != words.end())
        return std::string(text);
    const std::vector<std::string_view> known(words.begin(), words.end());
    throw wrong_value(fmt::format("{} is not one of {}{}", text::in_quotes(text), text::joined(words, ", "),
                                  text::did_you_mean(text, known)));
}

argument_value read_format(std::string_view text)
{
    const auto *const named = std::find(std::begin(format_names), std::end(format_names), text);
    if (named != std::end(format_names))
        return int64_t{named - std::begin(format_names)};
    if (parse_whole_number(text))
        return read_number(text, octet_range);
    throw wrong_value(fmt::format("{} is not text, csv, json or a number{}", text::in_quotes(text),
                                  text::did_you_mean(text, format_names)));
}

argument_value read_text(std::string_view text)
{
    return std::string(text);
}

// Octets that a line cannot have are written as \xHH, a backslash among them. So any octets can be given to the
// library, and a recorded call is repeated exactly.
argument_value read_escaped_text(std::string_view text)
{
    std::string read;
    for (size_t at; (at = text.find('\\')) != std::string_view::npos; text.remove_prefix(at + 4)) {
        const std::string_view digits = text.substr(at).starts_with("\\x") ? text.substr(at + 2, 2) : "";
        unsigned octet = 0;
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), octet, 16);
        if (error != std::errc{} || end != digits.data() + 2)
            throw wrong_value(fmt::format("{}: a backslash is followed by x and two hexadecimal digits",
                                          text::in_quotes(text.substr(at, 4))));
        read.append(text.substr(0, at)) += static_cast<char>(octet);
    }
    return read.append(text);
}

// The system takes a file's name as a C string: it cannot hold a null character.
argument_value read_file(std::string_view text)
{
    if (text.empty() || text.find('\0') != std::string_view::npos)
        throw wrong_value(fmt::format("{} is not the name of a file", text::in_quotes(text)));
    return std::string(text);
}

template <const auto &Units> std::string in_units(int64_t value)
{
    return quantity_text(static_cast<uint64_t>(value), Units);
}

std::string hexadecimal(int64_t value)
{
    return fmt::format("0x{:x}", value);
}

// Port 0 has no name of its own ("NONE"), so it is written as a number.
std::string port_word(int64_t port)
{
    return port == 0 || !is_port(port) ? std::to_string(port)
                                       : std::string(kel_branch_name(static_cast<int32_t>(port)));
}

candidates numbers_of(const std::set<uint32_t> &numbers)
{
    candidates found;
    for (const uint32_t number : numbers)
        found.words.push_back(std::to_string(number));
    return found;
}

using number_writer = std::string (*)(int64_t);

// A kind whose values `read(text, range)` reads: in the range `allowed`, or with --raw in the range `raw`.
template <typename Reader>
argument_kind ranged(const std::string &placeholder, Reader read, const range &allowed, const range &raw,
                     number_writer write = nullptr)
{
    return {.placeholder = placeholder,
            .allowed = std::string(allowed.text),
            .read = [=](std::string_view text) -> argument_value { return read(text, allowed); },
            .write = write,
            .read_raw = [=](std::string_view text) -> argument_value { return read(text, raw); }};
}

// The ids of one kind of object: completion offers those that were used before.
argument_kind id_among(std::set<uint32_t> known_words::*ids)
{
    argument_kind kind = ranged("ID", read_number, id_range, dword_range);
    kind.complete = [ids](const known_words &known) { return numbers_of(known.*ids); };
    kind.remember = [ids](const argument_value &used, known_words &known) {
        (known.*ids).insert(static_cast<uint32_t>(std::get<int64_t>(used)));
    };
    return kind;
}

// Nothing is remembered: handles that exist are added by the shell, those that were typed may be gone.
argument_kind handle_among(std::set<uint64_t> known_words::*handles)
{
    return {.placeholder = "HANDLE", .read = read_handle, .complete = [handles](const known_words &known) {
                candidates found;
                for (const uint64_t handle : known.*handles)
                    found.words.push_back(fmt::format("0x{:x}", handle));
                return found;
            }};
}

argument_kind list_of_numbers(size_t count, const range &allowed, const range &raw)
{
    const auto read = [count](std::string_view text, const range &each) { return read_numbers(text, count, each); };
    argument_kind kind = ranged("N,N" + (count > 2 ? std::string(",...") : ""), read, allowed, raw);
    kind.allowed = fmt::format("{} numbers, {}", count, allowed.text);
    return kind;
}

// Read and remembered as before: once the object is made, other arguments offer it.
argument_kind offering_none(argument_kind kind)
{
    kind.complete = nullptr;
    return kind;
}

candidates known_macs(const known_words &known)
{
    candidates found;
    for (const mac_address &mac : known.macs)
        found.words.push_back(to_text(mac));
    return found;
}

// Every port is read, only some are offered: rules and the library say why another one does not do.
argument_kind port_among(bool (*offered)(int32_t port))
{
    return {.placeholder = "PORT",
            .allowed = "name or 0 to 50",
            .read = read_port,
            .complete =
                [offered](const known_words &) {
                    candidates found;
                    for (int32_t port = 0; port < KEL_IELL_PORT_COUNT; ++port)
                        if (offered(port))
                            found.words.emplace_back(kel_branch_name(port));
                    return found;
                },
            .write = port_word,
            .read_raw = [](std::string_view text) -> argument_value {
                const auto port = port_by_name(text);
                return port ? int64_t{*port} : read_number(text, raw_port_range);
            }};
}

argument_kind named_file(file_use use)
{
    return {.placeholder = "FILE",
            .read = read_file,
            .complete = [](const known_words &) { return candidates{.files = true}; },
            .file = use};
}

} // namespace

namespace kind
{

argument_kind flag()
{
    return {};
}

argument_kind mac()
{
    return {.placeholder = "MAC",
            .read = read_mac,
            .complete = known_macs,
            .remember = [](const argument_value &used, known_words &known) {
                known.macs.insert(std::get<mac_address>(used));
            }};
}

argument_kind port()
{
    return port_among([](int32_t) { return true; });
}

argument_kind ebcom_port()
{
    return port_among(carries_ebcom);
}

argument_kind pcep_id()
{
    return id_among(&known_words::pceps);
}

argument_kind group_id()
{
    return id_among(&known_words::groups);
}

// The id alone does not show which of the two it is, so it is offered from both sets and added to neither.
argument_kind pcep_or_group_id()
{
    argument_kind kind = pcep_id();
    kind.complete = [](const known_words &known) {
        std::set<uint32_t> both = known.pceps;
        both.insert(known.groups.begin(), known.groups.end());
        return numbers_of(both);
    };
    kind.remember = nullptr;
    return kind;
}

argument_kind new_pcep_id()
{
    return offering_none(pcep_id());
}

argument_kind new_group_id()
{
    return offering_none(group_id());
}

argument_kind rate()
{
    return ranged("RATE", read_quantity<rate_units>, rate_range, dword_range, in_units<rate_units>);
}

argument_kind burst()
{
    return ranged("SIZE", read_quantity<size_units>, burst_range, dword_range, in_units<size_units>);
}

argument_kind threshold()
{
    argument_kind kind = ranged("SIZE", read_threshold, threshold_range, raw_threshold_range, in_units<size_units>);
    kind.allowed += fmt::format(", a multiple of {}", threshold_block);
    return kind;
}

// A unit is required: people would read a number without one as seconds or milliseconds, and not as nanoseconds.
argument_kind duration(const range &allowed)
{
    return ranged("TIME", read_with_unit<duration_units>, allowed, allowed, in_units<duration_units>);
}

argument_kind number(const range &allowed)
{
    return number(allowed, allowed);
}

// Numbers whose range is hexadecimal are written so, such as an EtherType.
argument_kind number(const range &allowed, const range &raw)
{
    return ranged("N", read_number, allowed, raw, allowed.text.starts_with("0x") ? hexadecimal : nullptr);
}

// `read_raw` stays that of a number.
argument_kind only_raw(const range &allowed)
{
    argument_kind kind = number(allowed);
    kind.read = [](std::string_view) -> argument_value { throw wrong_value("requires --raw"); };
    return kind;
}

argument_kind octets(size_t count, const range &allowed)
{
    return list_of_numbers(count, allowed, octet_range);
}

argument_kind numbers(size_t count, const range &allowed)
{
    return list_of_numbers(count, allowed, allowed);
}

argument_kind queue_handle()
{
    return handle_among(&known_words::queues);
}

argument_kind scheduler_handle()
{
    return handle_among(&known_words::schedulers);
}

argument_kind handle_name()
{
    return {.placeholder = "HANDLE", .read = read_handle};
}

argument_kind format()
{
    return {.placeholder = "FORMAT",
            .allowed = "text, csv, json or 0 to 255",
            .read = read_format,
            .complete = [](const known_words &) {
                return candidates{.words = {std::begin(format_names), std::end(format_names)}};
            }};
}

argument_kind choice(const std::vector<std::string> &words)
{
    const std::string allowed = text::joined(words, ", ");
    return {.placeholder = "WORD",
            .allowed = allowed,
            .read = [words](std::string_view text) { return read_choice(text, words); },
            .complete = [words](const known_words &) { return candidates{.words = words}; }};
}

argument_kind file()
{
    return named_file(file_use::read);
}

argument_kind new_file()
{
    return named_file(file_use::written);
}

argument_kind text()
{
    return {.placeholder = "TEXT", .read = read_text, .read_raw = read_escaped_text};
}

argument_kind command_words()
{
    return {.placeholder = "COMMAND", .read = read_text, .complete = [](const known_words &) {
                return candidates{.commands = true};
            }};
}

} // namespace kind

} // namespace kelctl
