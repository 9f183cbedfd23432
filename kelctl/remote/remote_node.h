// A held node of another process, asked over its socket.
//
//     remote_node node("edge");
//     session.elsewhere = &node;
#pragma once

#include "kelctl/session/other_process.h"
#include "socket/client.h"

#include <chrono>
#include <optional>
#include <string>

namespace kelctl
{

// A node whose thread carries something out greets when that is done.
inline constexpr std::chrono::seconds usual_patience(10);

class remote_node : public other_process
{
public:
    // Connects when it is asked first; throws std::runtime_error when no node of this name answers within the time.
    explicit remote_node(std::string name, std::chrono::milliseconds patience = usual_patience);

    // Sends the texts of the files that the command reads, and writes those that it writes. Waits until the answer
    // comes, or a signal that is recorded (input/interruption.h).
    answer carry_out(const invocation &asked, const asker &whom) override;

    fields ask(const fields &question) override;

private:
    void connect();

    const std::string name_;
    const std::chrono::milliseconds patience_;
    std::optional<sockets::client> client_; // none after a failure: the next command connects again
};

} // namespace kelctl
