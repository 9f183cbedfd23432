// Any octets as a line of the other process, at either end of a node's socket: it is a message, or no message, and what a
// message holds is the same when it is sent on. Words of a command are read, and not carried out.
#include "kelctl/commands/commands.h"
#include "kelctl/language/command_line.h"
#include "kelctl/remote/messages.h"
#include "kelctl/remote/result_message.h"
#include "notation/json.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace
{

using namespace kelctl;

template <typename Read> void check(const fields &message, Read read)
{
    try {
        const fields once = message_of(read(message));
        if (message_of(read(once)) != once)
            std::abort();
    } catch (const notation::document_error &) {
        return;
    }
}

void check_words(const fields &message)
{
    try {
        std::vector<word> words;
        for (const std::string &text : request_of(message).words)
            words.push_back({.text = text});
        if (!parse(commands(), words, source::program).row)
            std::abort();
    } catch (const wrong_line &) {
        return;
    } catch (const notation::document_error &) {
        return;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *octets, size_t count)
{
    const auto message = notation::try_read_json({reinterpret_cast<const char *>(octets), count});
    if (!message)
        return 0;
    check(*message, request_of);
    check(*message, answer_of);
    check(*message, known_of);
    check(*message, result_of);
    check_words(*message);
    return 0;
}
