// What is said to a held node and what it answers, line by line (docs/protocol.md):
//
//     {"command": ["ebcom", "path", "add", "02:00:02:02:00:01", "--port", "RLU1P"]}     {"result": {"status": 0, ...}}
//     {"ask": "words"}                                                                  {"macs": [...], ...}
//
// How lines get from one process to the other is socket/; both ends of a command are remote_node.h and node_server.h.
#pragma once

#include "kelctl/language/known_words.h"
#include "kelctl/node/statistics.h"
#include "kelctl/session/other_process.h"
#include "kelctl/values/file_text.h"
#include "terminal/terminal.h"

#include <map>
#include <string>
#include <vector>

namespace kelctl
{

// A command as words, which the node reads again: it trusts nobody's reading but its own.
struct command_request {
    std::vector<std::string> words;
    asker whom = {.shown_on = {.paint = terminal::painter(false)}};
    std::map<std::string, sent_file> files = {}; // that the command reads, by the names in its words
};

fields message_of(const command_request &asked);
command_request request_of(const fields &message); // throws notation::document_error, as all that read a message

struct command_answer {
    answer given;
    std::map<std::string, std::string> written = {}; // files that the command writes, for the asker to write
};

fields message_of(const command_answer &answered);
command_answer answer_of(const fields &message);

// {"error": "why"}: why nothing was done. Empty: it is an answer.
std::string error_in(const fields &message);

// {"ask": "sample"}, whose answer is {"result": ...} of take_sample().
fields question_of(const counted &which);
counted counted_of(const fields &question);

// The answer to {"ask": "words"}. Addresses that cannot be read are left out: they are only offered.
fields message_of(const known_words &known);
known_words known_of(const fields &message);

} // namespace kelctl
