// Following the EXCEPTION records of an operation to the first of the chain. Each names its function, and what failed
// underneath: a function of the library itself, whose own record came before, or a call to the outside. The records are
// read from the last to the first: the operation's own is the last one.
#include "kelctl/library/explanation.h"

#include "platform/kei_util.h"
#include "text/refusal.h"

namespace kelctl
{
namespace
{

// Companion codes are passed on unchanged, so the operation's is the refusing call's where it has the same text.
void add_passed_on_code(explanation &why, uint32_t code)
{
    if (!why.code && why.text == kei_util_init_rc_str_get(code))
        why.code = code;
}

} // namespace

std::optional<explanation> explanation_of(const failure &failed)
{
    std::optional<explanation> why;
    for (auto entry = failed.records.rbegin(); entry != failed.records.rend(); ++entry) {
        const auto [function, detail] = text::parts_of(entry->message);
        if (entry->event != "EXCEPTION" || (why && why->what != function))
            continue;
        if (const auto refusal = text::refusal_in(detail))
            why = explanation{std::string(refusal->by), std::string(refusal->what), refusal->code,
                              std::string(refusal->text)};
    }
    if (why)
        add_passed_on_code(*why, failed.code);
    return why;
}

} // namespace kelctl
