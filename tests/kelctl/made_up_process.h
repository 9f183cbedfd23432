// A process that others ask, made up: a test says what it answers.
#pragma once

#include "socket/descriptor.h"
#include "socket/server.h"

#include <array>
#include <poll.h>
#include <string>
#include <sys/eventfd.h>
#include <thread>
#include <utility>

// Answers in a thread of its own.
class made_up_process
{
public:
    made_up_process(const std::string &path, const sockets::protocol &spoken, sockets::server::handler answer)
        : server_({.path = path}, spoken), answer_(std::move(answer)), thread_([this] { serve(); })
    {
    }
    ~made_up_process()
    {
        eventfd_write(end_.number(), 1);
        thread_.join();
    }

private:
    void serve()
    {
        std::array<pollfd, 2> wanted = {{{server_.number(), POLLIN, 0}, {end_.number(), POLLIN, 0}}};
        while (poll(wanted.data(), wanted.size(), -1) < 0 || wanted[1].revents == 0)
            server_.serve(answer_);
    }

    sockets::server server_;
    sockets::server::handler answer_;
    sockets::descriptor end_{eventfd(0, EFD_CLOEXEC)};
    std::thread thread_;
};
