// Lines typed on a terminal: editing, history, completion. The only place that knows libedit, which reads ~/.editrc.
#pragma once

#include "kelctl/input/history_file.h"

#include <functional>
#include <histedit.h>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelctl
{

// What may replace the word before the cursor.
struct replacements {
    std::vector<std::string> words; // in the order in which they are listed
    bool files = false;             // names of files are meant, which the editor knows
};

// `line`: the text before the cursor.
using completer = std::function<replacements(std::string_view line)>;

class line_editor
{
public:
    // `history` must outlive the editor. `complete` is called on Tab, and may throw: then nothing is completed.
    line_editor(history_file &history, completer complete);
    line_editor(const line_editor &) = delete;
    line_editor &operator=(const line_editor &) = delete;

    // Reads the next line, without trailing blanks. Empty after Ctrl-C, which discards what was typed. None after
    // Ctrl-D on an empty line, and once SIGTERM or SIGHUP is recorded. Needs an interruption_watch (interruption.h).
    std::optional<std::string> next();

private:
    static unsigned char complete_at_cursor(EditLine *editor, int key);
    unsigned char complete(const std::vector<std::string> &words, std::string_view begun);
    void remember(const std::string &line);

    history_file &history_;
    const completer complete_;
    const std::unique_ptr<History, void (*)(History *)> lines_;
    const std::unique_ptr<EditLine, void (*)(EditLine *)> editor_; // refers to the lines
};

} // namespace kelctl
