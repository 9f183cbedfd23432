// Transcripts taken for recordings.
#include "explained.h"

#include "kel-trace/operations/operation_builder.h"

#include <algorithm>
#include <sstream>

namespace proof
{
namespace
{

using namespace kel_trace;

event event_named(const std::string &name)
{
    const std::string whole = name.starts_with("init:") ? name : "ic:" + name;
    return static_cast<event>(std::ranges::find(event_names, whole) - std::begin(event_names));
}

// The records of a thread's transcript, with its speakers' names in front of the messages.
void tell(const std::string &transcript, int64_t thread, operation_builder &builder)
{
    std::istringstream in(transcript);
    std::string speaker;
    int64_t time = 0;
    for (std::string line; std::getline(in, line);) {
        if (!line.starts_with("  ")) {
            speaker = line.substr(0, line.find(':'));
            continue;
        }
        std::istringstream words(line);
        std::string name;
        std::string domain;
        words >> name >> domain;
        if (name == ">" || name == "~")
            continue;
        const size_t text_at = line.find(domain, line.find(name) + name.size()) + domain.size() + 1;
        const std::string text = text_at < line.size() ? ": " + line.substr(text_at) : "";
        const std::string message = speaker + "()" + text;
        builder.take({++time, {0, 1, thread}, event_named(name), name, "", domain, message});
    }
}

bool names(const std::string &transcript, const std::string &function)
{
    std::istringstream in(transcript);
    for (std::string line; std::getline(in, line);)
        if (line.find("EXCEPTION ") != std::string::npos &&
            (line.ends_with(", " + function) || line.find(" " + function + " returned ") != std::string::npos ||
             line.find(" " + function + "(kel-time-stamp) => rc=") != std::string::npos ||
             line.find(" " + function + " => rc=") != std::string::npos))
            return true;
    return false;
}

bool is_named(const complaint &one, const fault &fault)
{
    return one.what.substr(0, one.what.find('(')) == fault.function && (!one.code || *one.code == fault.result);
}

} // namespace

std::string unexplained(const outcome &shown, const step &tried, size_t &named)
{
    std::vector<kel_trace::operation> done;
    operation_builder builder([&](const kel_trace::operation &one) { done.push_back(one); });
    tell(shown.transcript, 1, builder);
    std::string threads;
    for (const auto &[number, transcript] : shown.threads) {
        tell(transcript, static_cast<int64_t>(number) + 2, builder);
        threads += transcript;
    }
    builder.end();

    const auto reports = [&](const fault &fault) {
        return std::ranges::any_of(done, [&](const kel_trace::operation &one) {
            return std::ranges::any_of(one.complaints, [&](const complaint &each) { return is_named(each, fault); });
        });
    };
    for (const auto &[faults, transcript] :
         {std::pair(&tried.faults, &shown.transcript), {&tried.thread_faults, &threads}})
        for (const fault &one : *faults) {
            if (!names(*transcript, one.function))
                continue;
            ++named;
            if (!reports(one))
                return one.function + " is not shown to have failed:\n" + *transcript;
        }

    const auto failed = [](const kel_trace::operation &one) { return one.of.thread == 1 && one.failure(); };
    const bool shows_failure = std::ranges::any_of(done, failed);
    const bool reported = shown.transcript.find("EXCEPTION ") != std::string::npos;
    if (shown.result == 0 && shows_failure)
        return "a success is shown as a failure:\n" + shown.transcript;
    if (shown.result != 0 && reported && !shows_failure)
        return "a failure is not shown:\n" + shown.transcript;
    return "";
}

} // namespace proof
