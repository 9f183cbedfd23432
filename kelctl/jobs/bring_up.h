// Brings a node up and takes it down again, for `up`, and for `shell FILE` around its lines:
//
//     bring_up node(std::move(lines), file, session);
//     const bool up = node.up();
//     ...
//     const bool clean = node.down();
//     return node.take_result(up && clean);
//
// The commands and their order come from the node file (nodefile/node_keys.cpp); undoing them is take_down.h. Each part
// is shown at once and kept for the result.
#pragma once

#include "kelctl/results/result.h"
#include "kelctl/session/session.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kelctl
{

// Its parts are called in the order of the example; each shows what it does (session::show_part).
class bring_up
{
public:
    // `file`: the name of the node file, for messages. The session must outlive this.
    bring_up(std::vector<invocation> lines, std::string file, session &session);
    ~bring_up(); // takes down what neither down() nor keep() has dealt with, and shows nothing
    bring_up(const bring_up &) = delete;
    bring_up &operator=(const bring_up &) = delete;

    // Carries the lines out, up to the first one that fails or an interruption. True when all of them succeeded.
    bool up();

    // Takes down all that the session made, if that was not done yet. True when every command succeeded and nothing is
    // left. What is kept stays: false.
    bool down();

    // `up --keep`: after a line that failed, leaves what was made on the node, and shows it. False, with nothing
    // changed, when no line has failed.
    bool keep();
    bool kept() const
    {
        return kept_;
    }

    // Shows another part of the result. True when all went well.
    bool show(result part);

    // What has been shown up to now.
    const result &shown() const
    {
        return result_;
    }

    // All parts as one result, for the caller to return.
    result take_result(bool succeeded);

private:
    bool take_all_down();
    void show_stop(uint32_t line, result last);
    void show_background_failures();

    std::vector<invocation> lines_;
    std::string file_;
    session &session_;
    bool came_up_ = false; // every line succeeded
    bool line_failed_ = false;
    bool kept_ = false;
    std::optional<bool> clean_; // none before the take-down
    result result_;
};

} // namespace kelctl
