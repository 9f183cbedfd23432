// Greetings are made and checked here, so that both sides mean the same.
#include "socket/protocol.h"

#include "notation/json.h"

namespace sockets
{
namespace
{

using notation::document;

// Any text or number of a server that may be anything.
std::string shown(const document *value)
{
    return value ? notation::to_json(*value) : "nothing";
}

} // namespace

std::string greeting(const protocol &spoken, const document &more)
{
    document first = {{"protocol", spoken.name}, {"version", spoken.version}};
    for (const auto &[name, value] : more.members())
        first[name] = value;
    return notation::to_json(first);
}

std::optional<std::string> objection_to(const document &greeting, const protocol &spoken)
{
    if (const document *refused = greeting.find("error"); refused && refused->holds() == notation::kind::text)
        return refused->text();
    const document *name = greeting.find("protocol");
    if (!name || *name != document(spoken.name))
        return "the server speaks the protocol " + shown(name) + ", not \"" + std::string(spoken.name) + '"';
    const document *version = greeting.find("version");
    if (!version || *version != document(spoken.version))
        return "the server speaks version " + shown(version) + " of the protocol \"" + std::string(spoken.name) +
               "\", not " + std::to_string(spoken.version);
    return std::nullopt;
}

std::string error_line(std::string_view why)
{
    return notation::to_json({{"error", why}});
}

} // namespace sockets
