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
std::string lines_on(const page &page, std::string_view text)
{
    std::string lines;
    for (; !text.empty(); text.remove_prefix(std::min(text.find('\n'), text.size() - 1) + 1))
        lines += line_on(page, text.substr(0, text.find('\n')));
    return lines;
}

std::string more_failures_text(const result &done)
{
    const std::string stage = done.stage.empty() ? "" : fmt::format(" of the {}", done.stage);
    return fmt::format("{} more operations{} failed\n", done.failures.size() - most_full_reports, stage);
}

} // namespace

void show(const result &done, const origin &from, bool tracer_installed)
{
    if (done.shown_already)
        return;
    write(stdout, fields_text(done.text ? *done.text : done.shown, page_for(stdout)));
    const page page = page_for(stderr);
    std::string told;
    for (const input_error &error : done.errors)
        told += lines_on(page, error_text(error, from));
    for (size_t i = 0; i < std::min(done.failures.size(), most_full_reports); ++i)
        told += report_of(done.failures[i], tracer_installed, page, place_text(from));
    if (done.failures.size() > most_full_reports)
        told += more_failures_text(done);
    if (!done.complaints.empty())
        told += complaints_text(place_text(from) + "it", done.complaints, page);
    if (!done.remark.empty())
        told += place_text(from) + done.remark + (done.remark.ends_with('\n') ? "" : "\n");
    write(stderr, told);
}

void show_wrong_line(const input_error &error, bool json)
{
    if (json)
        write(stdout, line_of(document_of(error)));
    else
        write(stderr, lines_on(page_for(stderr), text_of(error)));
}

std::string text_of(const input_error &error)
{
    std::string place = without_controls(error.file.empty() ? "kelctl" : error.file);
    for (const uint32_t number : {error.at.line, error.at.column})
        place += number == 0 ? "" : fmt::format(":{}", number);
    return fmt::format("{}: {}", place, error.message);
}

} // namespace kelctl
