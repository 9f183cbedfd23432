// The order of what is told, and the place before it.
#include "kelctl/session/result_view.h"

#include "kelctl/session/failure_report.h"
#include "kelctl/session/fields_view.h"
#include "kelctl/session/result_document.h"
#include "kelctl/terminal/terminal.h"
#include "kelctl/terminal/text.h"

#include <fmt/core.h>

#include <algorithm>

namespace kelctl
{
namespace
{

constexpr size_t most_full_reports = 10; // more of them would hide the rest

std::string shown_text(const result &done)
{
    if (!done.text)
        return fields_text(done.shown, painter_for(stdout));
    return done.text->empty() || done.text->ends_with('\n') ? *done.text : *done.text + "\n";
}

std::string place_text(const origin &from)
{
    return from.file.empty() ? "" : fmt::format("{}:{}: ", without_controls(from.file), from.line);
}

// Of a line of another file, its own place says more than that of the script's line, which the remark then has.
std::string error_text(const input_error &error, const origin &from)
{
    if (error.file.empty() && !from.file.empty())
        return place_text(from) + error.message;
    return error.at.line == 0 ? place_text(from) + text_of(error) : text_of(error);
}

// Messages are one line mostly; those of the accelerator may have more.
std::string fitting(std::string_view text, std::FILE *stream)
{
    const auto width = line_width(stream);
    std::string lines;
    for (; width && !text.empty(); text.remove_prefix(std::min(text.find('\n'), text.size() - 1) + 1))
        lines += folded(text.substr(0, text.find('\n')), *width);
    return width ? lines : fmt::format("{}\n", text);
}

std::string more_failures_text(const result &done)
{
    const std::string stage = done.stage.empty() ? "" : fmt::format(" of the {}", done.stage);
    return fmt::format("{} more operations{} failed\n", done.failures.size() - most_full_reports, stage);
}

std::string complaints_text(const std::vector<trace_entry> &complaints, const origin &from)
{
    if (complaints.empty())
        return "";
    std::string text = place_text(from) + "it succeeded, but its trace records report failures:\n";
    for (const trace_entry &entry : complaints)
        text += fmt::format("    {}\n", to_text(entry));
    return text;
}

} // namespace

void show(const result &done, const origin &from, bool tracer_installed)
{
    if (done.shown_already)
        return;
    write(stdout, shown_text(done));
    std::string told;
    for (const input_error &error : done.errors)
        told += fitting(error_text(error, from), stderr);
    for (size_t i = 0; i < std::min(done.failures.size(), most_full_reports); ++i)
        told += report_of(done.failures[i], tracer_installed, page_for(stderr), place_text(from));
    if (done.failures.size() > most_full_reports)
        told += more_failures_text(done);
    told += complaints_text(done.complaints, from);
    if (!done.remark.empty())
        told += place_text(from) + done.remark + (done.remark.ends_with('\n') ? "" : "\n");
    write(stderr, told);
}

void show_wrong_line(const input_error &error, bool json)
{
    if (json)
        write(stdout, line_of(document_of(error)));
    else
        write(stderr, fitting(text_of(error), stderr));
}

std::string text_of(const input_error &error)
{
    const std::string file = without_controls(error.file.empty() ? "kelctl" : error.file);
    const auto [line, column] = error.at;
    if (line == 0)
        return fmt::format("{}: {}", file, error.message);
    if (column == 0)
        return fmt::format("{}:{}: {}", file, line, error.message);
    return fmt::format("{}:{}:{}: {}", file, line, column, error.message);
}

} // namespace kelctl
