// Media ranges and their weights: "application/openmetrics-text;version=1.0.0,text/plain;q=0.5,*/*;q=0.1".
#include "kel-exporter/serving/accepted_format.h"

#include <algorithm>
#include <charconv>
#include <strings.h>

namespace kel_exporter
{
namespace
{

bool same(std::string_view one, std::string_view other)
{
    return one.size() == other.size() && strncasecmp(one.data(), other.data(), one.size()) == 0;
}

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view blanks = " \t";
    const size_t begin = std::min(text.find_first_not_of(blanks), text.size());
    return text.substr(begin, text.find_last_not_of(blanks) + 1 - begin);
}

// Takes what is in front of the first separator, and the separator.
std::string_view taken(std::string_view &text, char separator)
{
    const size_t end = std::min(text.find(separator), text.size());
    const std::string_view first = trimmed(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
    return first;
}

// 0 for what is no number: not accepted.
double weight_of(std::string_view written)
{
    double weight = 0;
    std::from_chars(written.data(), written.data() + written.size(), weight, std::chars_format::fixed);
    return weight;
}

struct media_range {
    std::string_view type;
    std::string_view version = {}; // empty: any
    double weight = 1;
};

media_range range_of(std::string_view written)
{
    media_range range = {.type = taken(written, ';')};
    while (!written.empty()) {
        std::string_view value = taken(written, ';');
        const std::string_view name = taken(value, '=');
        if (same(name, "q"))
            range.weight = weight_of(value);
        else if (same(name, "version"))
            range.version = value;
    }
    return range;
}

} // namespace

// "*/*" is no wish for OpenMetrics: a browser or curl, which accept all, get the format that people read.
text_format accepted_format(std::string_view accept)
{
    double open_metrics = 0;
    double classic = 0;
    while (!accept.empty()) {
        const media_range range = range_of(taken(accept, ','));
        if (same(range.type, "application/openmetrics-text") && (range.version.empty() || range.version == "1.0.0"))
            open_metrics = std::max(open_metrics, range.weight);
        else if (same(range.type, "text/plain"))
            classic = std::max(classic, range.weight);
    }
    return open_metrics > 0 && open_metrics >= classic ? text_format::open_metrics : text_format::classic;
}

} // namespace kel_exporter
