// A node file is read back and compared before it is handed out, so it says all that there is.
#include "kelctl/change/export.h"

#include "kelctl/change/difference.h"
#include "kelctl/change/discrepancies.h"
#include "kelctl/change/node_model.h"
#include "kelctl/language/command_text.h"
#include "kelctl/node/load_node_file.h"
#include "kelctl/nodefile/node_writer.h"

#include <fmt/core.h>

#include <algorithm>
#include <utility>

namespace kelctl
{
namespace
{

// Whether the path is the next one of a line that makes `count` paths. Raw values and shaping must be the same, too.
bool follows(const invocation &path, const invocation &last, uint32_t count)
{
    invocation next = last;
    const mac_address &first = last.given.mac("MAC");
    if (count > addresses_after(first))
        return false;
    next.given.set("MAC", counted_up(first, count));
    return path.raw == last.raw && path.given == next.given;
}

// Paths to consecutive addresses become one line with a count.
std::vector<invocation> lines_of(const node_model &model)
{
    std::vector<invocation> lines;
    uint32_t count = 0; // of the last line
    for (const node_object &one : model) {
        // Before a path there is what starts its service.
        if (one.key.kind == object_kind::path && lines.back().row == one.asked.row &&
            follows(one.asked, lines.back(), count)) {
            ++count;
            continue;
        }
        if (count > 1)
            lines.back().given.set("--count", int64_t{count});
        lines.push_back(one.asked);
        count = 1;
    }
    if (count > 1)
        lines.back().given.set("--count", int64_t{count});
    return lines;
}

// What the file would not make as it is. The PCEP service without a PCEP is only warned of, in exported_node(): what is
// lost is an empty service.
std::vector<input_error> objections_to(const std::string &text, const node_model &model, const session &session)
{
    loaded_lines read = load_node_text("", text, session.table);
    for (input_error &error : read.errors)
        error.message = fmt::format("a node file cannot say this: {}", error.message);
    if (!read.errors.empty())
        return std::move(read.errors);
    for (const node_change &one : differences(model, model_of(read.lines)))
        if (one.object.kind != object_kind::pcep_service) // see below
            read.errors.push_back({fmt::format("a node file cannot say this: {}{}", name_of(one.object),
                                               one.was.empty() ? "" : ": " + one.was)});
    return std::move(read.errors);
}

} // namespace

// A script needs no reading back: its lines are those that were carried out.
exported exported_node(bool as_script, const session &session)
{
    const node_model model = model_of(session);
    const std::vector<invocation> lines = lines_of(model);
    exported made;
    if (const auto found = discrepancies(model, session))
        for (const discrepancy &one : *found)
            made.warnings.push_back(without_position(text_of(one)));
    if (as_script) {
        for (const invocation &line : lines)
            made.text += text_of(line) + "\n";
        return made;
    }
    made.text = node_file_of(lines);
    made.errors = objections_to(made.text, model, session);
    if (!made.errors.empty())
        made.text.clear();
    else if (model.back().key.kind == object_kind::pcep_service)
        made.warnings.push_back(without_position("a node file starts the PCEP service for PCEPs and groups only"));
    return made;
}

} // namespace kelctl
