// Any octets as the header of a client, in the first line, and as what a node answers, in each of the others: the metrics
// are text that Prometheus reads, and the page's document is JSON.
#include "kel-exporter/metrics/metrics_text.h"
#include "kel-exporter/metrics/nodes_json.h"
#include "kel-exporter/nodes/counter_sums.h"
#include "kel-exporter/serving/accepted_format.h"
#include "notation/json.h"

#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>

namespace
{

using namespace kel_exporter;

void check(bool holds)
{
    if (!holds)
        std::abort();
}

void check_shown(const known_node &node)
{
    const auto now = node.read + std::chrono::seconds(1);
    std::istringstream text(metrics_text(text_format::classic, {node}, now));
    for (std::string line; std::getline(text, line);)
        check(line.starts_with("# HELP kel_") || line.starts_with("# TYPE kel_") ||
              (line.starts_with("kel_") && line.find("} ") != line.npos));
    check(metrics_text(text_format::open_metrics, {node}, now).ends_with("# EOF\n"));
    check(notation::try_read_json(nodes_json({node}, now, {})).has_value());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *octets, size_t count)
{
    std::istringstream lines(std::string(reinterpret_cast<const char *>(octets), count));
    std::string line;
    std::getline(lines, line);
    accepted_format(line);
    counter_sums sums;
    while (std::getline(lines, line))
        if (auto state = notation::try_read_json(line))
            try {
                sums.carry_on(*state);
                check_shown({.name = line,
                             .up = true,
                             .file = line,
                             .state = std::make_shared<const notation::document>(*std::move(state))});
            } catch (const notation::document_error &) {
                continue; // the node is not up then
            }
    return 0;
}
