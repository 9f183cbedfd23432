// From a request to the session's answer.
#include "kelctl/remote/node_server.h"

#include "kelctl/language/command_line.h"
#include "kelctl/node/known_on_node.h"
#include "kelctl/node/read_back.h"
#include "kelctl/node/sample.h"
#include "kelctl/node/state.h"
#include "kelctl/remote/messages.h"
#include "kelctl/remote/node_names.h"
#include "kelctl/remote/octets.h"
#include "kelctl/remote/result_message.h"
#include "kelctl/values/file_text.h"
#include "notation/json.h"
#include "text/printable.h"

#include <fmt/core.h>

#include <algorithm>
#include <filesystem>
#include <grp.h>
#include <iterator>
#include <poll.h>
#include <stdexcept>
#include <unistd.h>
#include <utility>

namespace kelctl
{
namespace
{

// A file of 16 MiB, and what its JSON adds.
constexpr sockets::server_limits limits = {.longest_request = size_t{24} << 20};

constexpr std::string_view take_down_row = "down";

// What the greeting of every connection says of the node.
fields about(const sockets::address &where, const std::string &file)
{
    return {{"name", document_of_octets(std::filesystem::path(where.path).stem())},
            {"file", document_of_octets(std::filesystem::absolute(file))},
            {"process", getpid()}};
}

std::vector<word> words_from(const std::vector<std::string> &texts)
{
    std::vector<word> words;
    std::ranges::transform(texts, std::back_inserter(words),
                           [](const std::string &text) { return word{.text = text}; });
    return words;
}

} // namespace

sockets::address address_for(const std::string &name, const std::optional<std::string> &group)
{
    sockets::address where = {.path = socket_path(name)};
    if (!group)
        return where;
    const auto *known = getgrnam(group->c_str());
    if (!known)
        throw std::runtime_error(fmt::format("there is no group {}", text::in_quotes(*group)));
    where.group = known->gr_gid;
    return where;
}

node_server::node_server(const sockets::address &where, const std::string &file, session &session,
                         std::function<result()> take_down)
    : session_(session), take_down_(std::move(take_down)), server_(where, node_protocol, about(where, file), limits)
{
}

int node_server::number() const
{
    return server_.number();
}

void node_server::serve()
{
    server_.serve([this](std::string_view request) { return answer_to(request); });
}

// No longer than the server has patience with any of them.
void node_server::finish()
{
    pollfd waited = {server_.number(), POLLIN, 0};
    for (serve(); server_.sending(); serve())
        poll(&waited, 1, -1);
}

// What is thrown here becomes the answer {"error": ...} in socket/server.cpp.
std::string node_server::answer_to(std::string_view request)
{
    return notation::to_json(answer_to(notation::read_json(request)));
}

// A request with "command" is a command; any other is a question, which changes nothing on the node.
fields node_server::answer_to(const fields &request)
{
    if (session_.finished)
        throw std::runtime_error("the node is being taken down");
    if (request.find("command"))
        return carry_out(request);
    const std::string &question = request.at("ask").text();
    if (question == "words")
        return message_of(known_on_node(session_));
    if (question == "state")
        return {{"result", message_of(take_state(session_))}};
    if (question == "sample")
        return sample(counted_of(request));
    throw std::runtime_error(fmt::format("there is no question {}", text::in_quotes(question)));
}

fields node_server::sample(const counted &which)
{
    const fields queues = queues_now();
    return {{"result", message_of(take_sample(queues, ports_of(queues, session_.paths), which, session_))}};
}

// The row decides again whether the node may be asked: the asking process may be of another version, or no kelctl at
// all.
fields node_server::carry_out(const fields &request)
{
    command_request wanted = request_of(request);
    const invocation asked = parse(session_.table, words_from(wanted.words), source::program);
    if (asked.row->carried_out != executor::node)
        throw std::runtime_error(fmt::format("\"{}\" cannot be asked of the node of another process", asked.row->name));
    sent_files files(std::move(wanted.files));
    const bool ends = asked.row->name == take_down_row;
    answer given = ends ? take_down() : session_.answer_to(asked, wanted.whom);
    return message_of(command_answer{std::move(given), std::move(files.written)});
}

// Its parts are the end of what the node's own command shows, and all that "down" shows.
answer node_server::take_down()
{
    session_.finished = true;
    answer given = session_.observed(take_down_);
    for (const result_part &one : given.parts)
        add_part(given.done, one.part);
    return given;
}

} // namespace kelctl
