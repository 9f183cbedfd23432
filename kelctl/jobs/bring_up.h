// A node brought up by its file's lines, and taken down again: what `kelctl up` does, and the shell around what is typed.
// What comes up is shown at once and kept for the result.
#pragma once

#include "kelctl/session/result.h"
#include "kelctl/session/session.h"

#include <cstdint>
#include <string>
#include <vector>

namespace kelctl
{

class bring_up
{
public:
    // `file` is where the lines come from.
    bring_up(std::vector<invocation> lines, std::string file, session &session);
    ~bring_up(); // takes down what nobody has taken down or kept
    bring_up(const bring_up &) = delete;
    bring_up &operator=(const bring_up &) = delete;

    // Carries the lines out, up to the first one that fails or an interruption. True when all of them succeeded.
    bool up();

    // Takes down all that the session made. True when every command succeeded and nothing is left.
    bool down();

    // Leaves for good what was made before a line that failed. False, and nothing has changed, when none has failed.
    bool keep();

    // Shows another part of the result. True when all went well.
    bool show(result part);

    // All that was shown, and how it went.
    result take_result(bool succeeded);

private:
    void show_stop(uint32_t line, result last);
    void show_background_failures();

    std::vector<invocation> lines_;
    std::string file_;
    session &session_;
    bool stood_ = false;
    bool line_failed_ = false;
    result result_;
};

} // namespace kelctl
