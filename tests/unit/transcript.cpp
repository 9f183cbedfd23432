#include "transcript.h"

#include "trace/tap.h"

#include <glib.h>
#include <gtest/gtest.h>

#include <pthread.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <mutex>
#include <optional>
#include <sstream>
#include <string_view>
#include <utility>

namespace transcript
{
namespace
{

struct log {
    std::string text;
    std::string speaker; // function of the latest record
    bool ended = false;
    pthread_t thread = {};
};

// Never destroyed: timestamp threads outlive the tests.
struct logs {
    std::mutex mutex;
    std::condition_variable changed;
    log main;
    std::deque<log> threads; // a deque never moves what it holds
};

logs &all()
{
    static auto *instance = new logs;
    return *instance;
}

thread_local bool on_main_thread = false;

// A thread other than the main one, as long as it lives.
struct thread_log {
    log *own = nullptr;

    ~thread_log()
    {
        if (!own)
            return;
        const std::lock_guard lock(all().mutex);
        own->ended = true;
        all().changed.notify_all();
    }
};
thread_local thread_log current_thread;

// With the mutex held.
log &own_log()
{
    if (on_main_thread)
        return all().main;
    if (!current_thread.own) {
        current_thread.own = &all().threads.emplace_back();
        current_thread.own->thread = pthread_self();
    }
    return *current_thread.own;
}

// "kel_ic_pcep.cpp:214": a source file of the library and a line.
void check_location(const std::string &location)
{
    constexpr std::string_view files[] = {"kel_ic_ebcom.cpp", "kel_ic_ebcom_g3.cpp", "kel_ic_ebcom_interface.cpp",
                                          "kel_ic_pcep.cpp"};
    const size_t colon = location.find(':');
    ASSERT_NE(colon, std::string::npos) << "location " << location;
    EXPECT_NE(std::ranges::find(files, location.substr(0, colon)), std::end(files)) << "location " << location;
    const std::string line = location.substr(colon + 1);
    EXPECT_EQ(line, std::to_string(atoi(line.c_str()))) << "location " << location;
    EXPECT_GT(atoi(line.c_str()), 0) << "location " << location;
}

// Marks the number of the calling thread, which no expected transcript can know.
std::string with_own_tid_marked(const std::string &text)
{
    const std::string own_tid = "tid=" + std::to_string(gettid()) + " ";
    const size_t place = text.find(own_tid);
    return place == std::string::npos ? text : std::string(text).replace(place, own_tid.size(), "tid=own ");
}

// "FN_ENTER EBCOM" for a message that is the speaker's name, "LAB EBCOM text" for one that has a text after it.
void add_record(const trace::record &record)
{
    check_location(record.location);
    const std::string message = record.message;
    const size_t parentheses = message.find("()");
    ASSERT_NE(parentheses, std::string::npos) << message;
    const std::string speaker = message.substr(0, parentheses);
    const std::string rest = message.substr(parentheses + 2);
    const bool is_init = std::strcmp(record.provider, "com_vantorix_ob_kel_init") == 0;

    const std::lock_guard lock(all().mutex);
    log &own = own_log();
    if (own.speaker != speaker)
        own.text += speaker + ":\n";
    own.speaker = speaker;
    own.text.append(is_init ? "  init:" : "  ").append(record.event).append(" ").append(record.domain);
    if (!rest.empty()) {
        EXPECT_EQ(rest.substr(0, 2), ": ") << message;
        own.text.append(" ").append(with_own_tid_marked(rest.substr(2)));
    }
    own.text += "\n";
}

bool is_call(const std::string &line)
{
    return line.starts_with("  > ") || line.starts_with("  ~ ");
}

// How far an expected transcript is indented as a whole: its first line is a speaker or, inset by two, a call.
size_t indentation(const std::string &first_line)
{
    const size_t indent = first_line.find_first_not_of(' ');
    const bool starts_with_call = first_line[indent] == '>' || first_line[indent] == '~';
    return starts_with_call ? indent - 2 : indent;
}

// What the expected transcript means in this run.
std::string normalise(const std::string &expected)
{
    std::istringstream lines(expected);
    std::string result;
    std::optional<size_t> indent;
    for (std::string line; std::getline(lines, line);) {
        if (line.find_first_not_of(' ') == std::string::npos)
            continue;
        indent = indent.value_or(indentation(line));
        line.erase(0, *indent);
        if (!traced() && !line.starts_with("  > "))
            continue;
        if (is_call(line))
            line[2] = '>';
        result += line + "\n";
    }
    return result;
}

} // namespace

void begin()
{
    on_main_thread = true;
    g_log_set_always_fatal(static_cast<GLogLevelFlags>(G_LOG_LEVEL_ERROR | G_LOG_LEVEL_CRITICAL));
    if (traced() && !trace::listen(add_record)) {
        fprintf(stderr, "the tracer is not installed: a traced run is not possible\n");
        exit(1);
    }
}

bool traced()
{
    static const bool on = [] {
        const char *tracing = getenv("KEL_TEST_TRACING");
        return !tracing || strcmp(tracing, "off") != 0;
    }();
    return on;
}

bool is_main_thread()
{
    return on_main_thread;
}

void add(const std::string &line)
{
    const std::lock_guard lock(all().mutex);
    own_log().text.append("  ").append(line).append("\n");
}

std::string take()
{
    const std::lock_guard lock(all().mutex);
    return std::exchange(own_log(), log{}).text;
}

void forget()
{
    take();
}

std::string of_thread(size_t n)
{
    const std::lock_guard lock(all().mutex);
    return n < all().threads.size() ? all().threads[n].text : "";
}

void expect_equal(const std::string &actual, const std::string &expected)
{
    EXPECT_EQ(actual, normalise(expected));
}

void expect(const std::string &expected)
{
    expect_equal(take(), expected);
}

void wait_until_thread_ended(size_t n)
{
    std::unique_lock lock(all().mutex);
    const auto ended = [n] { return n < all().threads.size() && all().threads[n].ended; };
    ASSERT_TRUE(all().changed.wait_for(lock, std::chrono::seconds(60), ended)) << "thread " << n << " goes on";
}

void wait_for_end_of_thread(size_t n)
{
    ASSERT_NO_FATAL_FAILURE(wait_until_thread_ended(n));
    std::unique_lock lock(all().mutex);
    const pthread_t thread = all().threads[n].thread;
    lock.unlock();
    EXPECT_EQ(pthread_join(thread, nullptr), 0) << "thread " << n << " was not left to be joined";
}

} // namespace transcript
