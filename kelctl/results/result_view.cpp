// The order of a result's parts, and the file and line in front of each. How values are laid out is fields_view.cpp,
// what a failure's report says failure_report.cpp.
#include "kelctl/results/result_view.h"

#include "kelctl/results/failure_report.h"
#include "kelctl/results/fields_view.h"
#include "kelctl/results/result_document.h"
#include "terminal/terminal.h"
#include "text/printable.h"

#include <fmt/core.h>

#include <algorithm>
#include <span>

namespace kelctl
{
namespace
{

// More of them would hide the rest.
constexpr size_t most_full_reports = 10;
constexpr size_t most_errors = 20;

std::string origin_text(const origin &from)
{
    return from.file.empty() ? "" : fmt::format("{}:{}: ", text::without_controls(from.file), from.line);
}

// Of a line of another file, its own position says more than that of the script's line, which the remark then has.
std::string error_text(const input_error &error, const origin &from)
{
    if (error.file.empty() && !from.file.empty())
        return origin_text(from) + error.message;
    return error.at.line == 0 ? origin_text(from) + text_of(error) : text_of(error);
}

std::string more_text(size_t more, std::string_view what, const page &page)
{
    return more_line(more, fmt::format("{{}} more {}", what), page);
}

std::string failures_text(const result &done, const origin &from, const manner &shown, bool tracer_installed,
                          const page &page)
{
    const std::string what =
        done.stage.empty() ? "operations failed" : fmt::format("operations of the {} failed", done.stage);
    const size_t most = shown.all ? done.failures.size() : std::min(done.failures.size(), most_full_reports);
    std::string text;
    for (const failure &one : std::span(done.failures).first(most))
        text += (shown.brief ? "" : records_of(one, tracer_installed, page)) + report_of(one, page, origin_text(from));
    return text + more_text(done.failures.size() - most, what, page);
}

std::string errors_text(const std::vector<input_error> &errors, std::string_view what, const origin &from,
                        const manner &shown, const page &page, std::string_view lead = "")
{
    const size_t most = shown.all ? errors.size() : std::min(errors.size(), most_errors);
    std::string text;
    for (input_error error : std::span(errors).first(most)) {
        error.message.insert(0, lead);
        text += lines_on(page, error_text(error, from));
    }
    return text + more_text(errors.size() - most, what, page);
}

} // namespace

// What a person needs next comes last, where the cursor is: values, warnings, errors, failures, and the remark. All of
// standard error is written at once, so that nothing comes between.
void show(const result &done, const origin &from, const manner &shown, bool tracer_installed)
{
    if (done.shown_already)
        return;
    if (!shown.quiet)
        terminal::write(stdout, fields_text(done.text ? *done.text : done.shown, page_for(stdout)));
    const page page = page_for(stderr);
    std::string told = shown.quiet ? "" : errors_text(done.warnings, "warnings", from, shown, page, "warning: ");
    told += errors_text(done.errors, "problems", from, shown, page);
    told += failures_text(done, from, shown, tracer_installed, page);
    if (!done.complaints.empty())
        told += complaints_text(origin_text(from) + "it", done.complaints, page);
    if (!done.remark.empty())
        told += lines_on(page, origin_text(from) + done.remark);
    terminal::write(stderr, told);
}

void show_wrong_line(const input_error &error, std::string_view hint, bool json)
{
    if (json)
        terminal::write(stdout, line_of(document_of(error)));
    else
        terminal::write(stderr, lines_on(page_for(stderr), fmt::format("{}\n{}", text_of(error), hint)));
}

std::string text_of(const input_error &error)
{
    std::string text = text::without_controls(error.file.empty() ? "kelctl" : error.file);
    for (const uint32_t number : {error.at.line, error.at.column})
        text += number == 0 ? "" : fmt::format(":{}", number);
    return fmt::format("{}: {}", text, error.message);
}

} // namespace kelctl
