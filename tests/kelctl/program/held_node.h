// A node that `kelctl up --hold` holds, under a name of its own.
#pragma once

#include "program.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <optional>
#include <string>
#include <unistd.h>
#include <vector>

class held_node
{
public:
    explicit held_node(const std::string &text, const std::vector<std::string> &options = {},
                       const std::vector<std::string> &through = {},
                       const std::map<std::string, std::string> &environment = {})
        : file_("node.toml", text)
    {
        start(options, through, environment);
    }

    // A program that is ended like this leaves its socket.
    ~held_node()
    {
        program_.reset();
        std::remove(socket().c_str());
    }
    held_node(const held_node &) = delete;
    held_node &operator=(const held_node &) = delete;

    void start(const std::vector<std::string> &options = {}, const std::vector<std::string> &through = {},
               const std::map<std::string, std::string> &environment = {})
    {
        program_.emplace(program_run{.arguments = with({"up", "node.toml", "--hold", "--name", name()}, options),
                                     .environment = environment,
                                     .folder = folder(),
                                     .through = through});
        EXPECT_TRUE(program_->shows(name())) << "the node is not held"; // as a text or as JSON
    }

    const std::string &folder() const
    {
        return file_.folder();
    }

    std::string name() const
    {
        return file_.node_name();
    }

    std::string socket() const
    {
        return (geteuid() == 0 ? "/run" : runtime_folder()) + "/kelctl/" + name() + ".sock";
    }

    program_run asking(const std::vector<std::string> &words, const std::string &in = "") const
    {
        return {.arguments = with({"--node", name()}, words), .folder = folder(), .in = in};
    }

    program_outcome ask(const std::vector<std::string> &words, const std::string &in = "") const
    {
        return run_kelctl(asking(words, in));
    }

    running_kelctl &program()
    {
        return *program_;
    }

    // What it says until its end.
    program_outcome end(int signal)
    {
        program_->signal(signal);
        return program_->finish();
    }

private:
    const file_in_folder file_;
    std::optional<running_kelctl> program_;
};
