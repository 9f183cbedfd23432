// Calls as lines, and answers as results.
#include "kelctl/accelerator/remote_accelerator.h"

#include "notation/json.h"

#include <stdexcept>
#include <utility>

namespace kelctl
{
namespace
{

using notation::document;

constexpr sockets::protocol spoken = {.name = "softnode", .version = 1};

} // namespace

remote_accelerator::remote_accelerator(std::string path) : path_(std::move(path))
{
}

// The arguments are members of the request itself, beside the function's name.
document remote_accelerator::call(std::string_view function, const document &arguments)
{
    document request = {{"function", function}};
    for (const auto &[name, value] : arguments.members())
        request[name] = value;
    const document answer = notation::read_json(ask(notation::to_json(request)));
    if (const document *why = answer.find("error"))
        throw std::runtime_error(path_ + ": " + why->text());
    return answer.at("result");
}

// After a failure an answer may still come, which the next request would take for its own: the connection is given up.
std::string remote_accelerator::ask(const std::string &request)
{
    if (!client_)
        client_.emplace(path_, spoken);
    try {
        return client_->ask(request);
    } catch (...) {
        client_.reset();
        throw;
    }
}

} // namespace kelctl
