// The software accelerator of another process, asked over its socket (docs/protocol.md).
//
//     remote_accelerator there("/run/user/1000/node.sock");
//     const uint64_t time = there.call("time").number<uint64_t>();
//
// Everything else asks through software_accelerator.h, which chooses between this and the own process.
#pragma once

#include "notation/document.h"
#include "socket/client.h"

#include <optional>
#include <string>
#include <string_view>

namespace kelctl
{

class remote_accelerator
{
public:
    // Connects when it is asked first.
    explicit remote_accelerator(std::string path);

    // Calls a function with its arguments, an object, and returns its result. Throws std::runtime_error when there is
    // no answer, or when the other process refuses the request.
    notation::document call(std::string_view function,
                            const notation::document &arguments = notation::document::object());

private:
    std::string ask(const std::string &request);

    const std::string path_;
    std::optional<sockets::client> client_; // none after a failure: the next call connects again
};

} // namespace kelctl
