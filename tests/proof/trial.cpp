#include "trial.h"

#include "library.h"
#include "transcript.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <sstream>

namespace proof
{
namespace
{

// The texts of two MAC addresses for one record are made in an order that is left to the compiler.
std::string with_mac_texts_in_order(const std::string &transcript)
{
    std::istringstream in(transcript);
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    const auto is_mac_text = [](const std::string &line) { return line.starts_with("  > macAddr2str("); };
    for (auto begin = lines.begin(); begin != lines.end();) {
        begin = std::find_if(begin, lines.end(), is_mac_text);
        const auto end = std::find_if_not(begin, lines.end(), is_mac_text);
        std::sort(begin, end);
        begin = end;
    }
    std::string result;
    for (const std::string &line : lines)
        result += line + "\n";
    return result;
}

std::string hex(const octets &octets)
{
    std::string result;
    for (const uint8_t each : octets)
        result += format("%02x", each);
    return result;
}

std::string contrast(const std::string &what, const std::string &expected, const std::string &actual)
{
    return expected == actual ? "" : what + " expected:\n" + expected + "\n" + what + " found:\n" + actual + "\n";
}

std::string records_contrast(const outcome &expected)
{
    std::string result;
    for (const auto &[function, records] : expected.records) {
        std::string wanted;
        std::string found;
        for (const octets &each : records)
            wanted += hex(each) + "\n";
        for (const octets &each : handed_over(function))
            found += hex(each) + "\n";
        result += contrast("record for " + function, wanted, found);
    }
    return result;
}

std::string transcript_contrast(const std::string &expected, const std::string &actual)
{
    if (expected == actual)
        return "";
    return contrast("transcript", with_mac_texts_in_order(expected), with_mac_texts_in_order(actual));
}

std::string contrast(const outcome &expected, const outcome &actual)
{
    std::string result = contrast("result", std::to_string(expected.result), std::to_string(actual.result)) +
                         transcript_contrast(expected.transcript, actual.transcript) +
                         contrast("outputs", hex(expected.outputs), hex(actual.outputs)) + records_contrast(expected);
    for (const auto &[n, text] : expected.threads)
        result += contrast(format("thread %zu", n), text, actual.threads.at(n));
    return result;
}

std::string all_of(int pipe_end)
{
    std::string result;
    char part[4096];
    for (ssize_t size; (size = read(pipe_end, part, sizeof part)) > 0;)
        result.append(part, static_cast<size_t>(size));
    return result;
}

void write_all(int pipe_end, std::string_view text)
{
    while (!text.empty()) {
        const ssize_t written = write(pipe_end, text.data(), text.size());
        if (written <= 0)
            return;
        text.remove_prefix(static_cast<size_t>(written));
    }
}

// Leaves without the destructors of the parent's tracer, whose threads are not here.
[[noreturn]] void run_child(const std::function<std::string()> &work, int pipe_end)
{
    std::string found = work();
    if (found.empty() && testing::Test::HasFailure())
        found = "a check of the transcript failed, see above\n";
    write_all(pipe_end, found);
    fflush(nullptr);
    _exit(0);
}

} // namespace

trial::trial() : model_(transcript::traced())
{
    transcript::forget();
}

std::string trial::difference(const script &steps)
{
    for (size_t n = 0; n < steps.size(); ++n) {
        if (!model_.allows(steps[n]))
            continue;
        ++steps_;
        const outcome expected = model_.perform(steps[n]);
        const std::string found = contrast(expected, perform_on_library(steps[n], model_, expected));
        if (!found.empty())
            return format("step %zu, ", n + 1) + text_of(steps[n]) + "\n" + found;
    }
    return "";
}

std::string trial::difference_on_way_back()
{
    return difference(model_.way_back());
}

std::string found_in_own_process(const std::function<std::string()> &work)
{
    int ends[2];
    if (pipe(ends) != 0)
        return "no pipe";
    fflush(nullptr);
    const pid_t child = fork();
    if (child == 0)
        run_child(work, ends[1]);
    close(ends[1]);
    std::string result = child < 0 ? "no process" : all_of(ends[0]);
    close(ends[0]);
    int status = 0;
    if (child > 0 && waitpid(child, &status, 0) == child && status != 0)
        result += format("the process died: status %#x\n", static_cast<unsigned>(status));
    return result;
}

} // namespace proof
