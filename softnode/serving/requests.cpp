/*
 * requests.cpp - the table of functions: what each one takes, how it is called, and what it returns.
 *
 * Left out is what has no sense from outside: callbacks, switching on a node that is on, and files, which are the
 * client's to read.
 */
#include "softnode/serving/requests.h"

#include "notation/json.h"
#include "softnode/softnode.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <stdexcept>

namespace softnode
{

namespace
{

using notation::document;

/* The timing unit's users settle at once or never: others wait meanwhile. */
constexpr std::uint32_t longest_settle = 10'000; /* milliseconds */

using Mac = std::array<std::uint8_t, 6>;

/* A request, read as the function wants it. */
class Given
{
public:
    explicit Given(const document &request) : request_(request)
    {
    }

    template <class Number> Number number(std::string_view name) const
    {
        return read(name, [](const document &value) { return value.number<Number>(); });
    }

    const std::string &text(std::string_view name) const
    {
        return read(name, [](const document &value) -> const std::string & { return value.text(); });
    }

    Mac mac(std::string_view name) const
    {
        const std::string &written = text(name);
        Mac mac{};
        for (std::size_t i = 0; i < mac.size(); ++i) {
            const char *begin = written.data() + i * 3;
            const char *const end = begin + 2;
            if (written.size() != mac.size() * 3 - 1 || (i > 0 && begin[-1] != ':') ||
                std::from_chars(begin, end, mac.at(i), 16).ptr != end)
                throw std::runtime_error(std::string(name) + ": this is no address such as 02:00:00:02:00:01");
        }
        return mac;
    }

private:
    template <class Read> auto read(std::string_view name, Read value) const -> decltype(value(document()))
    {
        try {
            return value(request_.at(name));
        } catch (const notation::document_error &wrong) {
            throw std::runtime_error(std::string(name) + ": " + wrong.what());
        }
    }

    const document &request_;
};

/* Takes over a text; null stays null. */
document text_of(char *made)
{
    const std::unique_ptr<char, void (*)(void *)> owned(made, std::free);
    return owned ? document(owned.get()) : document(nullptr);
}

template <char *function()> document json_of(const Given &)
{
    return notation::read_json(text_of(function()).text());
}

document offer(const Given &given)
{
    const Mac mac = given.mac("mac");
    return softnode_traffic_offer(mac.data(), given.number<std::uint64_t>("frames"),
                                  given.number<std::uint32_t>("octets_per_frame"));
}

document send(const Given &given)
{
    return softnode_traffic_send(given.number<std::uint32_t>("id"), given.number<std::uint64_t>("frames"),
                                 given.number<std::uint32_t>("octets_per_frame"));
}

document dropped(const Given &)
{
    return {{"too_long", softnode_traffic_dropped(SOFTNODE_DROP_TOO_LONG)},
            {"no_room", softnode_traffic_dropped(SOFTNODE_DROP_NO_ROOM)},
            {"no_way", softnode_traffic_dropped(SOFTNODE_DROP_NO_WAY)},
            {"no_queue", softnode_traffic_dropped(SOFTNODE_DROP_NO_QUEUE)}};
}

document advance(const Given &given)
{
    softnode_time_advance(given.number<std::uint64_t>("nanoseconds"));
    return nullptr;
}

document time(const Given &)
{
    return softnode_time();
}

document add_faults(const Given &given)
{
    return text_of(softnode_faults_add(given.text("rules").c_str()));
}

document add_fault_text(const Given &given)
{
    const std::string &text = given.text("text");
    std::uint32_t line = 0;
    std::uint32_t column = 0;
    const document wrong = text_of(softnode_faults_add_text(text.data(), text.size(), &line, &column));
    if (wrong.is_null())
        return nullptr;
    return {{"problem", wrong}, {"line", line}, {"column", column}};
}

document clear_faults(const Given &)
{
    softnode_faults_clear();
    return nullptr;
}

document release(const Given &)
{
    return softnode_faults_release();
}

document set_reading(const Given &given)
{
    softnode_timing_reading_set(given.number<std::int64_t>("cycles"), given.number<std::uint32_t>("frequency"));
    return nullptr;
}

document post_event(const Given &given)
{
    softnode_timing_event_post(given.number<std::uint32_t>("type"), given.number<std::int32_t>("domain"));
    return nullptr;
}

document settle(const Given &given)
{
    const auto milliseconds = given.number<std::uint32_t>("milliseconds");
    if (milliseconds > longest_settle)
        throw std::runtime_error("milliseconds: more than " + std::to_string(longest_settle));
    return softnode_timing_settle(milliseconds);
}

document graph(const Given &)
{
    return text_of(softnode_graph_dot());
}

document reset(const Given &)
{
    softnode_reset();
    return nullptr;
}

struct Function {
    std::string_view name;
    document (*call)(const Given &given);
    std::array<std::string_view, 3> arguments = {}; /* all of them are to be given; an empty name is none */
};

constexpr Function functions[] = {
    {"fault_functions", json_of<softnode_fault_functions_json>},
    {"faults", json_of<softnode_faults_json>},
    {"faults_add", add_faults, {"rules"}},
    {"faults_add_text", add_fault_text, {"text"}},
    {"faults_clear", clear_faults},
    {"faults_release", release},
    {"graph", graph},
    {"limits", json_of<softnode_limits_json>},
    {"queues", json_of<softnode_queues_json>},
    {"reset", reset},
    {"snapshot", json_of<softnode_snapshot_json>},
    {"time", time},
    {"time_advance", advance, {"nanoseconds"}},
    {"timing_event_post", post_event, {"type", "domain"}},
    {"timing_reading_set", set_reading, {"cycles", "frequency"}},
    {"timing_settle", settle, {"milliseconds"}},
    {"traffic_dropped", dropped},
    {"traffic_offer", offer, {"mac", "frames", "octets_per_frame"}},
    {"traffic_send", send, {"id", "frames", "octets_per_frame"}},
};

const Function &function_named(const std::string &name)
{
    const auto *const found = std::ranges::find(functions, name, &Function::name);
    if (found != std::end(functions))
        return *found;
    std::string all;
    for (const Function &one : functions)
        all.append(all.empty() ? "" : ", ").append(one.name);
    throw std::runtime_error("there is no function \"" + name + "\"; there are " + all);
}

void refuse_unknown(const document &request, const Function &function)
{
    for (const auto &[name, value] : request.members())
        if (name != "function" &&
            (name.empty() || std::ranges::find(function.arguments, name) == function.arguments.end()))
            throw std::runtime_error("\"" + std::string(function.name) + "\" has no argument \"" + name + '"');
}

} // namespace

std::string answer_to(std::string_view request)
{
    const document read = notation::read_json(request);
    const document *const name = read.find("function");
    if (!name || name->holds() != notation::kind::text)
        throw std::runtime_error("a request is an object with \"function\", a text");
    const Function &function = function_named(name->text());
    refuse_unknown(read, function);
    return notation::to_json({{"result", function.call(Given(read))}});
}

} // namespace softnode
