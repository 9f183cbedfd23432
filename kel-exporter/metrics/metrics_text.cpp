// Both formats, which differ in the names of families and in the end. What there is to write is families.cpp.
#include "kel-exporter/metrics/metrics_text.h"

#include <fmt/core.h>
#include <glib.h>

#include <memory>

namespace kel_exporter
{
namespace
{

// By metric_type. OpenMetrics names a family without the suffix, the classic format with it.
constexpr struct {
    std::string_view suffix;  // of a sample's name
    std::string_view classic; // the name of the type
    std::string_view open_metrics;
} types[] = {
    {"_total", "counter", "counter"},
    {"", "gauge", "gauge"},
    {"_info", "gauge", "info"},
};

// A reader refuses all of a text with octets that are not UTF-8, as a name or a file may have.
std::string escaped(const std::string &value)
{
    const std::unique_ptr<gchar, void (*)(void *)> valid(
        g_utf8_make_valid(value.data(), static_cast<gssize>(value.size())), g_free);
    std::string text;
    for (const char octet : std::string_view(valid.get()))
        if (octet == '\n')
            text += "\\n";
        else
            text.append(octet == '\\' || octet == '"' ? "\\" : "").push_back(octet);
    return text;
}

std::string labels_text(const std::vector<label> &labels)
{
    std::string text;
    for (const auto &[name, value] : labels)
        text += fmt::format("{}{}=\"{}\"", text.empty() ? "" : ",", name, escaped(value));
    return text;
}

std::string heading(text_format format, const family &of)
{
    const auto &type = types[static_cast<size_t>(of.type)];
    if (format == text_format::classic)
        return fmt::format("# HELP {0}{1} {2}\n# TYPE {0}{1} {3}\n", of.name, type.suffix, of.help, type.classic);
    const std::string unit = of.unit.empty() ? "" : fmt::format("# UNIT {} {}\n", of.name, of.unit);
    return fmt::format("# TYPE {0} {1}\n{2}# HELP {0} {3}\n", of.name, type.open_metrics, unit, of.help);
}

} // namespace

std::string_view media_type(text_format format)
{
    return format == text_format::classic ? "text/plain; version=0.0.4; charset=utf-8"
                                          : "application/openmetrics-text; version=1.0.0; charset=utf-8";
}

// Both formats want all samples of a family together, below its heading; so nodes are walked through for each family.
std::string metrics_text(text_format format, const std::vector<known_node> &nodes, watch_clock::time_point now)
{
    std::string text;
    for (const family &of : families()) {
        std::string samples;
        const auto add = [&](const std::vector<label> &labels, const std::string &value) {
            samples += fmt::format("{}{}{{{}}} {}\n", of.name, types[static_cast<size_t>(of.type)].suffix,
                                   labels_text(labels), value);
        };
        for (const known_node &node : nodes)
            try {
                of.read(of, node, now, add);
            } catch (const notation::document_error &) {
                continue; // a node of another version does not answer with it
            }
        if (!samples.empty())
            text += heading(format, of) + samples;
    }
    return format == text_format::classic ? text : text + "# EOF\n";
}

} // namespace kel_exporter
